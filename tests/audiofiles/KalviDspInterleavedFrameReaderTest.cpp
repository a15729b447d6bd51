#include "audiofiles/KalviDspInterleavedFrameReader.h"

#include "audiofiles/KalviDspSampleConversion.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

using namespace vlk;
using namespace vlk::test;
using Layout = InterleavedFrameReader::Layout;

TEST(InterleavedFrameReaderLayout, FrameSizesAgainstTheBlock)
{
    EXPECT_TRUE(InterleavedFrameReader::canRead({0, 5760, 1440, 10}));
    EXPECT_FALSE(InterleavedFrameReader::canRead({0, 5761, 1441, 10}));
    // Too wide to read even with no frames to read.
    EXPECT_FALSE(InterleavedFrameReader::canRead({0, 5761, 1441, 0}));
    EXPECT_TRUE(InterleavedFrameReader::canRead({0, 0, 1, 0}));
    EXPECT_TRUE(InterleavedFrameReader::canRead({0, -2, 1, 0}));
    EXPECT_FALSE(InterleavedFrameReader::canRead({0, 0, 1, 1}));
    EXPECT_FALSE(InterleavedFrameReader::canRead({0, -2, 1, 1}));
}

TEST(InterleavedFrameReaderLayout, EveryFrameMustLieAtAFilePosition)
{
    const auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    EXPECT_TRUE(InterleavedFrameReader::canRead({largest - 4 * 1000, 4, 2, 1000}));
    EXPECT_FALSE(InterleavedFrameReader::canRead({largest - 4 * 1000 + 1, 4, 2, 1000}));
    EXPECT_FALSE(InterleavedFrameReader::canRead({largest + 1, 4, 2, 1}));
    // A negative offset wrapped into 64 bits.
    EXPECT_FALSE(InterleavedFrameReader::canRead({static_cast<std::uint64_t>(-8), 4, 2, 1}));
    EXPECT_TRUE(InterleavedFrameReader::canRead({static_cast<std::uint64_t>(-8), 4, 2, 0}));
}

namespace {

// A file of a 3-byte header, then four stereo 16-bit big-endian frames: (1, -1), (2, -2), (3, -3), (4, -4).
struct FrameFile
{
    FrameFile() : reader(File(scratch.write("frames", makeBytes()))) {}

    static std::string makeBytes()
    {
        std::string bytes = "hdr";
        for (int frame = 1; frame <= 4; ++frame)
            for (const int sample : {frame, -frame}) {
                bytes += static_cast<char>((sample >> 8) & 0xFF);
                bytes += static_cast<char>(sample & 0xFF);
            }
        return bytes;
    }

    ScratchFolder scratch;
    FileReader reader;
    InterleavedFrameReader frames;
};

constexpr int sentinel = 0x5A5A5A5A;

} // namespace

TEST(InterleavedFrameReaderRead, FramesFromAPositionThenZerosBehindTheEnd)
{
    FrameFile file;
    std::vector<int> left(5, sentinel);
    std::vector<int> right(5, sentinel);
    int* channels[] = {left.data(), right.data(), nullptr};
    file.frames.read(file.reader, {3, 4, 2, 4}, convertInt16BigEndian, channels, 4, 2);
    EXPECT_EQ(left, (std::vector<int>{3 << 16, 4 << 16, 0, 0, sentinel}));
    EXPECT_EQ(right, (std::vector<int>{-3 * 65536, -4 * 65536, 0, 0, sentinel}));
}

// A length beyond the file's end reads the missing bytes as zeros.
TEST(InterleavedFrameReaderRead, ShortReadsAreZeroFilled)
{
    FrameFile file;
    std::vector<int> left(3, sentinel);
    int* channels[] = {left.data(), nullptr};
    file.frames.read(file.reader, {3 + 2 * 4, 4, 2, 100}, convertInt16BigEndian, channels, 3, 1);
    EXPECT_EQ(left, (std::vector<int>{4 << 16, 0, 0}));
}

// Without a converter the blocks are read and dropped; the zeros behind the end stop at the first null
// entry, so a channel behind it keeps what it held.
TEST(InterleavedFrameReaderRead, NoConverterWritesOnlyTheTail)
{
    FrameFile file;
    std::vector<int> left(6, sentinel);
    std::vector<int> hidden(6, sentinel);
    int* channels[] = {left.data(), nullptr, hidden.data()};
    file.frames.read(file.reader, {3, 4, 2, 4}, nullptr, channels, 6, 0);
    EXPECT_EQ(left, (std::vector<int>{sentinel, sentinel, sentinel, sentinel, 0, 0}));
    EXPECT_EQ(hidden, std::vector<int>(6, sentinel));
}
