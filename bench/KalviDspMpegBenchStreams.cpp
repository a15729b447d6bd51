#include "KalviDspMpegBenchStreams.h"

#include <sndfile.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <vector>

namespace vlk::bench {

namespace {

constexpr int layer2Repetitions = 20;
constexpr double layer3Seconds = 30.0;

class StreamFolder
{
public:
    StreamFolder()
    {
        char pattern[] = "/tmp/velur-bench-XXXXXX";
        if (mkdtemp(pattern) == nullptr)
            throw std::runtime_error("mkdtemp failed");
        path = pattern;
    }
    ~StreamFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    StreamFolder(const StreamFolder&) = delete;
    StreamFolder& operator=(const StreamFolder&) = delete;

    std::string path;
};

MadeStream makeLayer2Stream(const std::string& folder)
{
    const std::string path = folder + "/layer2.mp3";
    std::ifstream source(std::string(VELUR_TESTDATA_DIR) + "/mpeg/l2-fl16.bit", std::ios::binary);
    std::ostringstream bytes;
    bytes << source.rdbuf();
    std::ofstream stream(path, std::ios::binary);
    for (int copy = 0; copy < layer2Repetitions; ++copy)
        stream << bytes.str();
    return {path, ""};
}

// A sine made by turning a unit vector by a fixed angle each sample: the streams are made under callgrind
// too, where calling sin for every sample and partial would take longer than the decoding measured.
class Oscillator
{
public:
    void setFrequency(double hertz, int sampleRate)
    {
        const double angle = 2.0 * std::numbers::pi * hertz / sampleRate;
        stepCosine = std::cos(angle);
        stepSine = std::sin(angle);
    }
    double next()
    {
        const double value = sine;
        sine = sine * stepCosine + cosine * stepSine;
        cosine = cosine * stepCosine - value * stepSine;
        return value;
    }

private:
    double cosine = 1.0;
    double sine = 0.0;
    double stepCosine = 1.0;
    double stepSine = 0.0;
};

// A chord every half second from a cycle of four, each note with its first harmonics and its own place
// between the channels, and a decaying burst of noise every quarter second: the transients switch Layer III
// to short blocks, and the channels differ for the stereo coding. Interleaved stereo.
std::vector<float> makeMusic(int sampleRate)
{
    constexpr double chords[4][3] = {
        {220.0, 277.18, 329.63}, {196.0, 246.94, 293.66}, {174.61, 220.0, 261.63}, {196.0, 246.94, 311.13}};
    constexpr double leftGains[3] = {1.0, 0.7, 0.4};
    constexpr int numHarmonics = 4;
    const auto numFrames = static_cast<std::size_t>(layer3Seconds * sampleRate);
    const auto framesPerBeat = static_cast<std::size_t>(sampleRate / 4);
    const double noiseDecay = std::exp(-40.0 / sampleRate);
    Oscillator partials[3][numHarmonics];
    std::vector<float> samples(numFrames * 2);
    std::uint32_t noiseState = 0x2545F491u;
    double noiseLevel = 0.0;
    for (std::size_t frame = 0; frame < numFrames; ++frame) {
        if (frame % framesPerBeat == 0) {
            noiseLevel = 0.3;
            const auto& chord = chords[frame / (2 * framesPerBeat) % 4];
            for (int note = 0; note < 3; ++note)
                for (int harmonic = 0; harmonic < numHarmonics; ++harmonic)
                    partials[note][harmonic].setFrequency(chord[note] * (harmonic + 1), sampleRate);
        }
        noiseState = noiseState * 1664525u + 1013904223u;
        const double noise = (static_cast<double>(noiseState >> 8) / 8388608.0 - 1.0) * noiseLevel;
        noiseLevel *= noiseDecay;
        double left = 0.6 * noise;
        double right = 0.4 * noise;
        for (int note = 0; note < 3; ++note)
            for (int harmonic = 0; harmonic < numHarmonics; ++harmonic) {
                const double tone = 0.08 / (harmonic + 1) * partials[note][harmonic].next();
                left += leftGains[note] * tone;
                right += (1.4 - leftGains[note]) * tone;
            }
        samples[2 * frame] = static_cast<float>(left);
        samples[2 * frame + 1] = static_cast<float>(right);
    }
    return samples;
}

void writeStereoWav(const std::string& path, const std::vector<float>& interleaved, int sampleRate)
{
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error("libsndfile cannot write " + path);
    sf_writef_float(file, interleaved.data(), static_cast<sf_count_t>(interleaved.size() / 2));
    sf_close(file);
}

// lame's --resample keeps it from picking a rate of its own for the bit rate.
MadeStream encodeWithLame(const std::string& folder, const std::string& name, int sampleRate,
                          const std::string& kilohertz, int kilobitsPerSecond)
{
    const std::string wavPath = folder + "/" + name + ".wav";
    const std::string path = folder + "/" + name + ".mp3";
    writeStereoWav(wavPath, makeMusic(sampleRate), sampleRate);
    const std::string command = "lame --quiet -m j -b " + std::to_string(kilobitsPerSecond) + " --resample " +
                                kilohertz + " '" + wavPath + "' '" + path + "' </dev/null >/dev/null 2>&1";
    const int status = std::system(command.c_str());
    std::filesystem::remove(wavPath);
    if (status != 0)
        return {"", "lame failed with status " +
                        std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : status) +
                        ": the Debian package lame makes the Layer III streams"};
    return {path, ""};
}

} // namespace

const MadeStream& getMpegBenchStream(MpegBenchStream stream)
{
    static const StreamFolder folder;
    switch (stream) {
    case MpegBenchStream::layer2Stereo48k: {
        static const MadeStream made = makeLayer2Stream(folder.path);
        return made;
    }
    case MpegBenchStream::layer3Stereo128k: {
        static const MadeStream made = encodeWithLame(folder.path, "stereo128k", 44100, "44.1", 128);
        return made;
    }
    case MpegBenchStream::layer3Mpeg2Stereo64k: {
        static const MadeStream made = encodeWithLame(folder.path, "mpeg2stereo64k", 22050, "22.05", 64);
        return made;
    }
    }
    throw std::invalid_argument("no such stream");
}

} // namespace vlk::bench
