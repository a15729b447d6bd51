#include "containers/KalviDspFrameFifo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <thread>
#include <vector>

namespace vlk {
namespace {

struct SpanCase
{
    std::uint64_t capacity;
    std::uint64_t writtenBefore;
    std::uint64_t readBefore;
    std::uint64_t wanted;
    FrameFifo::Span write;
    FrameFifo::Span read;
};

// Counts are reached in steps of at most the capacity, as the two sides would.
void advance(FrameFifo& fifo, std::uint64_t written, std::uint64_t read)
{
    const std::uint64_t capacity = fifo.getCapacity();
    for (std::uint64_t done = 0; done < read;) {
        const std::uint64_t step = std::min(capacity, read - done);
        fifo.finishedWrite(step);
        fifo.finishedRead(step);
        done += step;
    }
    fifo.finishedWrite(written - read);
}

const SpanCase spanCases[] = {
    // Empty, at the start: the whole ring is free, nothing is ready.
    {8, 0, 0, 5, {0, 5, 0, 0}, {0, 0, 0, 0}},
    // A span that ends exactly at the ring's end is one block.
    {8, 3, 0, 5, {3, 5, 0, 0}, {0, 3, 0, 0}},
    // Around the end: two blocks, the second from frame 0.
    {8, 14, 10, 6, {6, 2, 0, 2}, {2, 4, 0, 0}},
    {8, 13, 9, 8, {5, 3, 0, 1}, {1, 4, 0, 0}},
    {8, 18, 14, 3, {2, 3, 0, 0}, {6, 2, 0, 1}},
    // A reader that caught up finds nothing; the writer finds the whole ring.
    {8, 16, 16, 9, {0, 8, 0, 0}, {0, 0, 0, 0}},
    // A full ring: nothing to write, everything to read.
    {8, 21, 13, 20, {5, 0, 0, 0}, {5, 3, 0, 5}},
};

TEST(FrameFifoSpans, AreLimitedToTheFreeOrReadyFramesAndSplitAtTheRingsEnd)
{
    for (const SpanCase& c : spanCases) {
        FrameFifo fifo(c.capacity);
        advance(fifo, c.writtenBefore, c.readBefore);
        const FrameFifo::Span write = fifo.getWriteSpan(c.wanted);
        const FrameFifo::Span read = fifo.getReadSpan(c.wanted);
        const std::string where = std::to_string(c.writtenBefore) + "/" + std::to_string(c.readBefore);
        EXPECT_EQ(
            (std::vector<std::uint64_t>{write.start1, write.count1, write.start2, write.count2}),
            (std::vector<std::uint64_t>{c.write.start1, c.write.count1, c.write.start2, c.write.count2}))
            << where;
        EXPECT_EQ((std::vector<std::uint64_t>{read.start1, read.count1, read.start2, read.count2}),
                  (std::vector<std::uint64_t>{c.read.start1, c.read.count1, c.read.start2, c.read.count2}))
            << where;
        EXPECT_EQ(fifo.getNumReady() + fifo.getFreeSpace(), c.capacity) << where;
    }
}

TEST(FrameFifoSpans, APartStartsInEitherBlock)
{
    const FrameFifo::Span span{6, 2, 0, 5};
    const FrameFifo::Span parts[] = {span.part(0, 7), span.part(1, 3), span.part(2, 4), span.part(3, 0)};
    const std::uint64_t expected[][4] = {{6, 2, 0, 5}, {7, 1, 0, 2}, {0, 4, 0, 0}, {1, 0, 0, 0}};
    for (std::size_t i = 0; i < std::size(parts); ++i)
        EXPECT_EQ(
            (std::vector<std::uint64_t>{parts[i].start1, parts[i].count1, parts[i].start2, parts[i].count2}),
            (std::vector<std::uint64_t>(expected[i], expected[i] + 4)))
            << i;
}

TEST(FrameFifoCounts, RestartReadingKeepsTheProducersFramesAndResetEmpties)
{
    FrameFifo fifo(10);
    fifo.finishedWrite(6);
    fifo.finishedRead(4);
    EXPECT_FALSE(fifo.hasWrapped());
    fifo.restartReading();
    EXPECT_EQ(fifo.getNumReady(), 6u);
    EXPECT_EQ(fifo.getReadSpan(10).start1, 0u);
    fifo.finishedWrite(4);
    EXPECT_TRUE(fifo.hasWrapped());
    fifo.reset();
    EXPECT_EQ(fifo.getNumReady(), 0u);
    EXPECT_EQ(fifo.getTotalWritten(), 0u);
    EXPECT_FALSE(fifo.hasWrapped());
}

// The producer writes the count of each frame into a small ring, the consumer checks every frame it gets:
// a frame read before it was published, or overwritten before it was read, shows as a wrong count, and the
// race detector sees the unordered access itself.
TEST(FrameFifoThreads, EveryFrameArrivesOnceInOrder)
{
    constexpr std::uint64_t capacity = 37;
    constexpr std::uint64_t numFrames = 2000000;
    FrameFifo fifo(capacity);
    std::vector<std::uint64_t> ring(capacity, 0);
    std::thread producer([&] {
        std::mt19937 random(1);
        for (std::uint64_t next = 0; next < numFrames;) {
            const FrameFifo::Span span =
                fifo.getWriteSpan(std::min<std::uint64_t>(1 + random() % 50, numFrames - next));
            for (std::uint64_t i = 0; i < span.count1; ++i)
                ring[span.start1 + i] = next++;
            for (std::uint64_t i = 0; i < span.count2; ++i)
                ring[span.start2 + i] = next++;
            fifo.finishedWrite(span.size());
        }
    });
    std::mt19937 random(2);
    std::uint64_t expected = 0;
    std::uint64_t wrong = 0;
    while (expected < numFrames) {
        const FrameFifo::Span span = fifo.getReadSpan(1 + random() % 50);
        for (std::uint64_t i = 0; i < span.count1; ++i)
            wrong += ring[span.start1 + i] != expected++;
        for (std::uint64_t i = 0; i < span.count2; ++i)
            wrong += ring[span.start2 + i] != expected++;
        fifo.finishedRead(span.size());
    }
    producer.join();
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(fifo.getTotalRead(), numFrames);
    EXPECT_EQ(fifo.getNumReady(), 0u);
}

} // namespace
} // namespace vlk
