#include "audiofiles/KalviDspAiffSampleRate.h"

#include "audiofiles/KalviDspAiffFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vlk;
using namespace vlk::test;

namespace {

// The rate of ten bytes made by the fixtures' general encoder.
std::optional<double> convert(const std::string& bytes)
{
    std::array<std::uint8_t, 10> rate{};
    std::copy_n(bytes.begin(), rate.size(), rate.begin());
    return convertAiffSampleRate(rate);
}

std::optional<double> convert(double rate)
{
    return convert(makeExtendedFloat(rate));
}

} // namespace

TEST(AiffSampleRate, CommonRatesAreExact)
{
    EXPECT_EQ(makeExtendedFloat(44100), std::string("\x40\x0E\xAC\x44\0\0\0\0\0\0", 10));
    for (const double rate :
         {8000.0, 11025.0, 22050.0, 44100.0, 48000.0, 88200.0, 96000.0, 192000.0, 384000.0})
        EXPECT_EQ(convert(rate), rate);
}

TEST(AiffSampleRate, FractionsOfAHertzAreDropped)
{
    EXPECT_EQ(convert(11025.5), 11025.0);
    EXPECT_EQ(convert(44099.999), 44099.0);
    // Mantissa bits below the top 32 are never looked at.
    EXPECT_EQ(convert(makeExtendedFloat(0x400E, 0xAC440000FFFFFFFF)), 44100.0);
}

TEST(AiffSampleRate, RangeIsTwoHertzUpToJustBelowTwoToTheThirty)
{
    EXPECT_EQ(convert(2.0), 2.0);
    EXPECT_EQ(convert(3.75), 3.0);
    EXPECT_EQ(convert(1.99), std::nullopt);
    EXPECT_EQ(convert(1.0), std::nullopt);
    EXPECT_EQ(convert(0.0), std::nullopt);
    EXPECT_EQ(convert(1073741823.0), 1073741823.0);
    EXPECT_EQ(convert(makeExtendedFloat(0x401C, 0xFFFFFFFFFFFFFFFF)), 1073741823.0);
    EXPECT_EQ(convert(1073741824.0), std::nullopt);
    EXPECT_EQ(convert(-44100.0), std::nullopt);
}
