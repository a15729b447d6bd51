#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace vlk::bench {

// What the file readers' benchmarks share: files written by libsndfile, the read of a whole file in the
// buffering thread's blocks, and libsndfile's own read of it as the reference. Throughput is counted in bytes
// of output floats.

// What the files hold: random samples, all a PCM reader ever sees, or chords under a little noise, which a
// lossless coder predicts as it does music (random samples it stores verbatim).
enum class BenchContent
{
    noise,
    chords
};

// Stereo files of 20 seconds at 48 kHz, at 16 and 24 bits, in the container that majorFormat names
// (SF_FORMAT_WAV, SF_FORMAT_AIFF, SF_FORMAT_FLAC ...), written into a folder of their own under /tmp and
// removed with it.
class BenchFiles
{
public:
    BenchFiles(int majorFormat, const std::string& extension, BenchContent content = BenchContent::noise);
    ~BenchFiles();
    BenchFiles(const BenchFiles&) = delete;
    BenchFiles& operator=(const BenchFiles&) = delete;

    std::string getPath(std::int64_t bits) const;

private:
    void write(std::int64_t bits, int subtype) const;

    int majorFormat;
    std::string extension;
    BenchContent content;
    std::string folder;
};

// The whole file through AudioFileReader::readSamples, as the buffering thread reads it.
void readWithReader(benchmark::State& state, const std::string& path);
// libsndfile's sf_readf_float of the same file in blocks of the same size, interleaved.
void readWithSndfile(benchmark::State& state, const std::string& path);

} // namespace vlk::bench
