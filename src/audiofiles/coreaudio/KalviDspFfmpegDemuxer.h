#pragma once

#include "audiofiles/coreaudio/KalviDspAudioToolbox.h"

#include <cstdint>
#include <memory>

struct AVFormatContext;
struct AVIOContext;
struct AVPacket;
struct AVStream;

namespace vlk {

// A container opened by FFmpeg on bytes that callbacks give: the file's best audio stream, its packets in
// order, and seeks by time. The bytes are asked for at an explicit position each time, so the callbacks
// need no position of their own. One thread at a time.
class FfmpegDemuxer
{
public:
    struct ByteSource
    {
        void* client;
        AudioFile_ReadProc read;
        AudioFile_GetSizeProc size;
    };

    // Null when no demuxer takes the bytes or they hold no audio stream that a decoder of FFmpeg reads.
    static std::unique_ptr<FfmpegDemuxer> open(const ByteSource& source);
    FfmpegDemuxer(const FfmpegDemuxer&) = delete;
    FfmpegDemuxer& operator=(const FfmpegDemuxer&) = delete;
    ~FfmpegDemuxer();

    const AVStream& getStream() const;
    // How the container came by the stream's duration: FFmpeg's AVDurationEstimationMethod.
    int getDurationEstimationMethod() const;
    // The next packet of the audio stream: 0, AVERROR_EOF at the end, another AVERROR when reading failed.
    int readPacket(AVPacket& packet);
    // To the last point where decoding may begin at or before timestamp, in the stream's time base.
    bool seekBackwardTo(std::int64_t timestamp);
    // Whether the packets after a seek carry the timestamps that a read from the start gives them.
    bool keepsTimestampsOverSeeks() const;

private:
    explicit FfmpegDemuxer(const ByteSource& source);
    bool openContainer();

    static int readBytes(void* demuxer, std::uint8_t* buffer, int size);
    static std::int64_t seekBytes(void* demuxer, std::int64_t offset, int whence);

    ByteSource source;
    std::int64_t position = 0;
    AVIOContext* io = nullptr;
    AVFormatContext* format = nullptr;
    int streamIndex = -1;
};

} // namespace vlk
