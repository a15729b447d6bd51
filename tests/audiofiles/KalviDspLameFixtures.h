#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace vlk::test {

// MP3 files that lame encodes while the tests run, from a signal of the tests' own: the encoder's input is
// the oracle of what the decoder gives. lame is a dependency of the tests; when it is missing they fail.

enum class BitRateMode
{
    constant,
    variable,
    freeFormat
};

struct LameEncoding
{
    int sampleRate;
    // lame's -m: 'm' mono, 's' stereo, 'j' joint stereo.
    char mode;
    BitRateMode bitRateMode;
    // kbit/s for constant bit rate and free format, lame's -V quality for a variable one.
    int setting;
};

// "cbr128_44100_joint": the case in a form that test names take.
std::string describe(const LameEncoding& encoding);
std::ostream& operator<<(std::ostream& stream, const LameEncoding& encoding);
std::uint32_t getNumChannels(const LameEncoding& encoding);
// 1152 for MPEG-1 rates, 576 for those of MPEG-2 and 2.5.
std::uint32_t getSamplesPerFrame(int sampleRate);

struct LameMp3
{
    std::string path;
    // The encoder's input, one vector per channel.
    std::vector<std::vector<float>> source;
    // A Xing or Info frame comes first: lame writes one for a variable bit rate, and for the others when a
    // frame has room for it.
    bool hasVbrTag = false;
};

// Writes seconds of the sweep signal at the encoding's rate as 16-bit WAV in folder and encodes it as name.
// Throws std::runtime_error when lame fails, or when the first frame of its output states another rate,
// channel mode or bit rate mode than asked for: lame picks its own rate unless told, and a table case must be
// what its name says.
LameMp3 encodeWithLame(const std::string& folder, const std::string& name, const LameEncoding& encoding,
                       double seconds);

} // namespace vlk::test
