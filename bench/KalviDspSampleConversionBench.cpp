#include "audiofiles/KalviDspSampleConversion.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using Converter = void (*)(int**, std::uint64_t, std::uint32_t, const std::uint8_t*, std::uint32_t,
                           std::uint64_t);

// One chunk of the buffering thread: 4096 frames, converted through a scratch block of 5760 bytes as the file
// readers do, then scaled to float once for the whole chunk. Throughput counts the floats delivered.
constexpr std::uint64_t chunkFrames = 4096;
constexpr std::uint64_t scratchBytes = 5760;

void convertChunk(benchmark::State& state, Converter converter, std::uint32_t sampleSize, bool scale)
{
    const auto numChannels = static_cast<std::uint32_t>(state.range(0));
    std::vector<std::uint8_t> scratch(scratchBytes);
    for (std::size_t index = 0; index < scratch.size(); ++index)
        scratch[index] = static_cast<std::uint8_t>(index * 131 + 7);
    std::vector<std::vector<float>> samples(numChannels, std::vector<float>(chunkFrames));
    std::vector<int*> channels;
    for (std::vector<float>& channel : samples)
        channels.push_back(reinterpret_cast<int*>(channel.data()));

    const std::uint64_t blockFrames = scratchBytes / (sampleSize * numChannels);
    for (auto _ : state) {
        for (std::uint64_t done = 0; done < chunkFrames; done += blockFrames) {
            const std::uint64_t block = std::min(blockFrames, chunkFrames - done);
            converter(channels.data(), done, numChannels, scratch.data(), numChannels, block);
        }
        if (scale)
            for (int* channel : channels)
                vlk::convertToFloat(channel, chunkFrames);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * chunkFrames * numChannels * sizeof(float)));
}

void Int16LittleEndian(benchmark::State& state)
{
    convertChunk(state, vlk::convertInt16LittleEndian, 2, false);
}

void Int16LittleEndianToFloat(benchmark::State& state)
{
    convertChunk(state, vlk::convertInt16LittleEndian, 2, true);
}

void Int24LittleEndian(benchmark::State& state)
{
    convertChunk(state, vlk::convertInt24LittleEndian, 3, false);
}

void Int24LittleEndianToFloat(benchmark::State& state)
{
    convertChunk(state, vlk::convertInt24LittleEndian, 3, true);
}

void ScaleToFloat(benchmark::State& state)
{
    std::vector<int> words(static_cast<std::size_t>(state.range(0)) * chunkFrames, 1 << 20);
    for (auto _ : state) {
        vlk::convertToFloat(words.data(), words.size());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * words.size() * sizeof(float)));
}

} // namespace

BENCHMARK(Int16LittleEndian)->Arg(1)->Arg(2)->Arg(8);
BENCHMARK(Int16LittleEndianToFloat)->Arg(1)->Arg(2)->Arg(8);
BENCHMARK(Int24LittleEndian)->Arg(1)->Arg(2)->Arg(8);
BENCHMARK(Int24LittleEndianToFloat)->Arg(1)->Arg(2)->Arg(8);
BENCHMARK(ScaleToFloat)->Arg(2);
