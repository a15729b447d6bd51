#include "audiofiles/KalviDspAiffMarkerChunk.h"

#include <algorithm>

namespace vlk {

namespace {

// Identifier, position and the name's length byte.
constexpr std::int64_t fixedRecordSize = 7;

} // namespace

void readAiffMarkerChunk(InputStream& stream, std::uint32_t chunkSize, AudioFilesMetadata& metadata)
{
    const std::int64_t chunkEnd = std::min(stream.getPosition() + chunkSize, stream.getTotalLength());
    const auto count = static_cast<std::uint16_t>(stream.readShortBigEndian());
    for (std::uint32_t index = 0; index < count && metadata.getNumMarkers() < maxNumAiffMarkers; ++index) {
        if (stream.getPosition() + fixedRecordSize > chunkEnd)
            return;
        AudioFilesMetadata::Marker marker;
        marker.identifier = static_cast<std::uint32_t>(std::int32_t{stream.readShortBigEndian()});
        marker.position = stream.readUnsignedIntBigEndian();
        const auto length = static_cast<std::uint8_t>(stream.readByte());
        // A name cut by the chunk's end makes no marker; a missing pad byte behind the last name is forgiven.
        if (stream.getPosition() + length > chunkEnd)
            return;
        marker.name.resize(length);
        marker.name.resize(static_cast<std::size_t>(stream.read(marker.name.data(), length)));
        // The length byte and the name take an even number of bytes.
        if (length % 2 == 0)
            stream.skipNextBytes(1);
        metadata.addMarker(marker);
    }
}

} // namespace vlk
