#include "dsp/KalviDspAllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int countingDepth = 0;
thread_local std::size_t allocations = 0;

void* allocate(std::size_t size)
{
    if (countingDepth > 0)
        ++allocations;
    if (void* block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

void* allocateAligned(std::size_t size, std::align_val_t alignment)
{
    if (countingDepth > 0)
        ++allocations;
    const auto align = static_cast<std::size_t>(alignment);
    // aligned_alloc wants a size that is a multiple of the alignment.
    if (void* block = std::aligned_alloc(align, (size + align - 1) / align * align + (size == 0 ? align : 0)))
        return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}

void* operator new[](std::size_t size)
{
    return allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept
{
    return operator new(size, tag);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return allocateAligned(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return allocateAligned(size, alignment);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete[](void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t, std::align_val_t) noexcept
{
    std::free(block);
}

namespace vlk::test {

AllocationCountingScope::AllocationCountingScope() : countAtStart(allocations)
{
    ++countingDepth;
}

AllocationCountingScope::~AllocationCountingScope()
{
    --countingDepth;
}

std::size_t AllocationCountingScope::getCount() const
{
    return allocations - countAtStart;
}

} // namespace vlk::test
