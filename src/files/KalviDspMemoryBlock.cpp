#include "files/KalviDspMemoryBlock.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace vlk {

MemoryBlock::MemoryBlock(const MemoryBlock& other) noexcept
{
    setSize(other.size);
    if (data != nullptr)
        std::memcpy(data, other.data, size);
}

MemoryBlock::MemoryBlock(MemoryBlock&& other) noexcept
    : data(std::exchange(other.data, nullptr)), size(std::exchange(other.size, 0))
{
}

MemoryBlock& MemoryBlock::operator=(const MemoryBlock& other) noexcept
{
    if (this != &other) {
        release();
        setSize(other.size);
        if (data != nullptr)
            std::memcpy(data, other.data, size);
    }
    return *this;
}

MemoryBlock& MemoryBlock::operator=(MemoryBlock&& other) noexcept
{
    if (this != &other) {
        release();
        data = std::exchange(other.data, nullptr);
        size = std::exchange(other.size, 0);
    }
    return *this;
}

MemoryBlock::~MemoryBlock()
{
    release();
}

void MemoryBlock::release() noexcept
{
    std::free(data);
    data = nullptr;
    size = 0;
}

void MemoryBlock::setSize(std::uint64_t newSize, bool initialiseToZero) noexcept
{
    if (newSize == size)
        return;
    if (newSize == 0) {
        release();
        return;
    }
    const bool resizing = data != nullptr;
    void* newData = nullptr;
    if (resizing)
        newData = std::realloc(data, newSize);
    else
        newData = initialiseToZero ? std::calloc(newSize, 1) : std::malloc(newSize);
    // On failure the old block is freed too, so that size never describes bytes that are not there.
    if (newData == nullptr) {
        release();
        return;
    }
    if (resizing && initialiseToZero && newSize > size)
        std::memset(static_cast<char*>(newData) + size, 0, newSize - size);
    data = newData;
    size = newSize;
}

void MemoryBlock::ensureSize(std::uint64_t minimumSize, bool initialiseToZero) noexcept
{
    if (size < minimumSize)
        setSize(minimumSize, initialiseToZero);
}

String MemoryBlock::toString() const
{
    if (size == 0)
        return {};
    return String(static_cast<const char*>(data), size);
}

} // namespace vlk
