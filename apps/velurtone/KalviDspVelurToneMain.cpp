// velurtone: writes the demo's sound, a short stereo arpeggio, as a 16-bit WAV file.
#include "KalviDspVelurTonePcmWavWriter.h"

#include "threads/KalviDspException.h"

#include <cmath>
#include <cstdio>
#include <numbers>
#include <vector>

namespace {

constexpr std::uint32_t sampleRate = 44100;
constexpr double seconds = 4.0;
constexpr double noteSeconds = 0.25;
// A major arpeggio up and down, in hertz; the right channel plays it a fifth higher.
constexpr double notes[] = {261.63, 329.63, 392.00, 523.25, 659.26, 523.25, 392.00, 329.63};

// One plucked note: a quick attack and an exponential decay, with a quiet octave above.
float pluck(double frequency, double time)
{
    const double envelope = std::min(1.0, time / 0.005) * std::exp(-time * 6.0);
    const double phase = 2.0 * std::numbers::pi * frequency * time;
    return static_cast<float>(0.4 * envelope * (std::sin(phase) + 0.25 * std::sin(2.0 * phase)));
}

std::vector<float> renderArpeggio(std::uint32_t numFrames)
{
    std::vector<float> frames(static_cast<std::size_t>(numFrames) * 2);
    const auto framesPerNote = static_cast<std::uint32_t>(noteSeconds * sampleRate);
    for (std::uint32_t i = 0; i < numFrames; ++i) {
        const std::uint32_t note = i / framesPerNote;
        const double frequency = notes[note % std::size(notes)];
        const double time = static_cast<double>(i % framesPerNote) / sampleRate;
        frames[2 * static_cast<std::size_t>(i)] = pluck(frequency, time);
        frames[2 * static_cast<std::size_t>(i) + 1] = pluck(frequency * 1.5, time);
    }
    return frames;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs(
            "usage: velurtone OUTPUT.wav\n  writes 4 seconds of a stereo arpeggio, 16 bits, 44.1 kHz\n",
            stderr);
        return 1;
    }
    try {
        const auto numFrames = static_cast<std::uint32_t>(seconds * sampleRate);
        vlk::velurtone::PcmWavWriter writer(vlk::File(argv[1]), 2, sampleRate, numFrames);
        if (!writer.writeFrames(renderArpeggio(numFrames))) {
            std::fprintf(stderr, "velurtone: could not write %s\n", argv[1]);
            return 1;
        }
    } catch (const vlk::Exception& exception) {
        std::fprintf(stderr, "velurtone: %s\n", exception.what());
        return 1;
    }
    return 0;
}
