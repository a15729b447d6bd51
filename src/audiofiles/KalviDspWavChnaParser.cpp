#include "audiofiles/KalviDspWavChnaParser.h"

#include <algorithm>
#include <array>

namespace vlk {

namespace {

constexpr std::uint32_t countersSize = 4;
constexpr std::uint32_t trackRecordSize = 40;

// An identifier of zero bytes only is absent; any other keeps the field's whole width. A field that the file
// cuts short reads as zeros, like the typed readers of the stream.
template <std::size_t width> String readIdentifier(InputStream& stream)
{
    std::array<char, width> bytes{};
    if (stream.read(bytes.data(), width) != static_cast<std::int64_t>(width))
        return {};
    if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == 0; }))
        return {};
    return String(bytes.data(), width);
}

// Records lying wholly behind the end of the file are not made: a size field of 4 GB would otherwise ask
// for a hundred million empty records.
std::uint64_t getNumRecords(const InputStream& stream, std::uint32_t chunkSize)
{
    if (chunkSize < countersSize + trackRecordSize)
        return 0;
    const std::int64_t remaining = std::max<std::int64_t>(stream.getTotalLength() - stream.getPosition(), 0);
    const std::uint64_t recordsInFile =
        (static_cast<std::uint64_t>(remaining) + trackRecordSize - 1) / trackRecordSize;
    return std::min<std::uint64_t>((chunkSize - countersSize) / trackRecordSize, recordsInFile);
}

} // namespace

ChnaChunk parseChnaChunk(InputStream& stream, std::uint32_t chunkSize)
{
    ChnaChunk chunk;
    chunk.numTracks = static_cast<std::uint16_t>(stream.readShort());
    chunk.numUids = static_cast<std::uint16_t>(stream.readShort());
    const std::uint64_t numRecords = getNumRecords(stream, chunkSize);
    for (std::uint64_t record = 0; record < numRecords; ++record) {
        chunk.trackIndices.push_back(static_cast<unsigned short>(stream.readShort()));
        chunk.audioTrackUids.push_back(readIdentifier<12>(stream));
        chunk.audioTrackFormatIdRefs.push_back(readIdentifier<14>(stream));
        chunk.audioPackFormatIdRefs.push_back(readIdentifier<11>(stream));
        stream.skipNextBytes(1);
    }
    return chunk;
}

} // namespace vlk
