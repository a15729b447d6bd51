// The chna chunk parser on its own: a chunk size, then the chunk's content and whatever follows it.
#include "KalviDspMemoryInputStream.h"

#include "audiofiles/KalviDspWavChnaParser.h"
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
    const vlk::ChnaChunk parsed = vlk::parseChnaChunk(stream, chunk.size);
    // No record lies wholly behind the end of the bytes.
    if (parsed.trackIndices.size() > chunk.contentSize / 40 + 1 ||
        parsed.audioTrackUids.size() != parsed.trackIndices.size())
        std::abort();
    return 0;
}
