#include "KalviDspReadBenchHarness.h"

#include <benchmark/benchmark.h>
#include <sndfile.h>

namespace {

// FLAC goes through the platform's services, FFmpeg's decoder under them; libsndfile decodes it with libFLAC.
const vlk::bench::BenchFiles& getFiles()
{
    static const vlk::bench::BenchFiles files(SF_FORMAT_FLAC, ".flac", vlk::bench::BenchContent::chords);
    return files;
}

// The argument is the depth of the stereo file.
void FlacCoreAudioReaderReadSamples(benchmark::State& state)
{
    vlk::bench::readWithReader(state, getFiles().getPath(state.range(0)));
}

// The reference on the same file.
void FlacSndfileReadfFloat(benchmark::State& state)
{
    vlk::bench::readWithSndfile(state, getFiles().getPath(state.range(0)));
}

} // namespace

BENCHMARK(FlacCoreAudioReaderReadSamples)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(FlacSndfileReadfFloat)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
