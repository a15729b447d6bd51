#include "audiofiles/coreaudio/KalviDspFfmpegDemuxer.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mem.h>
}

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>

namespace vlk {

namespace {

constexpr int ioBufferSize = 64 * 1024;

// Playlists and other containers that name further files or addresses would open them through this: a sound
// file is read from its own bytes only.
int refuseNestedOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

// No block of a sound file needs more, and damage claims any size: a CAF file of 191 bytes asks for gigabytes
// for its codec's cookie.
constexpr std::size_t largestAllocation = std::size_t{128} << 20;

// FFmpeg writes every complaint about a damaged file to the standard error; what matters reaches the caller
// as a result. The level and the allocation limit are process-wide, which suits a process that uses FFmpeg
// for this alone.
void configureFfmpeg()
{
    static std::once_flag once;
    std::call_once(once, [] {
        av_log_set_level(AV_LOG_QUIET);
        av_max_alloc(largestAllocation);
    });
}

} // namespace

std::unique_ptr<FfmpegDemuxer> FfmpegDemuxer::open(const ByteSource& source)
{
    configureFfmpeg();
    std::unique_ptr<FfmpegDemuxer> demuxer(new FfmpegDemuxer(source));
    if (!demuxer->openContainer())
        return nullptr;
    return demuxer;
}

FfmpegDemuxer::FfmpegDemuxer(const ByteSource& source) : source(source) {}

FfmpegDemuxer::~FfmpegDemuxer()
{
    // A context opened on our own byte context leaves that to us.
    avformat_close_input(&format);
    if (io != nullptr)
        av_freep(&io->buffer);
    avio_context_free(&io);
}

bool FfmpegDemuxer::openContainer()
{
    auto* buffer = static_cast<unsigned char*>(av_malloc(ioBufferSize));
    if (buffer == nullptr)
        return false;
    io = avio_alloc_context(buffer, ioBufferSize, 0, this, readBytes, nullptr, seekBytes);
    if (io == nullptr) {
        av_free(buffer);
        return false;
    }
    format = avformat_alloc_context();
    if (format == nullptr)
        return false;
    format->pb = io;
    format->io_open = refuseNestedOpen;
    // On failure the context is freed and the pointer cleared.
    if (avformat_open_input(&format, nullptr, nullptr, nullptr) < 0 ||
        avformat_find_stream_info(format, nullptr) < 0)
        return false;
    streamIndex = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (streamIndex < 0)
        return false;
    for (unsigned int index = 0; index < format->nb_streams; ++index)
        if (static_cast<int>(index) != streamIndex)
            format->streams[index]->discard = AVDISCARD_ALL;
    return true;
}

const AVStream& FfmpegDemuxer::getStream() const
{
    return *format->streams[streamIndex];
}

int FfmpegDemuxer::getDurationEstimationMethod() const
{
    return format->duration_estimation_method;
}

int FfmpegDemuxer::readPacket(AVPacket& packet)
{
    for (;;) {
        const int result = av_read_frame(format, &packet);
        if (result < 0 || packet.stream_index == streamIndex)
            return result;
        av_packet_unref(&packet);
    }
}

bool FfmpegDemuxer::seekBackwardTo(std::int64_t timestamp)
{
    return av_seek_frame(format, streamIndex, timestamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

// FFmpeg's Ogg demuxer stamps the first packet after a seek with the time of its page's end, the granule,
// and counts on from there: a Vorbis stream is then labelled a page late for as long as it is read.
bool FfmpegDemuxer::keepsTimestampsOverSeeks() const
{
    return std::strcmp(format->iformat->name, "ogg") != 0;
}

int FfmpegDemuxer::readBytes(void* demuxer, std::uint8_t* buffer, int size)
{
    auto& self = *static_cast<FfmpegDemuxer*>(demuxer);
    UInt32 numRead = 0;
    if (size <= 0)
        return AVERROR_EOF;
    if (self.source.read(self.source.client, self.position, static_cast<UInt32>(size), buffer, &numRead) !=
        noErr)
        return AVERROR(EIO);
    if (numRead == 0)
        return AVERROR_EOF;
    self.position += numRead;
    return static_cast<int>(numRead);
}

std::int64_t FfmpegDemuxer::seekBytes(void* demuxer, std::int64_t offset, int whence)
{
    auto& self = *static_cast<FfmpegDemuxer*>(demuxer);
    const std::int64_t size = self.source.size(self.source.client);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return size;
    case SEEK_SET:
        break;
    case SEEK_CUR:
        offset += self.position;
        break;
    case SEEK_END:
        offset += size;
        break;
    default:
        return AVERROR(EINVAL);
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    self.position = offset;
    return offset;
}

} // namespace vlk
