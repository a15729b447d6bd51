#include "audiofiles/KalviDspMP3FileReader.h"

#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <cstring>

namespace vlk {

namespace {

constexpr std::int64_t samplesPerFrame = MpegAudioDecoder::maxSamplesPerFrame;
// Frames per entry of the decoder's frame table.
constexpr std::int64_t framesPerEntry = 4;
constexpr int id3HeaderSize = 10;
// Calls of decodeNextFrame that may pass without a frame before a block is given up.
constexpr int stepsPerBlock = 10;
// A Layer III frame's main data may begin up to 511 bytes back, across frames before it, and its first granule
// overlaps the previous one. Eight frames more of run-up rebuild both before the target at any MPEG-1 bit rate:
// 511 bytes span at most 7 frames of main data at the lowest one.
constexpr std::int64_t layer3RunUpFrames = 8;

} // namespace

MP3FileReader::MP3FileReader(const File& file) : AudioFileReader(file)
{
    fileReader = std::make_unique<FileReader>(file);
    metadata.formatName = "MP3 File";
    decoder = std::make_unique<MpegAudioDecoder>(*fileReader);
    skipId3Tag();
    const std::int64_t audioStart = decoder->getStream().getPosition();
    if (readNextBlock()) {
        const MpegFrameHeader& header = decoder->getHeader();
        metadata.bitsPerSample = 32;
        metadata.isFloatingPoint = true;
        metadata.sampleRate = mpeg::sampleRates[header.sampleRateIndex];
        metadata.numChannels = static_cast<std::uint32_t>(header.numChannels);
        std::int64_t frames = decoder->getVbrFrames();
        const std::int64_t length = decoder->getStream().getTotalLength();
        // A free-format frame has no size here: without a tag its file gets the length 0 rather than a
        // division by it.
        if (frames <= 0 && length > 0)
            frames = header.frameSize > 0 ? (length - audioStart) / header.frameSize : 0;
        metadata.numSamples = static_cast<std::uint64_t>(std::max<std::int64_t>(frames, 0) * samplesPerFrame);
    }
    if (!hasAcceptableFormat())
        refuse();
}

MP3FileReader::~MP3FileReader() = default;

String MP3FileReader::getFileExtension() const
{
    return ".mp3";
}

void MP3FileReader::refuse() const
{
    throw Exception("file \"" + getFilePath() + "\" is not a valid MP3 file", __FILE__, __LINE__);
}

// A tag whose size bytes have a top bit set, or of revision 0xFF, is not skipped: the frame scan walks
// through it. A footer is not allowed for.
void MP3FileReader::skipId3Tag()
{
    InputStream& stream = decoder->getStream();
    const std::int64_t start = stream.getPosition();
    if ((stream.readUnsignedInt() & 0xFFFFFF) == ('I' | 'D' << 8 | '3' << 16)) {
        std::uint8_t rest[6] = {};
        if (stream.read(rest, sizeof(rest)) == sizeof(rest) && rest[0] != 0xFF &&
            ((rest[2] | rest[3] | rest[4] | rest[5]) & 0x80) == 0) {
            const std::int64_t size = rest[2] << 21 | rest[3] << 14 | rest[4] << 7 | rest[5];
            stream.setPosition(start + id3HeaderSize + size);
            return;
        }
    }
    stream.setPosition(start);
}

// One decoded frame into the two arrays. At the stream's end one block of silence comes first, then false.
bool MP3FileReader::readNextBlock()
{
    for (int step = 0; step < stepsPerBlock; ++step) {
        std::int32_t samplesDone = 0;
        const int result = decoder->decodeNextFrame(decodedLeft, decodedRight, samplesDone);
        if (result <= 0) {
            decodedStart = 0;
            decodedEnd = samplesDone;
            return result == 0;
        }
        if (decoder->getStream().isExhausted()) {
            fillWithSilence();
            return true;
        }
    }
    return false;
}

void MP3FileReader::fillWithSilence()
{
    std::fill(std::begin(decodedLeft), std::end(decodedLeft), 0.0f);
    std::fill(std::begin(decodedRight), std::end(decodedRight), 0.0f);
    decodedStart = 0;
    decodedEnd = static_cast<std::int32_t>(samplesPerFrame);
}

// Exact whenever the position lies in the part of the file already indexed: decoding starts up to four
// frames before it (Layer III eight more), which refills the synthesis history, the overlap and the
// reservoir, and the samples before it are dropped. Beyond the indexed part the stream falls back to the
// last entry while the frame counter is set three frames past it, so the samples come 3456 early; kept as
// it is.
void MP3FileReader::seek(std::uint64_t position)
{
    std::int64_t frameIndex =
        std::max<std::int64_t>(static_cast<std::int64_t>(position / samplesPerFrame) - 1, 0);
    const std::vector<std::int64_t>& table = decoder->getFrameTable();
    while (frameIndex >= static_cast<std::int64_t>(table.size()) * framesPerEntry) {
        std::int32_t unused = 0;
        const int result = decoder->decodeNextFrame(nullptr, nullptr, unused);
        if (result < 0) {
            currentPosition = -1;
            fillWithSilence();
            return;
        }
        if (result > 0)
            break;
    }
    const std::int64_t covered = static_cast<std::int64_t>(table.size()) * framesPerEntry;
    // A stream whose first frame was never found has no entry to start from.
    if (covered == 0) {
        currentPosition = -1;
        fillWithSilence();
        return;
    }
    frameIndex = std::min(frameIndex & ~(framesPerEntry - 1), covered - 1);
    // Without a longer run-up a Layer III jump would decode its first frames without their reservoir and
    // overlap, and differ from the sequential read that the seek promises. The run-up's frames are dropped
    // whole, whatever they give.
    const std::int64_t firstFrame =
        decoder->getHeader().layer == 3 ? std::max<std::int64_t>(frameIndex - layer3RunUpFrames, 0) : frameIndex;
    decoder->getStream().setPosition(table[static_cast<std::size_t>(firstFrame / framesPerEntry)]);
    decoder->setFrameCounter(static_cast<std::int32_t>(firstFrame));
    decoder->reset();
    bool ended = false;
    for (std::int64_t frame = firstFrame; frame < frameIndex && !ended; ++frame)
        ended = !readNextBlock();
    decodedStart = decodedEnd = 0;
    auto toSkip = static_cast<std::int32_t>(static_cast<std::int64_t>(position) - frameIndex * samplesPerFrame);
    if (ended) {
        fillWithSilence();
        toSkip = 0;
    }
    while (toSkip > 0) {
        if (!readNextBlock()) {
            fillWithSilence();
            break;
        }
        const std::int32_t blockLength = decodedEnd - decodedStart;
        if (toSkip < blockLength) {
            decodedStart += toSkip;
            break;
        }
        // A block skipped whole is consumed: a target on a frame boundary starts at the next block, not
        // at the one skipped.
        toSkip -= blockLength;
        decodedStart = decodedEnd;
    }
    currentPosition = static_cast<std::int64_t>(position);
}

// Runs on the buffering thread, or on the thread of a seek, under the player's diskMutex. Writes floats.
bool MP3FileReader::readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position)
{
    if (decoder == nullptr)
        return false;
    if (static_cast<std::int64_t>(position) != currentPosition)
        seek(position);
    const bool twoChannels = metadata.numChannels == 2 && channels[1] != nullptr;
    std::uint64_t done = 0;
    while (done < numSamples) {
        if (decodedStart >= decodedEnd) {
            if (!readNextBlock())
                break;
            continue;
        }
        const auto count = static_cast<std::int32_t>(
            std::min<std::uint64_t>(numSamples - done, static_cast<std::uint64_t>(decodedEnd - decodedStart)));
        std::memcpy(channels[0] + done, decodedLeft + decodedStart, sizeof(float) * static_cast<std::size_t>(count));
        if (twoChannels)
            std::memcpy(channels[1] + done, decodedRight + decodedStart,
                        sizeof(float) * static_cast<std::size_t>(count));
        decodedStart += count;
        currentPosition += count;
        done += static_cast<std::uint64_t>(count);
    }
    if (done == numSamples)
        return true;
    for (int** channel = channels; *channel != nullptr; ++channel)
        std::fill(*channel + done, *channel + numSamples, 0);
    return false;
}

} // namespace vlk
