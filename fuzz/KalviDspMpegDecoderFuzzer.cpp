// The MPEG decoder on its own, on a stream of the fuzzer's bytes: every frame decoded, then walked again
// without outputs from a reset, as the MP3 reader's seek does. Damaged codes must stay inside the arrays.
#include "KalviDspFuzzScratchFile.h"

#include "audiofiles/mpeg/KalviDspMpegAudioDecoder.h"

#include <cmath>
#include <cstdlib>
#include <unistd.h>

namespace {

// Every step consumes bytes or ends the stream, so the steps a stream of n bytes can take are bounded; this
// bound only keeps a fault from running for ever.
constexpr int largestSteps = 1 << 16;

void decodeAll(vlk::MpegAudioDecoder& decoder, bool withOutputs)
{
    float left[vlk::MpegAudioDecoder::maxSamplesPerFrame];
    float right[vlk::MpegAudioDecoder::maxSamplesPerFrame];
    for (int step = 0; step < largestSteps; ++step) {
        std::int32_t samplesDone = 0;
        const int result = decoder.decodeNextFrame(withOutputs ? left : nullptr, right, samplesDone);
        if (result < 0)
            return;
        if (samplesDone < 0 || samplesDone > vlk::MpegAudioDecoder::maxSamplesPerFrame)
            std::abort();
    }
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = vlk::fuzz::writeScratchFile(data, size, ".mp2");
    {
        const vlk::FileReader file{vlk::File(path)};
        vlk::MpegAudioDecoder decoder(file);
        decodeAll(decoder, true);
        decoder.getStream().setPosition(0);
        decoder.reset();
        decoder.setFrameCounter(0);
        decodeAll(decoder, false);
    }
    ::unlink(path.c_str());
    return 0;
}
