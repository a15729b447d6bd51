#include "containers/KalviDspFrameFifo.h"

#include <algorithm>
#include <cassert>

namespace vlk {

FrameFifo::Span FrameFifo::Span::part(std::uint64_t offset, std::uint64_t count) const noexcept
{
    assert(offset + count <= size());
    Span result;
    if (offset < count1) {
        result.start1 = start1 + offset;
        result.count1 = std::min(count, count1 - offset);
        result.count2 = count - result.count1;
    } else {
        result.start1 = start2 + (offset - count1);
        result.count1 = count;
    }
    return result;
}

FrameFifo::FrameFifo(std::uint64_t capacity) : capacity(capacity)
{
    assert(capacity > 0);
}

// The consumer's count first: for the consumer it is its own, for the producer the older value only hides
// space freed since. A third thread may see the two counts of different moments, and of a reset between
// them: the result is kept within 0 and the capacity.
std::uint64_t FrameFifo::getNumReady() const noexcept
{
    const std::uint64_t consumed = read.load(std::memory_order_acquire);
    const std::uint64_t produced = written.load(std::memory_order_acquire);
    return produced < consumed ? 0 : std::min(produced - consumed, capacity);
}

std::uint64_t FrameFifo::getTotalWritten() const noexcept
{
    return written.load(std::memory_order_acquire);
}

std::uint64_t FrameFifo::getTotalRead() const noexcept
{
    return read.load(std::memory_order_acquire);
}

FrameFifo::Span FrameFifo::getWriteSpan(std::uint64_t wanted) const noexcept
{
    return spanFrom(written.load(std::memory_order_relaxed), std::min(wanted, getFreeSpace()));
}

void FrameFifo::finishedWrite(std::uint64_t count) noexcept
{
    assert(count <= getFreeSpace());
    written.store(written.load(std::memory_order_relaxed) + count, std::memory_order_release);
}

FrameFifo::Span FrameFifo::getReadSpan(std::uint64_t wanted) const noexcept
{
    return spanFrom(read.load(std::memory_order_relaxed), std::min(wanted, getNumReady()));
}

void FrameFifo::finishedRead(std::uint64_t count) noexcept
{
    assert(count <= getNumReady());
    read.store(read.load(std::memory_order_relaxed) + count, std::memory_order_release);
}

void FrameFifo::reset() noexcept
{
    read.store(0, std::memory_order_release);
    written.store(0, std::memory_order_release);
}

void FrameFifo::restartReading() noexcept
{
    assert(!hasWrapped());
    read.store(0, std::memory_order_release);
}

FrameFifo::Span FrameFifo::spanFrom(std::uint64_t total, std::uint64_t count) const noexcept
{
    Span span;
    span.start1 = total % capacity;
    span.count1 = std::min(count, capacity - span.start1);
    span.count2 = count - span.count1;
    return span;
}

} // namespace vlk
