#include "audiofiles/KalviDspLameFixtures.h"

#include "audiofiles/KalviDspSweepSignal.h"
#include "files/KalviDspShellCommand.h"

#include <sndfile.h>

#include <array>
#include <fstream>
#include <stdexcept>

namespace vlk::test {

namespace {

// lame's --resample takes kHz; written without the C library's number formatting, which follows the locale.
std::string toKilohertz(int sampleRate)
{
    std::string text = std::to_string(sampleRate / 1000);
    std::string fraction = std::to_string(1000 + sampleRate % 1000).substr(1);
    while (!fraction.empty() && fraction.back() == '0')
        fraction.pop_back();
    return fraction.empty() ? text : text + "." + fraction;
}

std::string makeBitRateOptions(const LameEncoding& encoding)
{
    const std::string setting = std::to_string(encoding.setting);
    switch (encoding.bitRateMode) {
    case BitRateMode::constant:
        return "-b " + setting;
    case BitRateMode::variable:
        return "-V " + setting;
    case BitRateMode::freeFormat:
        return "--freeformat -b " + setting;
    }
    return "";
}

void runLame(const std::string& wavPath, const std::string& mp3Path, const LameEncoding& encoding)
{
    runShellCommand("lame --quiet -m " + std::string(1, encoding.mode) + " " + makeBitRateOptions(encoding) +
                        " --resample " + toKilohertz(encoding.sampleRate) + " " + shellQuoted(wavPath) + " " +
                        shellQuoted(mp3Path),
                    mp3Path + ".lame-errors.txt", "lame (the Debian package lame, which the tests need)");
}

int getHeaderSampleRate(int versionBits, int rateIndex)
{
    constexpr int mpeg1Rates[] = {44100, 48000, 32000};
    const int divisor = versionBits == 3 ? 1 : versionBits == 2 ? 2 : 4;
    return rateIndex < 3 && versionBits != 1 ? mpeg1Rates[rateIndex] / divisor : 0;
}

// lame writes no ID3 tag unless asked, so the file begins with the first frame. Sets hasVbrTag; throws when
// the frame is not what the encoding asked for.
void checkFirstFrame(LameMp3& mp3, const LameEncoding& encoding)
{
    std::ifstream file(mp3.path, std::ios::binary);
    std::array<std::uint8_t, 40> bytes{};
    file.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
    const int versionBits = (bytes[1] >> 3) & 3;
    const bool isLayer3 = bytes[0] == 0xFF && (bytes[1] & 0xE0) == 0xE0 && ((bytes[1] >> 1) & 3) == 1;
    const int sampleRate = getHeaderSampleRate(versionBits, (bytes[2] >> 2) & 3);
    const bool isFreeFormat = (bytes[2] >> 4) == 0;
    const int modeBits = bytes[3] >> 6;
    const int expectedModeBits = encoding.mode == 'm' ? 3 : encoding.mode == 'j' ? 1 : 0;
    if (!isLayer3 || sampleRate != encoding.sampleRate || modeBits != expectedModeBits ||
        isFreeFormat != (encoding.bitRateMode == BitRateMode::freeFormat))
        throw std::runtime_error("lame did not write a Layer III stream of " + describe(encoding) +
                                 ": rate " + std::to_string(sampleRate) + ", mode " +
                                 std::to_string(modeBits) + (isFreeFormat ? ", free format" : ""));
    // The tag stands where the audio data would begin, behind the header and the side information.
    const bool mono = modeBits == 3;
    const std::size_t tagOffset = 4 + (versionBits == 3 ? (mono ? 17 : 32) : (mono ? 9 : 17));
    const std::string tag(reinterpret_cast<const char*>(bytes.data()) + tagOffset, 4);
    mp3.hasVbrTag = tag == "Xing" || tag == "Info";
}

} // namespace

std::string describe(const LameEncoding& encoding)
{
    constexpr const char* modeNames[] = {"mono", "stereo", "joint"};
    constexpr const char* bitRateNames[] = {"cbr", "vbr", "free"};
    const char* modeName = modeNames[encoding.mode == 'm' ? 0 : encoding.mode == 's' ? 1 : 2];
    return bitRateNames[static_cast<int>(encoding.bitRateMode)] + std::to_string(encoding.setting) + "_" +
           std::to_string(encoding.sampleRate) + "_" + modeName;
}

std::ostream& operator<<(std::ostream& stream, const LameEncoding& encoding)
{
    return stream << describe(encoding);
}

std::uint32_t getNumChannels(const LameEncoding& encoding)
{
    return encoding.mode == 'm' ? 1 : 2;
}

std::uint32_t getSamplesPerFrame(int sampleRate)
{
    return sampleRate >= 32000 ? 1152 : 576;
}

LameMp3 encodeWithLame(const std::string& folder, const std::string& name, const LameEncoding& encoding,
                       double seconds)
{
    LameMp3 mp3{folder + "/" + name, makeSweepSignal(getNumChannels(encoding), encoding.sampleRate, seconds)};
    const std::string wavPath = mp3.path + ".wav";
    writeWavFile(wavPath, mp3.source, encoding.sampleRate, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    runLame(wavPath, mp3.path, encoding);
    checkFirstFrame(mp3, encoding);
    return mp3;
}

} // namespace vlk::test
