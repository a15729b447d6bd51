#include "files/KalviDspFileReader.h"

#include "files/KalviDspScratchFolder.h"

#include <climits>
#include <gtest/gtest.h>

using vlk::File;
using vlk::FileReader;
using vlk::MemoryBlock;
using vlk::test::ScratchFolder;

namespace {

// A reader over a scratch file holding exactly the given bytes.
struct StreamOver
{
    explicit StreamOver(const std::string& bytes) : reader(File(scratch.write("stream", bytes))) {}

    ScratchFolder scratch;
    FileReader reader;
};

const std::string ascending("\x01\x02\x03\x04\x05\x06\x07\x08", 8);

} // namespace

TEST(InputStreamByteOrder, LittleAndBigEndianOfTheSameBytes)
{
    StreamOver stream(ascending);
    auto& reader = stream.reader;
    EXPECT_EQ(reader.readShort(), 0x0201);
    EXPECT_EQ(reader.readShortBigEndian(), 0x0304);
    reader.setPosition(0);
    EXPECT_EQ(reader.readInt(), 0x04030201);
    EXPECT_EQ(reader.readIntBigEndian(), 0x05060708);
    reader.setPosition(0);
    EXPECT_EQ(reader.readUnsignedInt(), 0x04030201u);
    EXPECT_EQ(reader.readUnsignedIntBigEndian(), 0x05060708u);
    reader.setPosition(0);
    EXPECT_EQ(reader.readInt64(), 0x0807060504030201);
}

TEST(InputStreamByteOrder, HighBitsMakeSignedValuesNegative)
{
    StreamOver stream(std::string("\xFE\xFF\x80\x00\x00\x01\xFF\xFF\xFF\xFF", 10));
    auto& reader = stream.reader;
    EXPECT_EQ(reader.readShort(), -2);
    EXPECT_EQ(reader.readIntBigEndian(), INT_MIN + 1);
    reader.setPosition(0);
    EXPECT_EQ(reader.readShortBigEndian(), -257);
    EXPECT_EQ(reader.readUnsignedIntBigEndian(), 0x80000001u);
    EXPECT_EQ(reader.readByte(), -1);
    reader.setPosition(6);
    EXPECT_EQ(reader.readUnsignedInt(), 0xFFFFFFFFu);
    reader.setPosition(2);
    EXPECT_EQ(reader.readInt64(), static_cast<std::int64_t>(0xFFFFFFFF01000080));
}

TEST(InputStreamByteOrder, IncompleteValueGivesZero)
{
    StreamOver stream(std::string("\x11\x22\x33", 3));
    EXPECT_EQ(stream.reader.readInt(), 0);
    EXPECT_EQ(stream.reader.readByte(), 0);
    stream.reader.setPosition(2);
    EXPECT_EQ(stream.reader.readShortBigEndian(), 0);
}

TEST(InputStreamSkip, SkipsByBytesAndNotAtOrBelowZero)
{
    StreamOver stream(ascending);
    stream.reader.skipNextBytes(0);
    stream.reader.skipNextBytes(-5);
    EXPECT_EQ(stream.reader.getPosition(), 0);
    stream.reader.skipNextBytes(3);
    EXPECT_EQ(stream.reader.readByte(), 4);
    stream.reader.skipNextBytes(100);
    EXPECT_EQ(stream.reader.getPosition(), 8);
}

TEST(InputStreamMemoryBlock, RestOfTheStreamUnlessASmallerMaximum)
{
    StreamOver stream(ascending);
    MemoryBlock block;
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block, 3), 3);
    EXPECT_EQ(block.toString(), ascending.substr(0, 3));
    stream.reader.setPosition(2);
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block, 50), 6);
    EXPECT_EQ(block.toString(), ascending.substr(2));
    stream.reader.setPosition(1);
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block), 7);
    EXPECT_EQ(block.getSize(), 7u);
}

TEST(InputStreamMemoryBlock, NothingToReadLeavesTheBlockUnlessAMaximumSizesIt)
{
    StreamOver stream(ascending);
    MemoryBlock block;
    block.setSize(5, true);
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block, 0), 0);
    EXPECT_EQ(block.getSize(), 5u);
    EXPECT_EQ(stream.reader.getPosition(), 0);
    stream.reader.setPosition(8);
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block), 0);
    EXPECT_EQ(block.getSize(), 5u);
    EXPECT_EQ(stream.reader.readIntoMemoryBlock(block, 4), 0);
    EXPECT_EQ(block.getSize(), 4u);
}
