#pragma once

#include "files/KalviDspInputStream.h"
#include "text/KalviDspString.h"
#include "text/KalviDspStringPairArray.h"

#include <array>
#include <cstdint>

namespace vlk {

// The broadcast extension chunk of a WAV file as it lies in the file, and its text table.
class WavBextRecord
{
public:
    // Reads from the stream's position, the start of the chunk's content. The fixed part is read whole
    // whatever the chunk's size says; the chunk walk puts the position right afterwards.
    void read(InputStream& stream, std::uint32_t chunkSize);
    // The nine pairs "bwav description" to "bwav coding history", in the file's field order.
    StringPairArray toStringPairArray() const;

    // Bytes of the fixed part, up to and including the reserved bytes.
    static constexpr std::uint32_t fixedSize = 602;

    std::array<char, 256> description{};
    std::array<char, 32> originator{};
    std::array<char, 32> originatorReference{};
    std::array<char, 10> originationDate{};
    std::array<char, 8> originationTime{};
    std::uint32_t timeReferenceLow = 0;
    std::uint32_t timeReferenceHigh = 0;
    std::uint16_t version = 0;
    std::array<std::uint8_t, 64> umid{};
    String codingHistory;
};

} // namespace vlk
