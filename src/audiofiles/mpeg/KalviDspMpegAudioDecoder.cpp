#include "audiofiles/mpeg/KalviDspMpegAudioDecoder.h"

#include "audiofiles/mpeg/KalviDspMpegLayer12.h"

#include <algorithm>
#include <cstring>

namespace vlk {

namespace {

constexpr std::uint32_t bits(std::uint32_t word, int lowest, int count)
{
    return (word >> lowest) & ((1u << count) - 1);
}

} // namespace

MpegAudioDecoder::MpegAudioDecoder(const FileReader& file) : file(file) {}

void MpegAudioDecoder::reset()
{
    headerParsed = sideParsed = dataParsed = false;
    isFreeFormat = wasFreeFormat = false;
    sideInfoSize = dataSize = currentFrameSize = 0;
    lastFrameSizeNoPadding = 0;
    std::memset(buffers, 0, sizeof(buffers));
    synthesis.reset();
    layer3.reset();
    lastFrameSize = -1;
    needToSync = true;
    bufferIndex = 0;
    bitPointer = roomInFront;
}

int MpegAudioDecoder::decodeNextFrame(float* left, float* right, std::int32_t& samplesDone)
{
    if (!headerParsed) {
        const std::int32_t offset = scanForHeader(false);
        if ((lastFrameSize == -1 || needToSync) && skipVbrTag()) {
            // The scan counted the tag's frame; the table indexes audio frames, so that a jump into a tagged
            // stream lands where a sequential read does.
            if (offset >= 0)
                --frameCounter;
            return 1;
        }
        if (offset < 0)
            return -1;
        if (offset > 0)
            absorbJunk(offset);
        parseHeader();
        if (lastFrameSize == -1)
            return 1;
    }
    if (!sideParsed)
        parseSideInfo();

    int result = 1;
    if (!dataParsed) {
        readIntoBuffer(bitPointer, dataSize);
        if (left != nullptr)
            decodeFrameData(left, right, samplesDone);
        bitPointer = roomInFront + sideInfoSize + dataSize;
        dataParsed = true;
        result = 0;
    }
    // A free-format frame with no header behind it can never be finished: once its data are out, the stream
    // ends here, rather than with a step that gives nothing at every call for ever.
    if (isFreeFormat && !measureFreeFormatFrame())
        return result == 0 ? 0 : -1;
    if (result == 0)
        return 0;
    readFrameTail();
    lastFrameSize = currentFrameSize;
    wasFreeFormat = isFreeFormat;
    currentFrameSize = 0;
    headerParsed = sideParsed = dataParsed = false;
    return 1;
}

// Looks ahead without consuming: the distance from the stream's position to the next header, or -1 when
// none lies within 32768 bytes or before the end. Every fourth frame found is noted in the frame table.
std::int32_t MpegAudioDecoder::scanForHeader(bool strict)
{
    const std::int64_t start = stream.getPosition();
    if (stream.isExhausted())
        return -1;
    std::uint32_t word = 0;
    std::uint8_t block[4096];
    std::int64_t offset = 0;
    std::int32_t result = -1;
    while (result < 0 && offset <= largestScan) {
        const auto wanted = static_cast<std::int64_t>(std::min<std::int64_t>(sizeof(block), largestScan + 1 - offset));
        const std::int64_t numRead = stream.read(block, wanted);
        if (numRead <= 0)
            break;
        for (std::int64_t index = 0; index < numRead; ++index, ++offset) {
            word = word << 8 | block[index];
            if (offset >= 3 && matchesStream(word, strict)) {
                result = static_cast<std::int32_t>(offset - 3);
                break;
            }
        }
    }
    stream.setPosition(start);
    if (result >= 0)
        noteFramePosition(start + result);
    return result;
}

bool MpegAudioDecoder::matchesStream(std::uint32_t word, bool strict) const
{
    if (!MpegFrameHeader::isPossibleHeader(word))
        return false;
    const auto layer = static_cast<std::int32_t>(4 - bits(word, 17, 2));
    if (header.layer != 0 && layer != header.layer)
        return false;
    if (!strict)
        return true;
    MpegFrameHeader candidate;
    candidate.decode(word);
    return candidate.numChannels == header.numChannels && candidate.lsf == header.lsf &&
           candidate.mpeg25 == header.mpeg25 && candidate.sampleRateIndex == header.sampleRateIndex;
}

void MpegAudioDecoder::noteFramePosition(std::int64_t position)
{
    if (frameCounter >= 0 && frameCounter % 4 == 0) {
        const auto entry = static_cast<std::size_t>(frameCounter / 4);
        if (entry >= frameTable.size())
            frameTable.resize(entry + 1);
        frameTable[entry] = position;
    }
    ++frameCounter;
}

// A tag frame is stepped over whole and never decoded.
bool MpegAudioDecoder::skipVbrTag()
{
    needToSync = false;
    std::int64_t position = stream.getPosition();
    std::uint8_t bytes[VbrTag::bytesToParse] = {};
    stream.read(bytes, sizeof(bytes));
    const std::optional<VbrTag> tag = VbrTag::parse(bytes);
    vbrTagFound = tag.has_value();
    if (vbrTagFound) {
        vbrTag = *tag;
        vbrFrames = tag->frames;
        position += std::max(tag->headerSize, 1);
    }
    stream.setPosition(position);
    return vbrTagFound;
}

// Junk before a frame goes behind the bytes of the last frame, where a Layer III frame may take reservoir
// bytes from; never beyond the frame area.
void MpegAudioDecoder::absorbJunk(std::int32_t offset)
{
    wasFreeFormat = false;
    needToSync = true;
    std::int32_t used = bitPointer - roomInFront;
    if (used > frameAreaSize || used < 0) {
        bitPointer = roomInFront;
        used = 0;
    }
    if (used + offset > frameAreaSize) {
        const std::int32_t excess = used + offset - frameAreaSize;
        skipStream(excess);
        offset -= excess;
    }
    readIntoBuffer(bitPointer, offset);
    lastFrameSize += offset;
}

void MpegAudioDecoder::parseHeader()
{
    std::uint8_t word[4] = {};
    stream.read(word, sizeof(word));
    header.decode(static_cast<std::uint32_t>(word[0]) << 24 | static_cast<std::uint32_t>(word[1]) << 16 |
                  static_cast<std::uint32_t>(word[2]) << 8 | word[3]);
    if (header.layer == 2)
        header.selectLayer2AllocationTable();
    headerParsed = true;
    currentFrameSize = header.frameSize;
    isFreeFormat = header.frameSize == 0;
    const bool mono = header.numChannels == 1;
    sideInfoSize = header.lsf != 0 ? (mono ? 9 : 17) : (mono ? 17 : 32);
    if (header.crcFollows)
        sideInfoSize += 2;
    bufferIndex ^= 1;
    bitPointer = roomInFront;
}

void MpegAudioDecoder::parseSideInfo()
{
    if (header.layer == 3) {
        readIntoBuffer(bitPointer, sideInfoSize);
        MpegBitReader reader(currentBuffer() + bitPointer, sideInfoSize);
        if (header.crcFollows)
            reader.skip(16);
        const bool ms = header.mode == 1 && (header.modeExtension & 2) != 0;
        const std::uint32_t dataBits =
            sideInfo.parse(reader, header.numChannels, header.lsf != 0, ms, header.sampleRateIndex);
        const auto bitsInFrame = std::max<std::int64_t>(std::int64_t{dataBits} - 8 * std::int64_t{sideInfo.mainDataBegin}, 0);
        dataSize = static_cast<std::int32_t>((bitsInFrame + 7) / 8);
        if (!isFreeFormat)
            dataSize = std::min(dataSize, header.frameSize - sideInfoSize);
        bitPointer += sideInfoSize;
    } else {
        dataSize = header.frameSize;
        sideInfoSize = 0;
    }
    sideParsed = true;
}

void MpegAudioDecoder::decodeFrameData(float* left, float* right, std::int32_t& samplesDone)
{
    if (header.layer == 3) {
        decodeLayerThreeFrame(left, right, samplesDone);
        return;
    }
    MpegBitReader reader(currentBuffer() + bitPointer, bufferSize - bitPointer);
    if (header.crcFollows)
        reader.skip(16);
    if (header.layer == 1)
        decodeLayer1(header, reader, synthesis, left, right, samplesDone);
    else
        decodeLayer2(header, reader, synthesis, left, right, samplesDone);
}

// The main data begin mainDataBegin bytes before the frame's own, in the bytes that the previous frame ends
// with: those go right in front of this frame's main data, over its side information, which is parsed.
void MpegAudioDecoder::decodeLayerThreeFrame(float* left, float* right, std::int32_t& samplesDone)
{
    const auto reservoir = static_cast<std::int32_t>(sideInfo.mainDataBegin);
    if (reservoir > 0 && lastFrameSize < 0)
        return;
    // The previous frame's bytes lie within its buffer; held there, a size made up by junk cannot reach out.
    const std::int32_t from = std::clamp(roomInFront + lastFrameSize - reservoir, 0, bufferSize - reservoir);
    const std::int32_t mainData = bitPointer - reservoir;
    std::memmove(currentBuffer() + mainData, buffers[bufferIndex ^ 1] + from, static_cast<std::size_t>(reservoir));
    MpegBitReader reader(currentBuffer() + mainData, bufferSize - mainData);
    layer3.decodeFrame(header, sideInfo, reader, synthesis, left, right, samplesDone);
}

// A free-format frame's size is the distance to the next header of the same format, measured at its first
// frame and taken again, with this frame's padding, for those that follow. False when no next header is
// found: the frame stays open.
bool MpegAudioDecoder::measureFreeFormatFrame()
{
    if (wasFreeFormat) {
        currentFrameSize = lastFrameSizeNoPadding + header.padding;
        return true;
    }
    const std::int32_t offset = scanForHeader(true);
    if (offset < 0)
        return false;
    currentFrameSize = offset + sideInfoSize + dataSize;
    lastFrameSizeNoPadding = currentFrameSize - header.padding;
    return true;
}

// The frame's bytes behind its main data: the next Layer III frame's reservoir, at most 512 of them.
void MpegAudioDecoder::readFrameTail()
{
    std::int32_t rest = currentFrameSize - sideInfoSize - dataSize;
    if (rest <= 0)
        return;
    if (rest > roomInFront) {
        skipStream(rest - roomInFront);
        currentFrameSize -= rest - roomInFront;
        rest = roomInFront;
    }
    bitPointer += readIntoBuffer(bitPointer, rest);
}

// Reads at most what fits behind at, and gives what fitted; bytes that the stream does not give leave the
// buffer as it was.
std::int32_t MpegAudioDecoder::readIntoBuffer(std::int32_t at, std::int32_t numBytes)
{
    const std::int32_t start = std::clamp(at, 0, bufferSize);
    const std::int32_t count = std::clamp(numBytes, 0, bufferSize - start);
    stream.read(currentBuffer() + start, count);
    return count;
}

void MpegAudioDecoder::skipStream(std::int64_t numBytes)
{
    stream.setPosition(stream.getPosition() + numBytes);
}

} // namespace vlk
