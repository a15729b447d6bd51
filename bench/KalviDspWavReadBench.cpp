#include "KalviDspReadBenchHarness.h"

#include <benchmark/benchmark.h>
#include <sndfile.h>

namespace {

const vlk::bench::BenchFiles& getFiles()
{
    static const vlk::bench::BenchFiles files(SF_FORMAT_WAV, ".wav");
    return files;
}

// The argument is the depth of the stereo file.
void WavFileReaderReadSamples(benchmark::State& state)
{
    vlk::bench::readWithReader(state, getFiles().getPath(state.range(0)));
}

// The reference on the same file.
void WavSndfileReadfFloat(benchmark::State& state)
{
    vlk::bench::readWithSndfile(state, getFiles().getPath(state.range(0)));
}

} // namespace

BENCHMARK(WavFileReaderReadSamples)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(WavSndfileReadfFloat)->ArgName("bits")->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);
