#pragma once

#include <atomic>
#include <cstdint>

namespace vlk {

// The positions of a ring of frames shared by one producer and one consumer. Both count monotonically in
// 64 bits; a frame's place in the ring is its count modulo the capacity, and the frames ready are exactly
// the difference, so a consumer that catches up with the producer reads an empty ring, never a full one.
// The producer publishes what it wrote with a release store that the consumer loads with acquire, and the
// consumer hands frames back the same way: neither reads a frame the other has not finished with.
//
// Threads: the producer calls getWriteSpan and finishedWrite, the consumer getReadSpan and finishedRead; any
// thread may ask the counts, a third one getting a value that was true a moment ago. reset and
// restartReading only while neither side runs.
class FrameFifo
{
public:
    // A run of ring frames, in at most two blocks: the second begins at frame 0 when the first reaches the
    // ring's end. A block that ends exactly at the ring's end leaves the second empty.
    struct Span
    {
        std::uint64_t start1 = 0;
        std::uint64_t count1 = 0;
        std::uint64_t start2 = 0;
        std::uint64_t count2 = 0;

        std::uint64_t size() const noexcept { return count1 + count2; }
        // count frames of this span from offset on; offset and count within the span.
        Span part(std::uint64_t offset, std::uint64_t count) const noexcept;
    };

    explicit FrameFifo(std::uint64_t capacity);

    std::uint64_t getCapacity() const noexcept { return capacity; }
    // Exact on the producer's and the consumer's threads, as of the call: each side only ever finds more
    // to do than it was told, never less.
    std::uint64_t getNumReady() const noexcept;
    std::uint64_t getFreeSpace() const noexcept { return capacity - getNumReady(); }
    // Frames published and handed back since the last reset.
    std::uint64_t getTotalWritten() const noexcept;
    std::uint64_t getTotalRead() const noexcept;

    // Producer: where the next frames go, at most wanted and the free space.
    Span getWriteSpan(std::uint64_t wanted) const noexcept;
    // Producer: publishes count frames of the last span.
    void finishedWrite(std::uint64_t count) noexcept;

    // Consumer: where the next frames come from, at most wanted and the frames ready.
    Span getReadSpan(std::uint64_t wanted) const noexcept;
    // Consumer: hands count frames of the last span back to the producer.
    void finishedRead(std::uint64_t count) noexcept;

    // Empties the ring: both counts back to 0.
    void reset() noexcept;
    // The consumer starts again at count 0, the producer's frames kept: valid while the producer never
    // reached the ring's end, so that the ring still holds every frame from the first on.
    void restartReading() noexcept;
    // True once the producer has reached the ring's end since the last reset.
    bool hasWrapped() const noexcept { return getTotalWritten() >= capacity; }

private:
    Span spanFrom(std::uint64_t total, std::uint64_t count) const noexcept;

    const std::uint64_t capacity;
    std::atomic<std::uint64_t> written{0};
    std::atomic<std::uint64_t> read{0};
};

} // namespace vlk
