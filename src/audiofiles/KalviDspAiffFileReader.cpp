#include "audiofiles/KalviDspAiffFileReader.h"

#include "audiofiles/KalviDspAiffMarkerChunk.h"
#include "audiofiles/KalviDspAiffSampleRate.h"
#include "audiofiles/KalviDspFourCharacterCode.h"
#include "audiofiles/KalviDspSampleConversion.h"
#include "files/KalviDspBufferedInputStream.h"
#include "files/KalviDspFileReader.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <array>
#include <memory>

namespace vlk {

namespace {

constexpr std::uint32_t formId = fourCharacterCode("FORM");
constexpr std::uint32_t aiffId = fourCharacterCode("AIFF");
constexpr std::uint32_t aifcId = fourCharacterCode("AIFC");
constexpr std::uint32_t commonId = fourCharacterCode("COMM");
constexpr std::uint32_t soundDataId = fourCharacterCode("SSND");
constexpr std::uint32_t versionId = fourCharacterCode("FVER");
constexpr std::uint32_t markerId = fourCharacterCode("MARK");

constexpr std::uint32_t noCompressionId = fourCharacterCode("NONE");
constexpr std::uint32_t twosComplementId = fourCharacterCode("twos");
constexpr std::uint32_t byteSwappedId = fourCharacterCode("sowt");
constexpr std::uint32_t floatId = fourCharacterCode("fl32");
constexpr std::uint32_t upperCaseFloatId = fourCharacterCode("FL32");

// The one AIFC version there is; 0 is taken too.
constexpr std::uint32_t aifcVersion1 = 0xA2805140;
// Channels, frames, depth and rate: a COMM chunk larger than this holds a compression type.
constexpr std::uint32_t plainCommonChunkSize = 18;
constexpr std::int64_t chunkHeaderSize = 8;
// The block size field of SSND, between the offset and the samples; never read.
constexpr std::int64_t blockSizeFieldSize = 4;

} // namespace

AiffFileReader::AiffFileReader(const File& file) : AudioFileReader(file)
{
    fileReader = std::make_unique<FileReader>(file);
    metadata.isFloatingPoint = false;
    metadata.formatName = "AIFF File";
    parse();
    if (!hasAcceptableFormat())
        refuse();
    // A file whose frames could not be read without overflowing a file position, or with frames of no size
    // or wider than the scratch block, is refused rather than read wrongly or for ever.
    if (!InterleavedFrameReader::canRead(getLayout()))
        refuse();
}

String AiffFileReader::getFileExtension() const
{
    return ".aiff";
}

void AiffFileReader::refuse() const
{
    throw Exception("file \"" + getFilePath() + "\" is not a valid AIFF file", __FILE__, __LINE__);
}

// Every early return leaves the fields as they stand; the constructor's acceptance test judges them.
void AiffFileReader::parse()
{
    BufferedInputStream stream(*fileReader);
    if (stream.readUnsignedInt() != formId)
        return;
    const std::uint32_t formSize = stream.readUnsignedIntBigEndian();
    const std::int64_t start = stream.getPosition();
    const std::uint32_t formType = stream.readUnsignedInt();
    if (formType != aiffId && formType != aifcId)
        return;
    const std::int64_t limit = start + formSize;
    if (stream.getPosition() >= limit)
        return;
    walkChunks(stream, limit);
}

// Bounded: every turn moves at least past a whole chunk header, and a header cut short ends the walk, so a
// file of n bytes takes at most n / 8 + 1 turns, even when it shrinks under the walk.
//
// The early stop is kept: once COMM, SSND and FVER were all met, the first other chunk ends the walk, so in
// an AIFC file a MARK behind COMM and SSND is never read.
void AiffFileReader::walkChunks(InputStream& stream, std::int64_t limit)
{
    bool seenCommon = false;
    bool seenSoundData = false;
    bool seenVersion = false;
    while (stream.getPosition() < limit) {
        const std::int64_t headerStart = stream.getPosition();
        const std::uint32_t id = stream.readUnsignedInt();
        const std::uint32_t size = stream.readUnsignedIntBigEndian();
        if (stream.getPosition() != headerStart + chunkHeaderSize)
            return;
        // No pad byte is added behind an odd size: the walk then goes on one byte early, as it always did, so
        // files read the same as they always were.
        const std::int64_t chunkEnd = stream.getPosition() + size;
        if (id == soundDataId) {
            readSoundDataChunk(stream, size);
            seenSoundData = true;
        } else if (id == commonId) {
            if (!readCommonChunk(stream, size))
                return;
            seenCommon = true;
        } else if (id == versionId) {
            const std::uint32_t timestamp = stream.readUnsignedIntBigEndian();
            seenVersion = true;
            if (timestamp != aifcVersion1 && timestamp != 0)
                return;
        } else {
            if (seenCommon && seenSoundData && seenVersion)
                return;
            if (stream.isExhausted())
                return;
            if (id == markerId)
                readAiffMarkerChunk(stream, size, metadata);
        }
        stream.setPosition(chunkEnd);
    }
}

// False when the walk is to stop: a rate out of the conversion's range or an unknown compression type. Both
// leave the rate at 0, so that the file is refused even behind an earlier sound COMM. Fields beyond the end
// of a truncated file read as 0, which the acceptance test then refuses.
bool AiffFileReader::readCommonChunk(InputStream& stream, std::uint32_t chunkSize)
{
    const std::int32_t channels = stream.readShortBigEndian();
    const std::int32_t frames = stream.readIntBigEndian();
    const std::int32_t depth = stream.readShortBigEndian();
    metadata.numChannels = static_cast<std::uint32_t>(channels);
    metadata.numSamples = static_cast<std::uint64_t>(std::int64_t{frames});
    metadata.bitsPerSample = depth;
    // From the depth alone: a 12-bit file, stored in two bytes a sample, gets a frame size that is too small.
    bytesPerFrame = (depth * channels) >> 3;

    std::array<std::uint8_t, 10> rate{};
    stream.read(rate.data(), static_cast<std::int64_t>(rate.size()));
    const std::optional<double> sampleRate = convertAiffSampleRate(rate);
    if (!sampleRate) {
        metadata.sampleRate = 0.0;
        return false;
    }
    metadata.sampleRate = *sampleRate;

    if (chunkSize <= plainCommonChunkSize) {
        isLittleEndian = false;
        return true;
    }
    return readCompressionType(stream);
}

bool AiffFileReader::readCompressionType(InputStream& stream)
{
    const std::uint32_t type = stream.readUnsignedInt();
    if (type == noCompressionId || type == twosComplementId) {
        isLittleEndian = false;
    } else if (type == byteSwappedId) {
        isLittleEndian = true;
    } else if (type == floatId || type == upperCaseFloatId) {
        isLittleEndian = false;
        metadata.isFloatingPoint = true;
    } else {
        metadata.sampleRate = 0.0;
        return false;
    }
    return true;
}

// SSND before COMM still places the samples, but the length then is COMM's, unchecked against this chunk.
void AiffFileReader::readSoundDataChunk(InputStream& stream, std::uint32_t chunkSize)
{
    const std::int32_t offset = stream.readIntBigEndian();
    // A negative sum stands for a position before the file's start, which the constructor's check of the
    // layout refuses.
    dataOffset = static_cast<std::uint64_t>(stream.getPosition() + offset + blockSizeFieldSize);
    // The size still counts the eight bytes of offset and block size, which may make a frame or more.
    if (bytesPerFrame > 0)
        metadata.numSamples = std::min<std::uint64_t>(metadata.numSamples,
                                                      chunkSize / static_cast<std::uint32_t>(bytesPerFrame));
    else
        metadata.numSamples = 0;
}

InterleavedFrameReader::Layout AiffFileReader::getLayout() const
{
    return {dataOffset, bytesPerFrame, metadata.numChannels, metadata.numSamples};
}

// Depths other than 8, 16, 24 and 32 have no converter: their blocks are read and dropped.
InterleavedFrameReader::Converter AiffFileReader::getConverter() const
{
    switch (metadata.bitsPerSample) {
    case 8:
        return convertInt8;
    case 16:
        return isLittleEndian ? convertInt16LittleEndian : convertInt16BigEndian;
    case 24:
        return isLittleEndian ? convertInt24LittleEndian : convertInt24BigEndian;
    case 32:
        if (isLittleEndian)
            return metadata.isFloatingPoint ? convertFloat32LittleEndian : convertInt32LittleEndian;
        return metadata.isFloatingPoint ? convertFloat32BigEndian : convertInt32BigEndian;
    default:
        return nullptr;
    }
}

// Runs on the buffering thread (or the thread of a seek) under the player's diskMutex. Allocates nothing.
// Never fails: frames behind the end of the file read as zeros.
bool AiffFileReader::readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position)
{
    frameReader.read(*fileReader, getLayout(), getConverter(), channels, numSamples, position);
    return true;
}

} // namespace vlk
