#include "KalviDspReadBenchHarness.h"

#include <benchmark/benchmark.h>
#include <sndfile.h>

namespace {

const vlk::bench::BenchFiles& getFiles()
{
    static const vlk::bench::BenchFiles files(SF_FORMAT_AIFF, ".aif");
    return files;
}

// The argument is the depth of the stereo file.
void AiffFileReaderReadSamples(benchmark::State& state)
{
    vlk::bench::readWithReader(state, getFiles().getPath(state.range(0)));
}

// The reference on the same file.
void AiffSndfileReadfFloat(benchmark::State& state)
{
    vlk::bench::readWithSndfile(state, getFiles().getPath(state.range(0)));
}

} // namespace

BENCHMARK(AiffFileReaderReadSamples)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(AiffSndfileReadfFloat)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
