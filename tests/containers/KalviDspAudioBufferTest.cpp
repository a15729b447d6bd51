#include "containers/KalviDspAudioBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace vlk {
namespace {

// Channel c, frame f holds 1000 * c + f.
void number(AudioBuffer& buffer)
{
    for (std::uint32_t channel = 0; channel < buffer.getNumChannels(); ++channel)
        for (std::uint64_t frame = 0; frame < buffer.getNumSamples(); ++frame)
            buffer.getChannel(channel)[frame] = static_cast<float>(1000 * channel + frame);
}

TEST(AudioBufferLayout, ChannelsFollowEachOtherWithoutGapsAndStartSilent)
{
    AudioBuffer buffer(3, 7);
    ASSERT_EQ(buffer.getNumChannels(), 3u);
    ASSERT_EQ(buffer.getNumSamples(), 7u);
    for (std::uint32_t channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(buffer.getChannel(channel), buffer.getChannel(0) + 7 * channel);
        EXPECT_EQ(buffer.getArrayOfChannels()[channel], buffer.getChannel(channel));
        for (std::uint64_t frame = 0; frame < 7; ++frame)
            EXPECT_EQ(buffer.getChannel(channel)[frame], 0.0f);
    }
}

TEST(AudioBufferResize, UnchangedSizesLeaveEverythingInPlace)
{
    AudioBuffer buffer(2, 16);
    number(buffer);
    float* const first = buffer.getChannel(0);
    buffer.resize(2, 16);
    EXPECT_EQ(buffer.getChannel(0), first);
    EXPECT_EQ(buffer.getChannel(1)[3], 1003.0f);
}

TEST(AudioBufferResize, SamplesStayWhereTheyLieInTheBlock)
{
    AudioBuffer buffer(2, 100);
    number(buffer);
    buffer.resize(2, 50);
    ASSERT_EQ(buffer.getChannel(1), buffer.getChannel(0) + 50);
    // Channel 1 now shows what channel 0 held from frame 50 on.
    for (std::uint64_t frame = 0; frame < 50; ++frame) {
        EXPECT_EQ(buffer.getChannel(0)[frame], static_cast<float>(frame));
        EXPECT_EQ(buffer.getChannel(1)[frame], static_cast<float>(50 + frame));
    }
}

TEST(AudioBufferResize, GrowthAddsZerosBehindTheOldBlock)
{
    AudioBuffer buffer(1, 4);
    number(buffer);
    buffer.resize(3, 4);
    EXPECT_EQ(std::vector<float>(buffer.getChannel(0), buffer.getChannel(0) + 4),
              (std::vector<float>{0, 1, 2, 3}));
    for (std::uint32_t channel = 1; channel < 3; ++channel)
        for (std::uint64_t frame = 0; frame < 4; ++frame)
            EXPECT_EQ(buffer.getChannel(channel)[frame], 0.0f);
    buffer.resize(0, 4);
    EXPECT_EQ(buffer.getNumChannels(), 0u);
    EXPECT_EQ(buffer.getNumSamples(), 4u);
}

TEST(AudioBufferResize, SizeBeyondTheAllocatorThrowsAndLeavesTheBufferResizable)
{
    AudioBuffer buffer(2, 8);
    // More elements than a vector of float may ever hold: refused before any allocation is tried.
    EXPECT_THROW(buffer.resize(4, std::uint64_t(1) << 60), Exception);
    EXPECT_EQ(buffer.getNumChannels(), 4u);
    EXPECT_EQ(buffer.getNumSamples(), std::uint64_t(1) << 60);
    buffer.resize(2, 3);
    number(buffer);
    EXPECT_EQ(buffer.getChannel(1), buffer.getChannel(0) + 3);
    EXPECT_EQ(buffer.getChannel(1)[2], 1002.0f);
}

TEST(AudioBufferResizeKeepingContents, FramesAndChannelsInBothSizesSurvive)
{
    AudioBuffer buffer(2, 100);
    number(buffer);
    buffer.resizeKeepingContents(2, 50);
    ASSERT_EQ(buffer.getNumSamples(), 50u);
    ASSERT_EQ(buffer.getChannel(1), buffer.getChannel(0) + 50);
    for (std::uint64_t frame = 0; frame < 50; ++frame) {
        EXPECT_EQ(buffer.getChannel(0)[frame], static_cast<float>(frame));
        EXPECT_EQ(buffer.getChannel(1)[frame], static_cast<float>(1000 + frame));
    }
    buffer.resizeKeepingContents(3, 60);
    for (std::uint64_t frame = 0; frame < 60; ++frame) {
        EXPECT_EQ(buffer.getChannel(0)[frame], frame < 50 ? static_cast<float>(frame) : 0.0f);
        EXPECT_EQ(buffer.getChannel(1)[frame], frame < 50 ? static_cast<float>(1000 + frame) : 0.0f);
        EXPECT_EQ(buffer.getChannel(2)[frame], 0.0f);
    }
    buffer.resizeKeepingContents(1, 60);
    EXPECT_EQ(buffer.getNumChannels(), 1u);
    EXPECT_EQ(buffer.getChannel(0)[49], 49.0f);
}

TEST(AudioBufferMemory, CountsTheBytesReservedInMebibytes)
{
    AudioBuffer buffer(2, 524288);
    EXPECT_FLOAT_EQ(buffer.getMemoryInMB(), 4.0f);
    // Shrinking keeps the reservation.
    buffer.resize(1, 10);
    EXPECT_FLOAT_EQ(buffer.getMemoryInMB(), 4.0f);
    EXPECT_EQ(AudioBuffer().getMemoryInMB(), 0.0f);
}

} // namespace
} // namespace vlk
