#pragma once

#include <cstdint>
#include <vector>

struct AVFrame;
struct SwrContext;

namespace vlk {

// Turns decoded frames of any sample format, layout and rate into non-interleaved 32-bit float of a fixed
// channel count and rate, through libswresample, which is set up anew whenever a frame's format changes.
class FfmpegSampleConverter
{
public:
    FfmpegSampleConverter(int numChannels, int sampleRate);
    FfmpegSampleConverter(const FfmpegSampleConverter&) = delete;
    FfmpegSampleConverter& operator=(const FfmpegSampleConverter&) = delete;
    ~FfmpegSampleConverter();

    // False, with nothing converted, when libswresample takes no such frame (more than its channel limit).
    bool convert(const AVFrame& frame);
    // Drops what a rate conversion holds back, so that nothing of the stream before a seek comes out after.
    void reset();

    int getNumFrames() const { return numFrames; }
    const float* getChannel(int channel) const { return samples.data() + std::size_t(channel) * capacity; }

private:
    bool configureFor(const AVFrame& frame);
    void grow(std::size_t frames);

    const int numChannels;
    const int sampleRate;
    SwrContext* resampler = nullptr;
    int inputFormat = -1;
    int inputRate = 0;
    int inputChannels = 0;
    std::vector<float> samples;
    std::vector<std::uint8_t*> channelPointers;
    std::size_t capacity = 0;
    int numFrames = 0;
};

} // namespace vlk
