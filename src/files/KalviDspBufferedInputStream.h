#pragma once

#include "files/KalviDspInputStream.h"

#include <cstdint>
#include <memory>

namespace vlk {

// Reads another stream in blocks, for parsers that take a file apart field by field: a header of a million
// small chunks then costs a few dozen system calls instead of millions. Moving within the block read last
// costs nothing. Reads as large as a block go straight to the source. The source's own position is left
// wherever the last block read put it. One thread at a time.
class BufferedInputStream : public InputStream
{
public:
    // Starts at the source's position. The source must outlive the stream.
    explicit BufferedInputStream(InputStream& source);

    std::int64_t getTotalLength() const noexcept override { return source.getTotalLength(); }
    bool isExhausted() const noexcept override { return position >= getTotalLength(); }
    std::int64_t read(void* destination, std::int64_t numBytes) override;
    std::int64_t getPosition() const noexcept override { return position; }
    // Clamps to the range 0 to the total length, like the file it reads; always true.
    bool setPosition(std::int64_t newPosition) noexcept override;

    static constexpr std::int64_t blockSize = 65536;

private:
    // The bytes of the block at the position; 0 when the source has none there.
    std::int64_t getBufferedBytes();

    InputStream& source;
    std::unique_ptr<std::uint8_t[]> block;
    std::int64_t blockStart = 0;
    std::int64_t blockLength = 0;
    std::int64_t position = 0;
};

} // namespace vlk
