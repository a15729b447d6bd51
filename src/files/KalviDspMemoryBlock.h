#pragma once

#include "text/KalviDspString.h"

#include <cstdint>

namespace vlk {

// A resizable block of raw bytes from the C allocator. A failed allocation leaves the block empty (no data,
// size 0) rather than throwing: callers check getData().
class MemoryBlock
{
public:
    MemoryBlock() noexcept = default;
    MemoryBlock(const MemoryBlock& other) noexcept;
    MemoryBlock(MemoryBlock&& other) noexcept;
    MemoryBlock& operator=(const MemoryBlock& other) noexcept;
    MemoryBlock& operator=(MemoryBlock&& other) noexcept;
    ~MemoryBlock();

    void* getData() const noexcept { return data; }
    std::uint64_t getSize() const noexcept { return size; }

    // Keeps the bytes that fit; with initialiseToZero the bytes gained are 0, otherwise undefined.
    void setSize(std::uint64_t newSize, bool initialiseToZero = false) noexcept;
    // Grows only.
    void ensureSize(std::uint64_t minimumSize, bool initialiseToZero = false) noexcept;
    // The bytes as they are, zero bytes included.
    String toString() const;

private:
    void release() noexcept;

    void* data = nullptr;
    std::uint64_t size = 0;
};

} // namespace vlk
