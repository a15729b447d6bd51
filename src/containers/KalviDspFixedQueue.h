#pragma once

#include "containers/KalviDspFrameFifo.h"

#include <array>
#include <cstdint>
#include <type_traits>

namespace vlk {

// A queue of plain items between one producer and one consumer, of fixed capacity: neither side allocates,
// locks or waits, so the audio thread may push.
template <typename T, std::uint64_t Capacity> class FixedQueue
{
    static_assert(std::is_trivially_copyable_v<T>, "items are copied in and out without constructors");

public:
    // Producer: false, with nothing queued, when the queue is full.
    bool push(const T& item) noexcept
    {
        const FrameFifo::Span span = fifo.getWriteSpan(1);
        if (span.size() == 0)
            return false;
        items[span.start1] = item;
        fifo.finishedWrite(1);
        return true;
    }

    // Consumer: false when the queue is empty.
    bool pop(T& item) noexcept
    {
        const FrameFifo::Span span = fifo.getReadSpan(1);
        if (span.size() == 0)
            return false;
        item = items[span.start1];
        fifo.finishedRead(1);
        return true;
    }

    bool isEmpty() const noexcept { return fifo.getNumReady() == 0; }

private:
    FrameFifo fifo{Capacity};
    std::array<T, Capacity> items{};
};

} // namespace vlk
