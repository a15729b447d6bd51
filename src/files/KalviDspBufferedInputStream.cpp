#include "files/KalviDspBufferedInputStream.h"

#include <algorithm>
#include <cstring>

namespace vlk {

BufferedInputStream::BufferedInputStream(InputStream& source)
    : source(source), block(std::make_unique<std::uint8_t[]>(blockSize)), position(source.getPosition())
{
}

std::int64_t BufferedInputStream::read(void* destination, std::int64_t numBytes)
{
    auto* bytes = static_cast<std::uint8_t*>(destination);
    std::int64_t done = 0;
    while (done < numBytes) {
        const std::int64_t rest = numBytes - done;
        if (rest >= blockSize && !(position >= blockStart && position < blockStart + blockLength)) {
            source.setPosition(position);
            const std::int64_t numRead = source.read(bytes + done, rest);
            position += numRead;
            done += numRead;
            break;
        }
        const std::int64_t available = getBufferedBytes();
        if (available == 0)
            break;
        const std::int64_t count = std::min(available, rest);
        std::memcpy(bytes + done, block.get() + (position - blockStart), static_cast<std::size_t>(count));
        position += count;
        done += count;
    }
    return done;
}

std::int64_t BufferedInputStream::getBufferedBytes()
{
    if (position < blockStart || position >= blockStart + blockLength) {
        source.setPosition(position);
        blockStart = position;
        blockLength = source.read(block.get(), blockSize);
    }
    return blockStart + blockLength - position;
}

bool BufferedInputStream::setPosition(std::int64_t newPosition) noexcept
{
    position = std::clamp<std::int64_t>(newPosition, 0, getTotalLength());
    return true;
}

} // namespace vlk
