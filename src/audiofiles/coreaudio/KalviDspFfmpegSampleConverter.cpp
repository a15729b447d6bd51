#include "audiofiles/coreaudio/KalviDspFfmpegSampleConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

namespace vlk {

FfmpegSampleConverter::FfmpegSampleConverter(int numChannels, int sampleRate)
    : numChannels(numChannels), sampleRate(sampleRate)
{
}

FfmpegSampleConverter::~FfmpegSampleConverter()
{
    swr_free(&resampler);
}

bool FfmpegSampleConverter::convert(const AVFrame& frame)
{
    numFrames = 0;
    if (!configureFor(frame))
        return false;
    const int maxFrames = swr_get_out_samples(resampler, frame.nb_samples);
    if (maxFrames < 0)
        return false;
    if (std::size_t(maxFrames) > capacity)
        grow(std::size_t(maxFrames));
    const int converted =
        swr_convert(resampler, channelPointers.data(), maxFrames,
                    const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
    if (converted < 0)
        return false;
    numFrames = converted;
    return true;
}

void FfmpegSampleConverter::grow(std::size_t frames)
{
    capacity = frames;
    samples.resize(capacity * std::size_t(numChannels));
    channelPointers.resize(std::size_t(numChannels));
    for (int channel = 0; channel < numChannels; ++channel)
        channelPointers[std::size_t(channel)] =
            reinterpret_cast<std::uint8_t*>(samples.data() + std::size_t(channel) * capacity);
}

void FfmpegSampleConverter::reset()
{
    if (resampler != nullptr) {
        swr_close(resampler);
        if (swr_init(resampler) < 0)
            swr_free(&resampler);
    }
}

// The output keeps the frame's layout when the channel counts agree, so that nothing is remixed.
bool FfmpegSampleConverter::configureFor(const AVFrame& frame)
{
    if (resampler != nullptr && frame.format == inputFormat && frame.sample_rate == inputRate &&
        frame.ch_layout.nb_channels == inputChannels)
        return true;
    swr_free(&resampler);
    AVChannelLayout outputLayout{};
    if (frame.ch_layout.nb_channels == numChannels)
        av_channel_layout_copy(&outputLayout, &frame.ch_layout);
    else
        av_channel_layout_default(&outputLayout, numChannels);
    // FFmpeg 5 takes the layouts through pointers to non-const.
    AVChannelLayout inputLayout{};
    av_channel_layout_copy(&inputLayout, &frame.ch_layout);
    const int result =
        swr_alloc_set_opts2(&resampler, &outputLayout, AV_SAMPLE_FMT_FLTP, sampleRate, &inputLayout,
                            static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    av_channel_layout_uninit(&inputLayout);
    av_channel_layout_uninit(&outputLayout);
    if (result < 0 || swr_init(resampler) < 0) {
        swr_free(&resampler);
        return false;
    }
    inputFormat = frame.format;
    inputRate = frame.sample_rate;
    inputChannels = frame.ch_layout.nb_channels;
    return true;
}

} // namespace vlk
