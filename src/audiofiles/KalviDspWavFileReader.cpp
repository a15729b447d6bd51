#include "audiofiles/KalviDspWavFileReader.h"

#include "audiofiles/KalviDspFourCharacterCode.h"
#include "audiofiles/KalviDspSampleConversion.h"
#include "audiofiles/KalviDspWavBextRecord.h"
#include "audiofiles/KalviDspWavChnaParser.h"
#include "files/KalviDspBufferedInputStream.h"
#include "files/KalviDspFileReader.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

namespace vlk {

namespace {

constexpr std::uint32_t riffId = fourCharacterCode("RIFF");
constexpr std::uint32_t rf64Id = fourCharacterCode("RF64");
constexpr std::uint32_t waveId = fourCharacterCode("WAVE");
constexpr std::uint32_t ds64Id = fourCharacterCode("ds64");
constexpr std::uint32_t fmtId = fourCharacterCode("fmt ");
constexpr std::uint32_t dataId = fourCharacterCode("data");
constexpr std::uint32_t bextId = fourCharacterCode("bext");
constexpr std::uint32_t axmlId = fourCharacterCode("axml");
constexpr std::uint32_t chnaId = fourCharacterCode("chna");

// Chunks passed over without reading; unlike unknown ones they do not end the walk when empty.
bool isSkippedChunk(std::uint32_t id)
{
    for (const std::uint32_t skipped :
         {fourCharacterCode("cue "), fourCharacterCode("LIST"), fourCharacterCode("INST"),
          fourCharacterCode("inst"), fourCharacterCode("acid"), fourCharacterCode("smpl")})
        if (id == skipped)
            return true;
    return false;
}

constexpr std::uint16_t pcmTag = 1;
constexpr std::uint16_t floatTag = 3;
constexpr std::uint16_t extensibleTag = 0xFFFE;

using Subformat = std::array<std::uint8_t, 16>;
constexpr Subformat floatSubformat{0x03, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                   0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
constexpr Subformat pcmSubformat{0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
// The float form of B-format is left out on purpose: such files have no frame size and a length of 0.
constexpr Subformat ambisonicPcmSubformat{0x01, 0x00, 0x00, 0x00, 0x21, 0x07, 0xD3, 0x11,
                                          0x86, 0x44, 0xC8, 0xC1, 0xCA, 0x00, 0x00, 0x00};

constexpr std::int64_t chunkHeaderSize = 8;
constexpr std::uint32_t minimumDs64Size = 28;
constexpr std::uint32_t minimumExtensibleFormatSize = 40;
// Depths above this are distrusted and taken from the average bytes per second.
constexpr std::uint16_t largestTrustedDepth = 64;

std::int64_t getChunkEnd(std::int64_t contentStart, std::uint32_t size)
{
    return contentStart + size + (size & 1);
}

} // namespace

WavFileReader::WavFileReader(const File& file) : AudioFileReader(file)
{
    fileReader = std::make_unique<FileReader>(file);
    metadata.isFloatingPoint = false;
    metadata.formatName = "WAV File";
    parseHeader();
    if (!hasAcceptableFormat())
        refuse();
    // Sizes that the reads could not serve are refused: a frame wider than the scratch block; frames counted
    // under a format that a later format chunk made unreadable, which leaves them of no size; and frames
    // beyond the range of file positions, where a negative or huge ds64 data size puts them.
    if (!InterleavedFrameReader::canRead(getLayout()))
        refuse();
}

String WavFileReader::getFileExtension() const
{
    return ".wav";
}

void WavFileReader::refuse() const
{
    throw Exception("file \"" + getFilePath() + "\" is not a valid WAV file", __FILE__, __LINE__);
}

// Every early return leaves the fields as they stand; the constructor's acceptance test judges them.
void WavFileReader::parseHeader()
{
    BufferedInputStream stream(*fileReader);
    metadata.isRF64 = false;
    std::int64_t limit = 0;
    const std::uint32_t headerId = stream.readUnsignedInt();
    if (headerId == riffId) {
        const std::uint32_t riffSize = stream.readUnsignedInt();
        limit = stream.getPosition() + riffSize;
    } else if (headerId == rf64Id) {
        stream.skipNextBytes(4);
        metadata.isRF64 = true;
    } else {
        // "BW64" stops here too although the factory types it as a WAV file: such files are refused.
        return;
    }

    const std::int64_t start = stream.getPosition();
    if (stream.readUnsignedInt() != waveId)
        return;
    if (metadata.isRF64)
        limit = readDs64Chunk(stream, start);
    walkChunks(stream, limit);
    if (metadata.isBWF)
        bextFields = bextRecord.toStringPairArray();
}

// Without a sound ds64 chunk the limit stays 0, the walk does not run, and the file has no format.
std::int64_t WavFileReader::readDs64Chunk(InputStream& stream, std::int64_t start)
{
    if (stream.readUnsignedInt() != ds64Id)
        return 0;
    const std::uint32_t size = stream.readUnsignedInt();
    if (size < minimumDs64Size)
        return 0;
    const std::int64_t contentStart = stream.getPosition();
    const std::int64_t riffSize = stream.readInt64();
    dataSize = stream.readInt64();
    // A limit beyond the range of file positions is refused rather than wrapped round.
    if (riffSize > std::numeric_limits<std::int64_t>::max() - start)
        refuse();
    stream.setPosition(getChunkEnd(contentStart, size));
    return riffSize + start;
}

// Bounded: each turn reads a whole chunk header and never moves back, and the walk ends at a header cut
// short, so a file of n bytes takes at most n / 8 + 1 turns, even when it shrinks under the walk.
void WavFileReader::walkChunks(InputStream& stream, std::int64_t limit)
{
    while (stream.getPosition() < limit) {
        if (stream.isExhausted())
            return;
        const std::int64_t headerStart = stream.getPosition();
        const std::uint32_t id = stream.readUnsignedInt();
        const std::uint32_t size = stream.readUnsignedInt();
        const std::int64_t position = stream.getPosition();
        if (position != headerStart + chunkHeaderSize)
            return;
        const std::int64_t next = getChunkEnd(position, size);

        if (id == fmtId) {
            parseFormat(stream, size);
        } else if (id == dataId) {
            takeDataChunk(position, size);
        } else if (id == bextId) {
            // Only the last one makes the text table, once the walk is over: the table is never empty, and
            // a file of many bext chunks must not cost a table each.
            bextRecord = WavBextRecord();
            bextRecord.read(stream, size);
            metadata.isBWF = true;
        } else if (id == axmlId) {
            readAxmlChunk(stream, size);
        } else if (id == chnaId) {
            chnaChunk = parseChnaChunk(stream, size);
        } else if (!isSkippedChunk(id) && next <= position) {
            // An unknown chunk of size 0 ends the walk: its content cannot be told from the rest of the file.
            return;
        }
        stream.setPosition(next);
    }
}

void WavFileReader::parseFormat(InputStream& stream, std::uint32_t chunkSize)
{
    const auto tag = static_cast<std::uint16_t>(stream.readShort());
    metadata.numChannels = static_cast<std::uint16_t>(stream.readShort());
    metadata.sampleRate = static_cast<double>(stream.readInt());
    const std::uint32_t averageBytesPerSecond = stream.readUnsignedInt();
    stream.readShort(); // the block align is never used
    const auto depth = static_cast<std::uint16_t>(stream.readShort());
    metadata.bitsPerSample = depth;

    // A depth that is no multiple of 8 drops the remainder, so the frame size does not match the file's
    // layout; such files read nothing and keep their length.
    if (depth <= largestTrustedDepth)
        bytesPerFrame = static_cast<std::int32_t>((depth * metadata.numChannels) >> 3);
    else
        computeFrameSizeFromAverageBytes(averageBytesPerSecond);

    if (tag == pcmTag)
        return;
    if (tag == floatTag)
        metadata.isFloatingPoint = true;
    else if (tag == extensibleTag)
        parseExtensibleFormat(stream, chunkSize);
    else
        bytesPerFrame = 0;
}

// A zero rate or channel count would divide by zero here, and a frame larger than the scratch block can
// never be read: such files are refused. A negative rate is refused at once too, as the acceptance test
// would refuse it anyway, instead of deriving a negative frame size from it.
void WavFileReader::computeFrameSizeFromAverageBytes(std::uint32_t averageBytesPerSecond)
{
    const auto truncatedRate = static_cast<std::int64_t>(metadata.sampleRate);
    if (truncatedRate <= 0 || metadata.numChannels == 0)
        refuse();
    const std::int64_t frameSize = averageBytesPerSecond / truncatedRate;
    if (frameSize > InterleavedFrameReader::blockSize)
        refuse();
    bytesPerFrame = static_cast<std::int32_t>(frameSize);
    metadata.bitsPerSample = static_cast<std::int32_t>(frameSize * 8 / metadata.numChannels);
}

void WavFileReader::parseExtensibleFormat(InputStream& stream, std::uint32_t chunkSize)
{
    if (chunkSize < minimumExtensibleFormatSize) {
        bytesPerFrame = 0;
        return;
    }
    stream.readShort();       // extension size
    stream.readShort();       // valid bits
    stream.readUnsignedInt(); // channel mask
    Subformat subformat{};
    if (stream.read(subformat.data(), subformat.size()) != static_cast<std::int64_t>(subformat.size()))
        subformat.fill(0);

    if (subformat == floatSubformat)
        metadata.isFloatingPoint = true;
    else if (subformat == ambisonicPcmSubformat)
        isAmbisonicFormat = true;
    else if (subformat != pcmSubformat)
        bytesPerFrame = 0;
}

// The length is fixed here, with the frame size known so far: a data chunk before the format has none.
void WavFileReader::takeDataChunk(std::int64_t contentStart, std::uint32_t chunkSize)
{
    if (!metadata.isRF64)
        dataSize = chunkSize;
    dataOffset = static_cast<std::uint64_t>(contentStart);
    metadata.numSamples = bytesPerFrame > 0 ? static_cast<std::uint64_t>(dataSize / bytesPerFrame) : 0;
}

// Up to the size stated, no further than the end of the file.
void WavFileReader::readAxmlChunk(InputStream& stream, std::uint32_t chunkSize)
{
    const std::int64_t remaining = std::max<std::int64_t>(stream.getTotalLength() - stream.getPosition(), 0);
    const std::int64_t size = std::min<std::int64_t>(chunkSize, remaining);
    axmlText.resize(static_cast<std::size_t>(size));
    axmlText.resize(static_cast<std::size_t>(stream.read(axmlText.data(), size)));
}

InterleavedFrameReader::Layout WavFileReader::getLayout() const
{
    return {dataOffset, bytesPerFrame, metadata.numChannels, metadata.numSamples};
}

// Other depths have no converter: their blocks are read and dropped, and the destination keeps what it held.
InterleavedFrameReader::Converter WavFileReader::getConverter() const
{
    switch (metadata.bitsPerSample) {
    case 8:
        return convertUInt8;
    case 16:
        return convertInt16LittleEndian;
    case 24:
        return convertInt24LittleEndian;
    case 32:
        return metadata.isFloatingPoint ? convertFloat32LittleEndian : convertInt32LittleEndian;
    default:
        return nullptr;
    }
}

// Runs on the buffering thread (or the thread of a seek) under the player's diskMutex. Allocates nothing.
// Never fails: frames behind the end of the file read as zeros.
bool WavFileReader::readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position)
{
    frameReader.read(*fileReader, getLayout(), getConverter(), channels, numSamples, position);
    return true;
}

} // namespace vlk
