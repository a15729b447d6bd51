// The bext record on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspWavBextRecord.h"
#include "threads/KalviDspLog.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    vlk::setLogDestination(vlk::LogDestination::nowhere);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vlk::fuzz::SizedChunk chunk;
    if (!vlk::fuzz::splitSizedChunk(data, size, chunk))
        return 0;
    vlk::fuzz::MemoryInputStream stream(chunk.content, chunk.contentSize);
    vlk::WavBextRecord record;
    record.read(stream, chunk.size);
    // The history never holds more than the bytes behind the fixed part.
    if (record.codingHistory.size() > chunk.contentSize)
        std::abort();
    if (record.toStringPairArray().keys.size() != 9)
        std::abort();
    return 0;
}
