// MPEG decoding against libmpg123 in the same run, on the same streams. Items are output sample frames, so
// the two rates of a stream give the ratio. The counter samples holds one iteration's output samples, frames
// times channels, for scripts/bench-callgrind.sh, which counts the instructions of the two decode functions
// under callgrind.
#include "KalviDspMpegBenchStreams.h"
#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "threads/KalviDspException.h"

#include <benchmark/benchmark.h>
#include <mpg123.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using vlk::bench::MpegBenchStream;

constexpr std::uint64_t blockFrames = 4096;

struct Decoded
{
    std::int64_t frames = 0;
    std::int64_t channels = 0;
    // The optimised core that libmpg123 picked for this machine.
    std::string core;
};

// Through the factory and readSamples, as the buffering thread reads a file. Never inlined, so that
// callgrind can count from its entry.
[[gnu::noinline]] Decoded decodeWithVelur(const std::string& path)
{
    const auto reader = vlk::AudioFileReader::create(vlk::File(path));
    Decoded decoded{0, reader->getNumChannels(), ""};
    vlk::AudioBuffer buffer(reader->getNumChannels(), blockFrames);
    buffer.setNumSamples(blockFrames);
    for (std::uint64_t position = 0; reader->readSamples(buffer, 0, blockFrames, position);
         position += blockFrames)
        decoded.frames += static_cast<std::int64_t>(blockFrames);
    benchmark::DoNotOptimize(buffer.getChannel(0)[0]);
    return decoded;
}

// libmpg123 to interleaved 32-bit floats, in blocks of the same size, with the named core or, for null, the
// optimised one it picks.
Decoded decodeWithMpg123Core(const std::string& path, const char* core)
{
    mpg123_handle* handle = mpg123_new(core, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT, 0.0);
    mpg123_open(handle, path.c_str());
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    mpg123_getformat(handle, &rate, &channels, &encoding);
    Decoded decoded{0, channels, ""};
    std::vector<float> block(blockFrames * static_cast<std::size_t>(channels));
    std::size_t done = 0;
    for (int result = MPG123_OK; result == MPG123_OK || result == MPG123_NEW_FORMAT;) {
        result = mpg123_read(handle, reinterpret_cast<unsigned char*>(block.data()),
                             block.size() * sizeof(float), &done);
        decoded.frames +=
            static_cast<std::int64_t>(done / (static_cast<std::size_t>(channels) * sizeof(float)));
    }
    decoded.core = mpg123_current_decoder(handle);
    benchmark::DoNotOptimize(block[0]);
    mpg123_close(handle);
    mpg123_delete(handle);
    return decoded;
}

[[gnu::noinline]] Decoded decodeWithMpg123(const std::string& path)
{
    return decodeWithMpg123Core(path, nullptr);
}

// Its portable C core, which has no SIMD code.
[[gnu::noinline]] Decoded decodeWithMpg123Generic(const std::string& path)
{
    return decodeWithMpg123Core(path, "generic");
}

void decodeEachIteration(benchmark::State& state, const std::string& path,
                         Decoded (*decode)(const std::string&))
{
    Decoded total;
    for (auto _ : state) {
        const Decoded decoded = decode(path);
        total.frames += decoded.frames;
        total.channels = decoded.channels;
        total.core = decoded.core;
    }
    state.SetItemsProcessed(total.frames);
    state.counters["samples"] = benchmark::Counter(static_cast<double>(total.frames * total.channels),
                                                   benchmark::Counter::kAvgIterations);
    if (!total.core.empty())
        state.SetLabel("libmpg123 core " + total.core);
}

// The stream's path, or empty when the benchmark is skipped because the stream could not be made.
std::string findStream(benchmark::State& state, MpegBenchStream stream)
{
    const vlk::bench::MadeStream& made = vlk::bench::getMpegBenchStream(stream);
    if (made.path.empty())
        state.SkipWithError(made.failure.c_str());
    return made.path;
}

void MpegVelurReadSamples(benchmark::State& state, MpegBenchStream stream)
{
    const std::string path = findStream(state, stream);
    if (path.empty())
        return;
    // Outside the measured loop: a stream that the reader refuses skips the benchmark.
    try {
        vlk::AudioFileReader::create(vlk::File(path));
    } catch (const vlk::Exception& exception) {
        state.SkipWithError(exception.what());
        return;
    }
    decodeEachIteration(state, path, decodeWithVelur);
}

void MpegMpg123ReadFloat(benchmark::State& state, MpegBenchStream stream)
{
    const std::string path = findStream(state, stream);
    if (!path.empty())
        decodeEachIteration(state, path, decodeWithMpg123);
}

void MpegMpg123GenericReadFloat(benchmark::State& state, MpegBenchStream stream)
{
    const std::string path = findStream(state, stream);
    if (!path.empty())
        decodeEachIteration(state, path, decodeWithMpg123Generic);
}

} // namespace

BENCHMARK_CAPTURE(MpegVelurReadSamples, layer2_48k_stereo, MpegBenchStream::layer2Stereo48k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123ReadFloat, layer2_48k_stereo, MpegBenchStream::layer2Stereo48k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123GenericReadFloat, layer2_48k_stereo, MpegBenchStream::layer2Stereo48k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegVelurReadSamples, layer3_44k1_stereo_128k, MpegBenchStream::layer3Stereo128k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123ReadFloat, layer3_44k1_stereo_128k, MpegBenchStream::layer3Stereo128k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123GenericReadFloat, layer3_44k1_stereo_128k, MpegBenchStream::layer3Stereo128k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegVelurReadSamples, layer3_mpeg2_22k05_stereo_64k, MpegBenchStream::layer3Mpeg2Stereo64k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123ReadFloat, layer3_mpeg2_22k05_stereo_64k, MpegBenchStream::layer3Mpeg2Stereo64k)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MpegMpg123GenericReadFloat, layer3_mpeg2_22k05_stereo_64k, MpegBenchStream::layer3Mpeg2Stereo64k)
    ->Unit(benchmark::kMillisecond);
