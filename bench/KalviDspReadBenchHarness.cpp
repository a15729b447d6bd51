#include "KalviDspReadBenchHarness.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace vlk::bench {

namespace {

constexpr int numChannels = 2;
constexpr int numFrames = 48000 * 20;
// The player's largest read: one chunk of the buffering thread.
constexpr std::uint64_t blockFrames = 4096;

void setOutputBytes(benchmark::State& state)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * numFrames * numChannels *
                            static_cast<std::int64_t>(sizeof(float)));
}

// Three partials at half of full scale, moving slowly between two chords.
std::int32_t chordSample(std::size_t frame)
{
    const double time = static_cast<double>(frame) / 48000.0;
    const double shift = std::sin(2.0 * std::numbers::pi * 0.25 * time);
    double value = 0.0;
    for (const double hz : {220.0, 277.2, 329.6})
        value += std::sin(2.0 * std::numbers::pi * hz * (1.0 + 0.05 * shift) * time);
    return static_cast<std::int32_t>(value / 3.0 * 0.5 * 2147483647.0);
}

} // namespace

BenchFiles::BenchFiles(int majorFormat, const std::string& extension, BenchContent content)
    : majorFormat(majorFormat), extension(extension), content(content)
{
    char pattern[] = "/tmp/vlk-readbench-XXXXXX";
    if (mkdtemp(pattern) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    folder = pattern;
    write(16, SF_FORMAT_PCM_16);
    write(24, SF_FORMAT_PCM_24);
}

BenchFiles::~BenchFiles()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string BenchFiles::getPath(std::int64_t bits) const
{
    return folder + "/stereo" + std::to_string(bits) + extension;
}

void BenchFiles::write(std::int64_t bits, int subtype) const
{
    SF_INFO info{};
    info.samplerate = 48000;
    info.channels = numChannels;
    info.format = majorFormat | subtype;
    SNDFILE* file = sf_open(getPath(bits).c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    std::vector<std::int32_t> samples(static_cast<std::size_t>(numFrames) * numChannels);
    std::uint32_t state = 12345;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        state = state * 1664525u + 1013904223u;
        const auto noise = static_cast<std::int32_t>(state);
        samples[index] =
            content == BenchContent::noise ? noise : chordSample(index / numChannels) + noise / 4096;
    }
    sf_writef_int(file, samples.data(), numFrames);
    sf_close(file);
}

void readWithReader(benchmark::State& state, const std::string& path)
{
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(File(path));
    AudioBuffer buffer(numChannels, blockFrames);
    for (auto _ : state) {
        for (std::uint64_t position = 0; position < numFrames; position += blockFrames)
            reader->readSamples(buffer, 0, std::min<std::uint64_t>(blockFrames, numFrames - position),
                                position);
        benchmark::DoNotOptimize(buffer.getChannel(1)[blockFrames - 1]);
    }
    setOutputBytes(state);
}

void readWithSndfile(benchmark::State& state, const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) {
        state.SkipWithError(sf_strerror(nullptr));
        return;
    }
    std::vector<float> interleaved(blockFrames * numChannels);
    for (auto _ : state) {
        sf_seek(file, 0, SEEK_SET);
        while (sf_readf_float(file, interleaved.data(), blockFrames) > 0)
            benchmark::DoNotOptimize(interleaved.data());
    }
    sf_close(file);
    setOutputBytes(state);
}

} // namespace vlk::bench
