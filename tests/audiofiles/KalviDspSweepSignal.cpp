#include "audiofiles/KalviDspSweepSignal.h"

#include <sndfile.h>

#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace vlk::test {

namespace {

struct Sweep
{
    double startHz;
    double endHz;
    float amplitude;
};

constexpr std::array<Sweep, 2> sweeps{Sweep{150.0, 900.0, 0.4f}, Sweep{1000.0, 300.0, 0.3f}};

} // namespace

std::vector<std::vector<float>> makeSweepSignal(std::uint32_t numChannels, int sampleRate, double seconds)
{
    const auto numFrames = static_cast<std::size_t>(seconds * sampleRate);
    std::vector<std::vector<float>> channels(numChannels, std::vector<float>(numFrames));
    for (std::uint32_t channel = 0; channel < numChannels; ++channel) {
        const Sweep& sweep = sweeps.at(channel);
        const double slope = (sweep.endHz - sweep.startHz) / seconds;
        for (std::size_t frame = 0; frame < numFrames; ++frame) {
            const double time = static_cast<double>(frame) / sampleRate;
            const double phase = 2.0 * std::numbers::pi * (sweep.startHz * time + slope * time * time / 2.0);
            channels[channel][frame] = sweep.amplitude * static_cast<float>(std::sin(phase));
        }
    }
    return channels;
}

void writeWavFile(const std::string& path, const std::vector<std::vector<float>>& channels, int sampleRate,
                  int format)
{
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = static_cast<int>(channels.size());
    info.format = format;
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

} // namespace vlk::test
