#pragma once

#include "audiofiles/mpeg/KalviDspMpegAudioDecoder.h"

#include <string>
#include <vector>

namespace vlk::test {

// The MPEG audio test vectors beside the repository, and what a decoder makes of them.

// The path of a test stream or reference by name; fails the test when the source root is unknown.
std::string getMpegTestPath(const std::string& name);
// A file's bytes, whole.
std::string readFileBytes(const std::string& path);

struct DecodedStream
{
    int numChannels = 0;
    int numFrames = 0;
    // Interleaved, full scale 1.0.
    std::vector<float> samples;
};

// Every frame of the stream at path, decoded from its start; with decode false, walked with null outputs.
DecodedStream decodeMpegStream(const std::string& path, bool decode = true);
// The same from a decoder already built.
DecodedStream decodeMpegStream(MpegAudioDecoder& decoder, bool decode = true);

} // namespace vlk::test
