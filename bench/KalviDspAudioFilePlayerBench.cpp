#include "dsp/KalviDspAudioFilePlayer.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sndfile.h>
#include <stdexcept>
#include <string>
#include <vector>

// The audio thread's cost of a vector: perform, Process and the copies out of the ring, with the ring full
// and the buffering thread running, refilling behind the audio once the ring is down to 75 percent; the
// events of each vector are delivered after it, as a scheduler would. The peer in the same run: memcpy of the
// same output bytes, the least that any player has to do.

namespace {

constexpr std::uint32_t vectorSize = 64;
// More than the ring holds, so that a ring's worth of vectors never reaches the end of the file.
constexpr sf_count_t numFileFrames = 200000;

// A 16-bit WAV file of noise in a folder of its own under /tmp, removed with it.
class ScratchSoundFile
{
public:
    explicit ScratchSoundFile(int numChannels)
    {
        char pattern[] = "/tmp/vlk-player-bench-XXXXXX";
        if (mkdtemp(pattern) == nullptr)
            throw std::runtime_error("mkdtemp failed");
        folder = pattern;
        path = folder + "/noise.wav";
        SF_INFO info{};
        info.samplerate = 44100;
        info.channels = numChannels;
        info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
        SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
        if (file == nullptr)
            throw std::runtime_error("libsndfile cannot write " + path);
        std::vector<short> frames(static_cast<std::size_t>(numFileFrames) *
                                  static_cast<std::size_t>(numChannels));
        std::uint32_t state = 0x2545F491u;
        for (short& sample : frames) {
            state = state * 1664525u + 1013904223u;
            sample = static_cast<short>(state >> 16);
        }
        sf_writef_short(file, frames.data(), numFileFrames);
        sf_close(file);
    }
    ~ScratchSoundFile()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    ScratchSoundFile(const ScratchSoundFile&) = delete;
    ScratchSoundFile& operator=(const ScratchSoundFile&) = delete;

    std::string folder;
    std::string path;
};

// Reads on this thread until the ring is full, the way a fast disk side would.
void fillRing(vlk::AudioFilePlayer& player)
{
    while (player.getNumSamplesToReadFromDisk() != 0)
        player.readSamplesFromDisk();
}

void AudioFilePlayerPerform(benchmark::State& state)
{
    const auto numChannels = static_cast<std::uint32_t>(state.range(0));
    const ScratchSoundFile sound(static_cast<int>(numChannels));
    vlk::AudioFilePlayer player(numChannels, 192000);
    player.prepare(vectorSize, true, 44100.0f);
    const std::vector<short> connections(numChannels + 1, 1);
    player.setConnections(connections.data());
    std::vector<std::vector<double>> outputs(numChannels + 1, std::vector<double>(vectorSize));
    std::vector<double*> outputPointers;
    for (std::vector<double>& output : outputs)
        outputPointers.push_back(output.data());
    player.open(vlk::String(sound.path));

    const std::uint64_t vectorsPerRing = player.getBufferCapacity() / vectorSize;
    std::uint64_t vectorsLeft = 0;
    std::int64_t numFrames = 0;
    for (auto _ : state) {
        if (vectorsLeft == 0) {
            state.PauseTiming();
            player.rewind();
            fillRing(player);
            vectorsLeft = vectorsPerRing;
            state.ResumeTiming();
        }
        player.perform(outputPointers.data(), nullptr, vectorSize, 0, 0, 0);
        player.deliverQueuedEvents();
        benchmark::DoNotOptimize(outputPointers[0][vectorSize - 1]);
        --vectorsLeft;
        numFrames += vectorSize;
    }
    state.counters["frames_per_second_per_channel"] =
        benchmark::Counter(static_cast<double>(numFrames), benchmark::Counter::kIsRate);
}

// The outputs' bytes of a vector, numChannels audio outputs and the position, copied from a source that
// moves on by a vector each time, through 4096 frames.
void MemcpyOfTheOutputs(benchmark::State& state)
{
    const auto numOutputs = static_cast<std::size_t>(state.range(0)) + 1;
    constexpr std::size_t sourceFrames = 4096;
    std::vector<std::vector<double>> sources(numOutputs, std::vector<double>(sourceFrames, 0.25));
    std::vector<std::vector<double>> outputs(numOutputs, std::vector<double>(vectorSize));
    std::size_t offset = 0;
    std::int64_t numFrames = 0;
    for (auto _ : state) {
        for (std::size_t output = 0; output < numOutputs; ++output)
            std::memcpy(outputs[output].data(), sources[output].data() + offset, vectorSize * sizeof(double));
        benchmark::DoNotOptimize(outputs[0][vectorSize - 1]);
        benchmark::ClobberMemory();
        offset = (offset + vectorSize) % sourceFrames;
        numFrames += vectorSize;
    }
    state.counters["frames_per_second_per_channel"] =
        benchmark::Counter(static_cast<double>(numFrames), benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK(AudioFilePlayerPerform)->Arg(2)->Arg(64)->Arg(250)->ArgName("channels");
BENCHMARK(MemcpyOfTheOutputs)->Arg(2)->Arg(64)->Arg(250)->ArgName("channels");
