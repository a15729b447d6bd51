#include "KalviDspMpegTestStreams.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <gtest/gtest.h>

namespace vlk::test {

std::string getMpegTestPath(const std::string& name)
{
    const char* sourceDirectory = std::getenv("VELUR_SOURCE_DIR");
    if (sourceDirectory == nullptr) {
        ADD_FAILURE() << "VELUR_SOURCE_DIR is not set: run through ctest, or set it to the source root";
        return name;
    }
    return std::string(sourceDirectory) + "/../shared/testdata/mpeg/" + name;
}

std::string readFileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

DecodedStream decodeMpegStream(MpegAudioDecoder& decoder, bool decode)
{
    DecodedStream decoded;
    float left[MpegAudioDecoder::maxSamplesPerFrame];
    float right[MpegAudioDecoder::maxSamplesPerFrame];
    // A step either consumes bytes or ends the stream: far more steps than any test stream has frames.
    for (int step = 0; step < 100000; ++step) {
        std::int32_t done = 0;
        const int result = decoder.decodeNextFrame(decode ? left : nullptr, right, done);
        if (result < 0)
            break;
        if (result != 0)
            continue;
        ++decoded.numFrames;
        decoded.numChannels = decoder.getHeader().numChannels;
        for (std::int32_t sample = 0; sample < done; ++sample) {
            decoded.samples.push_back(left[sample]);
            if (decoded.numChannels == 2)
                decoded.samples.push_back(right[sample]);
        }
    }
    return decoded;
}

DecodedStream decodeMpegStream(const std::string& path, bool decode)
{
    const FileReader file{File(path)};
    MpegAudioDecoder decoder(file);
    return decodeMpegStream(decoder, decode);
}

} // namespace vlk::test
