#include "audiofiles/KalviDspLameFixtures.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspShellQuoting.h"

#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>

namespace vlk::test {

namespace {

struct Sweep
{
    double startHz;
    double endHz;
    float amplitude;
};

// Low enough to pass lame's low-pass at 8 kHz and 16 kbit/s; the second channel falls while the first rises.
constexpr std::array<Sweep, 2> sweeps{Sweep{150.0, 900.0, 0.4f}, Sweep{1000.0, 300.0, 0.3f}};

std::vector<std::vector<float>> makeSignal(std::uint32_t numChannels, int sampleRate, double seconds)
{
    const auto numFrames = static_cast<std::size_t>(seconds * sampleRate);
    std::vector<std::vector<float>> channels(numChannels, std::vector<float>(numFrames));
    for (std::uint32_t channel = 0; channel < numChannels; ++channel) {
        const Sweep& sweep = sweeps[channel];
        const double slope = (sweep.endHz - sweep.startHz) / seconds;
        for (std::size_t frame = 0; frame < numFrames; ++frame) {
            const double time = static_cast<double>(frame) / sampleRate;
            const double phase = 2.0 * std::numbers::pi * (sweep.startHz * time + slope * time * time / 2.0);
            channels[channel][frame] = sweep.amplitude * static_cast<float>(std::sin(phase));
        }
    }
    return channels;
}

void writeWav(const std::string& path, const std::vector<std::vector<float>>& channels, int sampleRate)
{
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = static_cast<int>(channels.size());
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error("libsndfile cannot write " + path + ": " + sf_strerror(nullptr));
    const std::size_t numFrames = channels[0].size();
    std::vector<float> interleaved;
    interleaved.reserve(numFrames * channels.size());
    for (std::size_t frame = 0; frame < numFrames; ++frame)
        for (const std::vector<float>& channel : channels)
            interleaved.push_back(channel[frame]);
    sf_writef_float(file, interleaved.data(), static_cast<sf_count_t>(numFrames));
    sf_close(file);
}

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
    const std::string errorPath = mp3Path + ".lame-errors.txt";
    const std::string command = "lame --quiet -m " + std::string(1, encoding.mode) + " " +
                                makeBitRateOptions(encoding) + " --resample " +
                                toKilohertz(encoding.sampleRate) + " " + shellQuoted(wavPath) + " " +
                                shellQuoted(mp3Path) + " </dev/null 2>" + shellQuoted(errorPath);
    const int status = std::system(command.c_str());
    if (status != 0) {
        std::ifstream errors(errorPath);
        std::ostringstream text;
        text << errors.rdbuf();
        throw std::runtime_error("lame (the Debian package lame, which the tests need) failed with status " +
                                 std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : status) + " for " +
                                 describe(encoding) + ": " + text.str());
    }
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
    LameMp3 mp3{folder + "/" + name, makeSignal(getNumChannels(encoding), encoding.sampleRate, seconds)};
    const std::string wavPath = mp3.path + ".wav";
    writeWav(wavPath, mp3.source, encoding.sampleRate);
    runLame(wavPath, mp3.path, encoding);
    checkFirstFrame(mp3, encoding);
    return mp3;
}

std::vector<std::vector<float>> readThroughReader(const std::string& path)
{
    const auto reader = AudioFileReader::create(File(path));
    const std::uint64_t numFrames = reader->getNumSamples();
    AudioBuffer buffer(reader->getNumChannels(), numFrames);
    buffer.setNumSamples(numFrames);
    reader->readSamples(buffer, 0, numFrames, 0);
    std::vector<std::vector<float>> channels;
    for (std::uint32_t channel = 0; channel < reader->getNumChannels(); ++channel)
        channels.emplace_back(buffer.getChannel(channel), buffer.getChannel(channel) + numFrames);
    return channels;
}

} // namespace vlk::test
