// The bext record on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspWavBextRecord.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vlk::fuzz::parseSizedChunk(data, size, [](vlk::InputStream& stream, std::uint32_t chunkSize) {
        vlk::WavBextRecord record;
        record.read(stream, chunkSize);
        // The history never holds more than the bytes behind the fixed part.
        if (static_cast<std::int64_t>(record.codingHistory.size()) > stream.getTotalLength() ||
            record.toStringPairArray().keys.size() != 9)
            std::abort();
    });
    return 0;
}
