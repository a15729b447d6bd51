#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace vlk::bench {

// What the file readers' benchmarks share: files written by libsndfile, the read of a whole file in the
// buffering thread's blocks, and libsndfile's own read of it as the reference. Throughput is counted in bytes
// of output floats.

// Stereo files of 20 seconds at 48 kHz, at 16 and 24 bits, of random samples, in the container that
// majorFormat names (SF_FORMAT_WAV, SF_FORMAT_AIFF ...), written into a folder of their own under /tmp and
// removed with it.
class BenchFiles
{
public:
    BenchFiles(int majorFormat, const std::string& extension);
    ~BenchFiles();
    BenchFiles(const BenchFiles&) = delete;
    BenchFiles& operator=(const BenchFiles&) = delete;

    std::string getPath(std::int64_t bits) const;

private:
    void write(std::int64_t bits, int subtype) const;

    int majorFormat;
    std::string extension;
    std::string folder;
};

// The whole file through AudioFileReader::readSamples, as the buffering thread reads it.
void readWithReader(benchmark::State& state, const std::string& path);
// libsndfile's sf_readf_float of the same file in blocks of the same size, interleaved.
void readWithSndfile(benchmark::State& state, const std::string& path);

} // namespace vlk::bench
