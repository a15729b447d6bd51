#include "audiofiles/KalviDspWavBextRecord.h"

#include "text/KalviDspStringHelper.h"

#include <algorithm>

namespace vlk {

namespace {

// Like the typed readers of the stream: a field that the file cuts short reads as zeros.
template <typename Byte, std::size_t size> void readField(InputStream& stream, std::array<Byte, size>& field)
{
    if (stream.read(field.data(), static_cast<std::int64_t>(size)) != static_cast<std::int64_t>(size))
        field.fill(0);
}

template <std::size_t size> String toText(const std::array<char, size>& field)
{
    return String(field.data(), size);
}

constexpr std::size_t reservedSize = 190;

} // namespace

void WavBextRecord::read(InputStream& stream, std::uint32_t chunkSize)
{
    readField(stream, description);
    readField(stream, originator);
    readField(stream, originatorReference);
    readField(stream, originationDate);
    readField(stream, originationTime);
    timeReferenceLow = stream.readUnsignedInt();
    timeReferenceHigh = stream.readUnsignedInt();
    version = static_cast<std::uint16_t>(stream.readShort());
    readField(stream, umid);
    // Read in one piece rather than byte by byte: a file may hold a hundred thousand bext chunks.
    std::array<char, reservedSize> reserved;
    readField(stream, reserved);

    if (chunkSize <= fixedSize)
        return;
    // A size that claims more than the file holds is cut at the end of the file: the history never asks
    // for memory the file could not fill.
    const std::int64_t remaining = std::max<std::int64_t>(stream.getTotalLength() - stream.getPosition(), 0);
    const std::int64_t historySize = std::min<std::int64_t>(chunkSize - fixedSize, remaining);
    codingHistory.resize(static_cast<std::size_t>(historySize));
    codingHistory.resize(static_cast<std::size_t>(stream.read(codingHistory.data(), historySize)));
}

StringPairArray WavBextRecord::toStringPairArray() const
{
    String umidDigits;
    for (const std::uint8_t byte : umid)
        umidDigits += toString(static_cast<unsigned int>(byte));
    const std::uint64_t timeReference =
        (static_cast<std::uint64_t>(timeReferenceHigh) << 32) | timeReferenceLow;

    StringPairArray fields(true);
    fields.set("bwav description", toText(description));
    fields.set("bwav originator", toText(originator));
    fields.set("bwav originator ref", toText(originatorReference));
    fields.set("bwav origination date", toText(originationDate));
    fields.set("bwav origination time", toText(originationTime));
    fields.set("bwav time reference", toString(static_cast<unsigned long long>(timeReference)));
    fields.set("bwav smpte umid", umidDigits);
    fields.set("bwav bwf version", toString(static_cast<unsigned int>(version)));
    fields.set("bwav coding history", codingHistory);
    return fields;
}

} // namespace vlk
