#pragma once

#include <string>

namespace vlk::bench {

// The streams that the MPEG decoders are measured on, made when first asked for in a folder of their own
// under /tmp, which goes with the program.
enum class MpegBenchStream
{
    // A compliance stream of the test set repeated to about 30 seconds of Layer II stereo at 48 kHz.
    layer2Stereo48k,
    // 30 seconds of a music-like signal, which lame encodes as Layer III: 128 kbit/s joint stereo at 44.1
    // kHz, and MPEG-2 at 64 kbit/s joint stereo at 22.05 kHz.
    layer3Stereo128k,
    layer3Mpeg2Stereo64k
};

struct MadeStream
{
    std::string path;
    // Why there is no path: lame is missing or failed.
    std::string failure;
};

const MadeStream& getMpegBenchStream(MpegBenchStream stream);

} // namespace vlk::bench
