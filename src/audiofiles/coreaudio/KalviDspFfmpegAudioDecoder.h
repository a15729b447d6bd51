#pragma once

#include "audiofiles/coreaudio/KalviDspFfmpegSampleConverter.h"

#include <cstdint>
#include <memory>
#include <optional>

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace vlk {

class FfmpegDemuxer;

// The audio stream of a demuxer, decoded to non-interleaved 32-bit float at its own rate and addressed by
// content frame: frame 0 is the first frame the decoder gives from the start of the file, behind the
// codec's start padding. A seek decodes from a key point before the target and drops what lies before it,
// so it lands where a read from the start does. One thread at a time.
class FfmpegAudioDecoder
{
public:
    // Null when FFmpeg has no decoder for the stream, or no frame of it decodes and converts.
    static std::unique_ptr<FfmpegAudioDecoder> open(FfmpegDemuxer& demuxer);
    FfmpegAudioDecoder(const FfmpegAudioDecoder&) = delete;
    FfmpegAudioDecoder& operator=(const FfmpegAudioDecoder&) = delete;
    ~FfmpegAudioDecoder();

    int getSampleRate() const { return sampleRate; }
    int getNumChannels() const { return numChannels; }
    int getBitsPerSample() const;
    // Measured at open, from the last frames of the stream.
    std::int64_t getNumFrames() const { return numFrames; }

    // False when the stream cannot be read there; a target behind the end leaves reads giving nothing.
    bool seek(std::int64_t frame);
    // Up to numFrames frames into the channel arrays; the count that came, 0 at the end, -1 on failure.
    // Frames behind those that came are written as zeros.
    std::int64_t read(float* const* channels, std::int64_t numFrames);

private:
    FfmpegDemuxer& demuxer;
    explicit FfmpegAudioDecoder(FfmpegDemuxer& demuxer);
    bool openCodec();
    bool reopenCodec();
    bool decodeStart();
    std::int64_t measureLength();
    std::int64_t findEnd(std::int64_t from);
    bool restartFrom(std::int64_t from);
    bool seekBackwardTo(std::int64_t from);
    bool skipPacketsBefore(std::int64_t from);
    int locate(std::int64_t target, bool fromTheStart);
    int decodeBlock();
    int decodeFrame();
    bool feedPacket();
    // The frame's content position by its timestamp; none without one.
    std::optional<std::int64_t> framePosition() const;
    std::int64_t toFrames(std::int64_t timestamp) const;
    std::int64_t toTimestamp(std::int64_t frames) const;

    AVCodecContext* codec = nullptr;
    AVPacket* packet = nullptr;
    AVFrame* frame = nullptr;
    std::unique_ptr<FfmpegSampleConverter> converter;
    int sampleRate = 0;
    int numChannels = 0;
    std::int64_t numFrames = 0;
    // The timestamp of content frame 0, in frames of the stream's rate.
    std::int64_t startTimestamp = 0;
    bool inputEnded = false;
    // The packet member holds the next packet to decode, read ahead by skipPacketsBefore.
    bool packetPending = false;
    // The converted block that reads take from: its content frame, and how much of it was taken.
    std::int64_t blockPosition = 0;
    int blockOffset = 0;
    int blockFrames = 0;
    // Where the next block begins when its frame carries no timestamp.
    std::int64_t nextPosition = 0;
    bool blockHadTimestamp = false;
    int failuresInARow = 0;
};

} // namespace vlk
