#include "audiofiles/coreaudio/KalviDspFfmpegAudioDecoder.h"

#include "audiofiles/coreaudio/KalviDspFfmpegDemuxer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <cerrno>

namespace vlk {

namespace {

// Decoding starts this far before a seek's target, on top of the preroll the codec asks for (Opus's 80 ms):
// by then the overlap of the transform codecs (a Vorbis block of up to 8192, an AAC frame of 1024) and the
// history of a Layer II synthesis are rebuilt, so that the target's samples come out as a read from the start
// gives them.
constexpr std::int64_t seekRunUpFrames = 8192;
// A seek that lands behind its target is retried from four and sixteen times further back, then from the
// start of the stream.
constexpr int seekRetries = 2;
// Where decoding from the start begins: before content frame 0, so that the demuxer goes back to the first
// packet, padding included.
constexpr std::int64_t beginning = -seekRunUpFrames;
// The length is measured by decoding the stream from this many seconds before the end its container states.
constexpr std::int64_t tailSeconds = 2;
// Timestamps beyond this many frames from 0 are damage; counting them as absent keeps the arithmetic exact.
constexpr std::int64_t timestampLimit = std::int64_t{1} << 40;
// A decoder that fails this many times in a row without giving a frame is taken to have nothing more.
constexpr int maxFailuresInARow = 1000;

bool declaresIntegerFormatsOnly(const AVCodec& codec)
{
    if (codec.sample_fmts == nullptr || *codec.sample_fmts == AV_SAMPLE_FMT_NONE)
        return false;
    for (const AVSampleFormat* format = codec.sample_fmts; *format != AV_SAMPLE_FMT_NONE; ++format)
        if (*format == AV_SAMPLE_FMT_FLTP || *format == AV_SAMPLE_FMT_FLT)
            return false;
    return true;
}

// The decoder FFmpeg's own tools pick, unless it gives integers only and another one gives floats: the
// fixed-point MPEG audio decoders dither their rounding with a state that a seek does not restore, and keep
// less than a float holds.
const AVCodec* findDecoder(AVCodecID id)
{
    const AVCodec* first = avcodec_find_decoder(id);
    if (first == nullptr || !declaresIntegerFormatsOnly(*first))
        return first;
    void* iterator = nullptr;
    while (const AVCodec* codec = av_codec_iterate(&iterator))
        if (codec->id == id && av_codec_is_decoder(codec) &&
            !(codec->capabilities & AV_CODEC_CAP_EXPERIMENTAL) && codec->sample_fmts != nullptr &&
            !declaresIntegerFormatsOnly(*codec))
            return codec;
    return first;
}

bool isWithinLimit(std::int64_t frames)
{
    return frames > -timestampLimit && frames < timestampLimit;
}

} // namespace

FfmpegAudioDecoder::FfmpegAudioDecoder(FfmpegDemuxer& demuxer) : demuxer(demuxer) {}

FfmpegAudioDecoder::~FfmpegAudioDecoder()
{
    avcodec_free_context(&codec);
    av_packet_free(&packet);
    av_frame_free(&frame);
}

std::unique_ptr<FfmpegAudioDecoder> FfmpegAudioDecoder::open(FfmpegDemuxer& demuxer)
{
    std::unique_ptr<FfmpegAudioDecoder> decoder(new FfmpegAudioDecoder(demuxer));
    if (!decoder->openCodec() || !decoder->decodeStart())
        return nullptr;
    decoder->numFrames = decoder->measureLength();
    if (!decoder->seek(0))
        return nullptr;
    return decoder;
}

int FfmpegAudioDecoder::getBitsPerSample() const
{
    return codec->bits_per_raw_sample;
}

bool FfmpegAudioDecoder::openCodec()
{
    packet = av_packet_alloc();
    frame = av_frame_alloc();
    return packet != nullptr && frame != nullptr && reopenCodec();
}

// A decoder made anew rather than flushed: codecs with noise substitution (AAC, Opus) draw it from a random
// state that a flush leaves running, so only a new one decodes from the start what a first read decoded.
bool FfmpegAudioDecoder::reopenCodec()
{
    avcodec_free_context(&codec);
    const AVStream& stream = demuxer.getStream();
    const AVCodec* decoder = findDecoder(stream.codecpar->codec_id);
    if (decoder == nullptr)
        return false;
    codec = avcodec_alloc_context3(decoder);
    if (codec == nullptr || avcodec_parameters_to_context(codec, stream.codecpar) < 0)
        return false;
    codec->pkt_timebase = stream.time_base;
    // A reader decodes on the thread that asks for samples, and on no other.
    codec->thread_count = 1;
    return avcodec_open2(codec, decoder, nullptr) >= 0;
}

// The first frame that comes fixes the rate, the channels and where content frame 0 lies.
bool FfmpegAudioDecoder::decodeStart()
{
    if (decodeFrame() != 1)
        return false;
    sampleRate = frame->sample_rate;
    numChannels = frame->ch_layout.nb_channels;
    const AVRational timeBase = demuxer.getStream().time_base;
    if (sampleRate <= 0 || numChannels <= 0 || timeBase.num <= 0 || timeBase.den <= 0)
        return false;
    startTimestamp = framePosition().value_or(0);
    converter = std::make_unique<FfmpegSampleConverter>(numChannels, sampleRate);
    return converter->convert(*frame);
}

// The end of the last frame. A length that the container's headers state (an edit list, the last page's
// position) ends the sound before the codec's padding, so it bounds the measure; one estimated from the bit
// rate only tells where to start measuring.
std::int64_t FfmpegAudioDecoder::measureLength()
{
    const AVStream& stream = demuxer.getStream();
    std::optional<std::int64_t> stated;
    if (stream.duration != AV_NOPTS_VALUE && stream.duration > 0 && isWithinLimit(toFrames(stream.duration)))
        stated = toFrames(stream.duration);
    std::int64_t end = stated ? findEnd(*stated - tailSeconds * sampleRate) : -1;
    if (end < 0)
        end = findEnd(beginning);
    end = std::max<std::int64_t>(end, 0);
    if (stated && demuxer.getDurationEstimationMethod() != AVFMT_DURATION_FROM_BITRATE)
        return std::min(end, *stated);
    return end;
}

// -1 when no frame came, or one came without a timestamp where only timestamps place it.
std::int64_t FfmpegAudioDecoder::findEnd(std::int64_t from)
{
    if (!restartFrom(from))
        return -1;
    std::int64_t end = -1;
    while (decodeBlock() == 1) {
        if (!blockHadTimestamp && from != beginning)
            return -1;
        end = std::max(end, blockPosition + blockFrames);
    }
    return end;
}

bool FfmpegAudioDecoder::seek(std::int64_t target)
{
    if (target < 0)
        return false;
    // Behind the end nothing is decoded: reads give silence until the next seek.
    if (target >= numFrames) {
        blockPosition = target;
        blockOffset = 0;
        blockFrames = 0;
        return true;
    }
    for (int retry = 0; retry <= seekRetries; ++retry) {
        const std::int64_t runUp = seekRunUpFrames + std::max(demuxer.getStream().codecpar->seek_preroll, 0);
        const std::int64_t from = target - (runUp << (2 * retry));
        if (from <= beginning)
            break;
        if (!restartFrom(from))
            break;
        const int landed = locate(target, false);
        if (landed >= 0)
            return landed == 1;
    }
    return restartFrom(beginning) && locate(target, true) == 1;
}

bool FfmpegAudioDecoder::restartFrom(std::int64_t from)
{
    if (!reopenCodec())
        return false;
    converter->reset();
    inputEnded = false;
    blockOffset = 0;
    blockFrames = 0;
    failuresInARow = 0;
    packetPending = false;
    nextPosition = std::max<std::int64_t>(from, 0);
    if (!demuxer.keepsTimestampsOverSeeks())
        return seekBackwardTo(beginning) && skipPacketsBefore(from);
    return seekBackwardTo(from);
}

bool FfmpegAudioDecoder::seekBackwardTo(std::int64_t from)
{
    if (demuxer.seekBackwardTo(toTimestamp(from + startTimestamp)))
        return true;
    // Some demuxers refuse a time before their first packet.
    return from < 0 && demuxer.seekBackwardTo(toTimestamp(startTimestamp));
}

// Walks the packets from the start of the stream without decoding them, so that the first one decoded carries
// the timestamp that a read from the start gives it; it is kept for the decoder. The cost is a read of the
// stream up to the target, a small part of what decoding it would take.
bool FfmpegAudioDecoder::skipPacketsBefore(std::int64_t from)
{
    const std::int64_t firstTimestamp = toTimestamp(from + startTimestamp);
    for (;;) {
        const int result = demuxer.readPacket(*packet);
        if (result == AVERROR(ENOMEM))
            return false;
        // The end, or damage the demuxer cannot pass: decoding finds it again.
        if (result < 0)
            return true;
        if (from <= beginning || packet->pts == AV_NOPTS_VALUE || packet->duration <= 0 ||
            packet->pts + packet->duration > firstTimestamp) {
            packetPending = true;
            return true;
        }
        av_packet_unref(packet);
    }
}

// Decodes up to the block that holds target and leaves reads there: 1. 0 when the first block came without a
// timestamp or behind the target, so that only a run-up from further back lands; -1 on failure. From the
// start, a stream whose first frame lies behind the target is read from that frame.
int FfmpegAudioDecoder::locate(std::int64_t target, bool fromTheStart)
{
    for (bool first = true;; first = false) {
        const int result = decodeBlock();
        if (result < 0)
            return -1;
        // A target behind the end: reads give nothing.
        if (result == 0)
            return 1;
        if (first && !fromTheStart && (!blockHadTimestamp || blockPosition > target))
            return 0;
        if (blockPosition + blockFrames > target) {
            blockOffset = static_cast<int>(std::max<std::int64_t>(target - blockPosition, 0));
            return 1;
        }
    }
}

std::int64_t FfmpegAudioDecoder::read(float* const* channels, std::int64_t count)
{
    std::int64_t done = 0;
    // The sound ends at its measured length; what a codec pads behind it is not delivered.
    while (done < count && blockPosition + blockOffset < numFrames) {
        if (blockOffset == blockFrames) {
            const int result = decodeBlock();
            if (result < 0)
                return -1;
            if (result == 0)
                break;
            continue;
        }
        const std::int64_t available = numFrames - (blockPosition + blockOffset);
        const std::int64_t length =
            std::min({count - done, std::int64_t{blockFrames - blockOffset}, available});
        for (int channel = 0; channel < numChannels; ++channel)
            std::copy_n(converter->getChannel(channel) + blockOffset, length, channels[channel] + done);
        blockOffset += static_cast<int>(length);
        done += length;
    }
    for (int channel = 0; channel < numChannels; ++channel)
        std::fill(channels[channel] + done, channels[channel] + count, 0.0f);
    return done;
}

// 1 with the next frame converted into the block, 0 at the end of the stream, -1 on failure.
int FfmpegAudioDecoder::decodeBlock()
{
    blockOffset = 0;
    blockFrames = 0;
    const int result = decodeFrame();
    if (result != 1)
        return result;
    if (!converter->convert(*frame))
        return -1;
    const std::optional<std::int64_t> position = framePosition();
    blockHadTimestamp = position.has_value();
    blockPosition = position.value_or(nextPosition);
    blockFrames = converter->getNumFrames();
    nextPosition = blockPosition + blockFrames;
    return 1;
}

// Damage in a packet costs that packet, as it does in FFmpeg's own tools; only a want of memory fails.
int FfmpegAudioDecoder::decodeFrame()
{
    for (;;) {
        const int result = avcodec_receive_frame(codec, frame);
        if (result == 0) {
            failuresInARow = 0;
            return 1;
        }
        if (result == AVERROR_EOF)
            return 0;
        if (result == AVERROR(ENOMEM))
            return -1;
        if (result != AVERROR(EAGAIN)) {
            if (++failuresInARow >= maxFailuresInARow)
                return 0;
            continue;
        }
        if (inputEnded)
            return 0;
        if (!feedPacket())
            return -1;
    }
}

bool FfmpegAudioDecoder::feedPacket()
{
    const int result = packetPending ? 0 : demuxer.readPacket(*packet);
    packetPending = false;
    if (result == AVERROR(ENOMEM))
        return false;
    // A container damaged beyond the demuxer's resynchronisation ends there, as it does in FFmpeg's own
    // tools.
    if (result < 0) {
        inputEnded = true;
        return avcodec_send_packet(codec, nullptr) != AVERROR(ENOMEM);
    }
    const int sent = avcodec_send_packet(codec, packet);
    av_packet_unref(packet);
    return sent != AVERROR(ENOMEM);
}

std::optional<std::int64_t> FfmpegAudioDecoder::framePosition() const
{
    if (frame->pts == AV_NOPTS_VALUE)
        return std::nullopt;
    const std::int64_t frames = toFrames(frame->pts);
    if (!isWithinLimit(frames))
        return std::nullopt;
    return frames - startTimestamp;
}

std::int64_t FfmpegAudioDecoder::toFrames(std::int64_t timestamp) const
{
    return av_rescale_q(timestamp, demuxer.getStream().time_base, AVRational{1, sampleRate});
}

std::int64_t FfmpegAudioDecoder::toTimestamp(std::int64_t frames) const
{
    return av_rescale_q_rnd(frames, AVRational{1, sampleRate}, demuxer.getStream().time_base, AV_ROUND_DOWN);
}

} // namespace vlk
