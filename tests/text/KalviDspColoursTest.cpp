#include "text/KalviDspColours.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

void expectColour(const Colour& colour, int red, int green, int blue)
{
    EXPECT_FLOAT_EQ(colour.red, red / 255.0f);
    EXPECT_FLOAT_EQ(colour.green, green / 255.0f);
    EXPECT_FLOAT_EQ(colour.blue, blue / 255.0f);
}

TEST(ColourTable, ComponentsAreHexadecimalPairsOver255)
{
    expectColour(Colours::aliceBlue, 0xf0, 0xf8, 0xff);
    expectColour(Colours::cornflowerBlue, 0x64, 0x95, 0xed);
    expectColour(Colours::yellowGreen, 0x9a, 0xcd, 0x32);
    expectColour(Colours::white, 255, 255, 255);
}

TEST(ColourTable, DarkGreyIsDarkerThanGreyInBothSpellings)
{
    expectColour(Colours::darkGrey, 0x55, 0x55, 0x55);
    expectColour(Colours::darkGray, 0x55, 0x55, 0x55);
    expectColour(Colours::grey, 0x80, 0x80, 0x80);
}

TEST(ColourTable, DefaultIsBlack)
{
    expectColour(Colours::defaultColour, 0, 0, 0);
    expectColour(Colours::black, 0, 0, 0);
}

} // namespace
} // namespace vlk
