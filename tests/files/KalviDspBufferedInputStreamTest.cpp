#include "files/KalviDspBufferedInputStream.h"

#include "files/KalviDspFileReader.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

using vlk::BufferedInputStream;
using vlk::File;
using vlk::FileReader;
using vlk::test::makePatternBytes;
using vlk::test::ScratchFolder;

namespace {

constexpr std::int64_t block = BufferedInputStream::blockSize;

std::string readBytes(BufferedInputStream& stream, std::int64_t numBytes)
{
    std::string bytes(static_cast<std::size_t>(numBytes), '\0');
    bytes.resize(static_cast<std::size_t>(stream.read(bytes.data(), numBytes)));
    return bytes;
}

} // namespace

// Every read gives the file's bytes at the stream's position, whether it lies within the block read last,
// straddles its end, starts before it, or is larger than a block.
TEST(BufferedInputStream, ReadsGiveTheFilesBytesWhereverTheyLie)
{
    const ScratchFolder scratch;
    const std::string bytes = makePatternBytes(3 * block + 123);
    const auto length = static_cast<std::int64_t>(bytes.size());
    FileReader file{File(scratch.write("pattern", bytes))};
    BufferedInputStream stream(file);

    struct Case
    {
        std::int64_t position;
        std::int64_t numBytes;
    };
    const Case cases[] = {{0, 8},         {8, 100},         {block - 3, 8},  {10, block},  {5, 2 * block + 7},
                          {block + 1, 1}, {0, 1},           {length - 5, 20}, {length, 4}, {2 * block, block},
                          {3, 0},         {block - 1, 1}};
    for (const Case& c : cases) {
        stream.setPosition(c.position);
        const std::string expected = bytes.substr(static_cast<std::size_t>(c.position),
                                                  static_cast<std::size_t>(c.numBytes));
        EXPECT_EQ(readBytes(stream, c.numBytes), expected) << c.position << " + " << c.numBytes;
        EXPECT_EQ(stream.getPosition(), c.position + static_cast<std::int64_t>(expected.size()));
    }
}

TEST(BufferedInputStream, StartsAtTheSourcesPositionAndClampsLikeIt)
{
    const ScratchFolder scratch;
    FileReader file{File(scratch.write("digits", "0123456789"))};
    file.setPosition(4);
    BufferedInputStream stream(file);
    EXPECT_EQ(stream.getPosition(), 4);
    EXPECT_EQ(stream.readShort(), ('5' << 8) | '4');
    stream.setPosition(-3);
    EXPECT_EQ(stream.getPosition(), 0);
    stream.setPosition(99);
    EXPECT_EQ(stream.getPosition(), 10);
    EXPECT_TRUE(stream.isExhausted());
    EXPECT_EQ(stream.readInt(), 0);
}

// A file that shrinks after it was opened still claims its old length: reads come back short and the
// position moves only by what came, which is what the chunk walks stop on.
TEST(BufferedInputStream, ShortReadsOfAShrunkFileMoveOnlyByWhatCame)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("shrinking", makePatternBytes(1000));
    FileReader file{File(path)};
    ASSERT_EQ(::truncate(path.c_str(), 600), 0);
    BufferedInputStream stream(file);
    stream.setPosition(596);
    EXPECT_EQ(readBytes(stream, 8).size(), 4u);
    EXPECT_EQ(stream.getPosition(), 600);
    EXPECT_FALSE(stream.isExhausted());
    EXPECT_EQ(readBytes(stream, 8).size(), 0u);
    EXPECT_EQ(stream.getPosition(), 600);
}
