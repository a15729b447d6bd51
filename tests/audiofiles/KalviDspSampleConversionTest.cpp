#include "audiofiles/KalviDspSampleConversion.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

using namespace vlk;

namespace {

using Converter = void (*)(int**, std::uint64_t, std::uint32_t, const std::uint8_t*, std::uint32_t,
                           std::uint64_t);

// Channel arrays of float memory, as the readers get them from an audio buffer, prefilled with a marker value
// that shows which words a converter left alone.
struct Channels
{
    Channels(std::size_t numChannels, std::size_t numSamples, float fill = 7.0f)
        : samples(numChannels, std::vector<float>(numSamples, fill))
    {
        for (std::vector<float>& channel : samples)
            pointers.push_back(reinterpret_cast<int*>(channel.data()));
    }

    std::int32_t word(std::size_t channel, std::size_t index) const
    {
        return std::bit_cast<std::int32_t>(samples[channel][index]);
    }

    std::vector<std::vector<float>> samples;
    std::vector<int*> pointers;
};

// The float that one sample of the given file bytes becomes, through its converter and the scale to float.
float convertOne(Converter converter, std::vector<std::uint8_t> bytes)
{
    Channels channels(1, 1);
    converter(channels.pointers.data(), 0, 1, bytes.data(), 1, 1);
    convertToFloat(channels.pointers[0], 1);
    return channels.samples[0][0];
}

std::vector<std::uint8_t> floatBytes(float value, bool bigEndian)
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    std::vector<std::uint8_t> bytes;
    for (int index = 0; index < 4; ++index)
        bytes.push_back(static_cast<std::uint8_t>(bits >> (bigEndian ? 24 - 8 * index : 8 * index)));
    return bytes;
}

} // namespace

TEST(SampleConversionValues, EightBitsDifferBetweenWavAndAiff)
{
    EXPECT_EQ(convertOne(convertUInt8, {0x80}), 0.0f);
    EXPECT_EQ(convertOne(convertUInt8, {0x00}), -1.0f);
    EXPECT_EQ(convertOne(convertUInt8, {0xFF}), 127.0f / 128.0f);
    EXPECT_EQ(convertOne(convertInt8, {0x80}), -1.0f);
    EXPECT_EQ(convertOne(convertInt8, {0x7F}), 127.0f / 128.0f);
    EXPECT_EQ(convertOne(convertInt8, {0xFF}), -1.0f / 128.0f);
}

TEST(SampleConversionValues, MostNegativeSampleIsExactlyMinusOneInBothByteOrders)
{
    EXPECT_EQ(convertOne(convertInt16LittleEndian, {0x00, 0x80}), -1.0f);
    EXPECT_EQ(convertOne(convertInt16BigEndian, {0x80, 0x00}), -1.0f);
    EXPECT_EQ(convertOne(convertInt24LittleEndian, {0x00, 0x00, 0x80}), -1.0f);
    EXPECT_EQ(convertOne(convertInt24BigEndian, {0x80, 0x00, 0x00}), -1.0f);
    EXPECT_EQ(convertOne(convertInt32LittleEndian, {0x00, 0x00, 0x00, 0x80}), -1.0f);
    EXPECT_EQ(convertOne(convertInt32BigEndian, {0x80, 0x00, 0x00, 0x00}), -1.0f);
}

TEST(SampleConversionValues, LargestPositiveSampleByDepth)
{
    EXPECT_EQ(convertOne(convertInt16LittleEndian, {0xFF, 0x7F}), 32767.0f / 32768.0f);
    EXPECT_EQ(convertOne(convertInt16BigEndian, {0x7F, 0xFF}), 32767.0f / 32768.0f);
    EXPECT_EQ(convertOne(convertInt24LittleEndian, {0xFF, 0xFF, 0x7F}), 8388607.0f / 8388608.0f);
    EXPECT_EQ(convertOne(convertInt24BigEndian, {0x7F, 0xFF, 0xFF}), 8388607.0f / 8388608.0f);
    // 2147483647 rounds up to 2^31 in single precision.
    EXPECT_EQ(convertOne(convertInt32LittleEndian, {0xFF, 0xFF, 0xFF, 0x7F}), 1.0f);
    EXPECT_EQ(convertOne(convertInt32BigEndian, {0x7F, 0xFF, 0xFF, 0xFF}), 1.0f);
}

// Every 16-bit value in one block against the plain division, for both byte orders: catches a swapped or
// lost byte.
TEST(SampleConversionValues, EverySixteenBitValueIsItsQuotient)
{
    std::vector<std::uint8_t> littleEndian, bigEndian;
    for (int value = -32768; value < 32768; ++value) {
        const auto bits = static_cast<std::uint16_t>(value);
        littleEndian.insert(littleEndian.end(),
                            {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8)});
        bigEndian.insert(bigEndian.end(),
                         {static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)});
    }
    Channels channels(2, 65536);
    convertInt16LittleEndian(channels.pointers.data(), 0, 1, littleEndian.data(), 1, 65536);
    convertInt16BigEndian(channels.pointers.data() + 1, 0, 1, bigEndian.data(), 1, 65536);
    for (int* channel : channels.pointers)
        convertToFloat(channel, 65536);
    for (int value = -32768; value < 32768; ++value) {
        const float expected = static_cast<float>(value / 32768.0);
        ASSERT_EQ(channels.samples[0][value + 32768], expected) << value;
        ASSERT_EQ(channels.samples[1][value + 32768], expected) << value;
    }
}

TEST(SampleConversionValues, TwentyFourBitValuesAreTheirQuotients)
{
    for (std::int32_t value : {-8388608, -4660, -1, 0, 1, 0x123456, 0x654321 - 0x800000, 8388607}) {
        const auto bits = static_cast<std::uint32_t>(value);
        const std::uint8_t b0 = bits & 0xFF, b1 = (bits >> 8) & 0xFF, b2 = (bits >> 16) & 0xFF;
        const float expected = static_cast<float>(value / 8388608.0);
        EXPECT_EQ(convertOne(convertInt24LittleEndian, {b0, b1, b2}), expected) << value;
        EXPECT_EQ(convertOne(convertInt24BigEndian, {b2, b1, b0}), expected) << value;
    }
}

TEST(SampleConversionValues, FloatSamplesPassBitForBit)
{
    for (float value : {2.0f, -0.25f, 1e30f, std::numeric_limits<float>::infinity()}) {
        for (bool bigEndian : {false, true}) {
            Channels channels(1, 1);
            const std::vector<std::uint8_t> bytes = floatBytes(value, bigEndian);
            (bigEndian ? convertFloat32BigEndian : convertFloat32LittleEndian)(channels.pointers.data(), 0, 1,
                                                                               bytes.data(), 1, 1);
            EXPECT_EQ(channels.samples[0][0], value);
        }
    }
    Channels nan(1, 1);
    const std::uint8_t quietNan[] = {0x01, 0x00, 0xC0, 0x7F};
    convertFloat32LittleEndian(nan.pointers.data(), 0, 1, quietNan, 1, 1);
    EXPECT_EQ(nan.word(0, 0), 0x7FC00001);
}

TEST(SampleConversionChannels, InterleavedFramesAreSplitAtTheOffset)
{
    // Three channels of 16 bits, two frames: sample value = 0x0100 * frame + channel + 1.
    const std::uint8_t source[] = {1, 0, 2, 0, 3, 0, 1, 1, 2, 1, 3, 1};
    Channels channels(3, 4);
    convertInt16LittleEndian(channels.pointers.data(), 1, 3, source, 3, 2);
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(channels.samples[channel][0], 7.0f) << "before the offset";
        EXPECT_EQ(channels.word(channel, 1), static_cast<std::int32_t>(channel + 1) << 16);
        EXPECT_EQ(channels.word(channel, 2), static_cast<std::int32_t>(0x100 + channel + 1) << 16);
        EXPECT_EQ(channels.samples[channel][3], 7.0f) << "behind the frames";
    }
}

TEST(SampleConversionChannels, NullChannelIsSkippedAndChannelsBeyondTheSourceAreZeroed)
{
    // Two source channels of 24 bits, three frames.
    const std::uint8_t source[] = {0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0, 5, 0, 0, 6};
    Channels channels(4, 3);
    channels.pointers[0] = nullptr;
    convertInt24LittleEndian(channels.pointers.data(), 0, 4, source, 2, 3);
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_EQ(channels.samples[0][index], 7.0f);
        EXPECT_EQ(channels.word(1, index), static_cast<std::int32_t>(2 * index + 2) << 24);
        EXPECT_EQ(channels.word(2, index), 0);
        EXPECT_EQ(channels.word(3, index), 0);
    }
}

TEST(SampleConversionChannels, NoDestinationChannelsWritesNothing)
{
    const std::uint8_t source[] = {1, 2};
    convertInt16BigEndian(nullptr, 0, 0, source, 1, 1);
}

// A mono block narrower than a word, converted in the very memory it lies in: only the backward loop
// leaves every sample intact.
TEST(SampleConversionInPlace, WideningInPlaceKeepsEverySample)
{
    struct Case
    {
        Converter converter;
        std::size_t sampleSize;
        const char* name;
    };
    for (const Case& test :
         {Case{convertUInt8, 1, "uint8"}, Case{convertInt8, 1, "int8"},
          Case{convertInt16LittleEndian, 2, "int16 le"}, Case{convertInt16BigEndian, 2, "int16 be"},
          Case{convertInt24LittleEndian, 3, "int24 le"}, Case{convertInt24BigEndian, 3, "int24 be"}}) {
        const std::size_t numFrames = 1000;
        std::vector<std::uint8_t> source(numFrames * test.sampleSize);
        for (std::size_t index = 0; index < source.size(); ++index)
            source[index] = static_cast<std::uint8_t>(index * 37 + index / 251);

        Channels expected(1, numFrames + 2);
        test.converter(expected.pointers.data(), 2, 1, source.data(), 1, numFrames);

        Channels inPlace(1, numFrames + 2);
        std::memcpy(inPlace.pointers[0] + 2, source.data(), source.size());
        test.converter(inPlace.pointers.data(), 2, 1,
                       reinterpret_cast<const std::uint8_t*>(inPlace.pointers[0] + 2), 1, numFrames);
        for (std::size_t index = 0; index < numFrames + 2; ++index)
            ASSERT_EQ(inPlace.word(0, index), expected.word(0, index)) << test.name << " at " << index;
    }
}

TEST(SampleConversionToFloat, ConvertsOnlyTheCountGiven)
{
    std::vector<float> samples(3);
    for (std::size_t index = 0; index < 3; ++index)
        samples[index] = std::bit_cast<float>(std::int32_t{1} << 30);
    convertToFloat(reinterpret_cast<int*>(samples.data()), 2);
    EXPECT_EQ(samples[0], 0.5f);
    EXPECT_EQ(samples[1], 0.5f);
    EXPECT_EQ(std::bit_cast<std::int32_t>(samples[2]), std::int32_t{1} << 30);
}
