#include "files/KalviDspMemoryBlock.h"

#include <cstring>
#include <gtest/gtest.h>

using vlk::MemoryBlock;

namespace {

bool allBytesAre(const MemoryBlock& block, std::uint64_t from, std::uint64_t to, unsigned char value)
{
    const auto* bytes = static_cast<const unsigned char*>(block.getData());
    for (std::uint64_t index = from; index < to; ++index)
        if (bytes[index] != value)
            return false;
    return true;
}

} // namespace

TEST(MemoryBlockSize, GrowthKeepsTheOldBytesAndZeroesTheNew)
{
    MemoryBlock block;
    block.setSize(64, true);
    EXPECT_TRUE(allBytesAre(block, 0, 64, 0));
    std::memset(block.getData(), 0xAB, 64);
    block.setSize(4096, true);
    EXPECT_TRUE(allBytesAre(block, 0, 64, 0xAB));
    EXPECT_TRUE(allBytesAre(block, 64, 4096, 0));
    block.ensureSize(100, true);
    EXPECT_EQ(block.getSize(), 4096u);
    block.ensureSize(5000, true);
    EXPECT_TRUE(allBytesAre(block, 4096, 5000, 0));
}

TEST(MemoryBlockSize, SameSizeKeepsTheBlockAndZeroFreesIt)
{
    MemoryBlock block;
    EXPECT_EQ(block.getData(), nullptr);
    block.setSize(16);
    void* const data = block.getData();
    block.setSize(16, true);
    EXPECT_EQ(block.getData(), data);
    block.setSize(0);
    EXPECT_EQ(block.getData(), nullptr);
    EXPECT_EQ(block.getSize(), 0u);
}

TEST(MemoryBlockText, AllBytesZerosIncluded)
{
    MemoryBlock block;
    EXPECT_EQ(block.toString(), "");
    block.setSize(16);
    std::memcpy(block.getData(), "a\0b3456789abcdef", 16);
    block.setSize(3);
    EXPECT_EQ(block.toString(), std::string("a\0b", 3));
}

TEST(MemoryBlockCopy, CopiesAreDeepAndMovesEmptyTheSource)
{
    MemoryBlock block;
    block.setSize(5);
    std::memcpy(block.getData(), "bytes", 5);
    MemoryBlock copy;
    copy.setSize(2);
    copy = block;
    EXPECT_NE(copy.getData(), block.getData());
    EXPECT_EQ(copy.toString(), "bytes");
    MemoryBlock moved(std::move(block));
    EXPECT_EQ(moved.toString(), "bytes");
    EXPECT_EQ(block.getSize(), 0u);
}
