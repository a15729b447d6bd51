#include "audiofiles/mpeg/KalviDspMpegSynthesis.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace vlk::test {
namespace {

// The fast DCT against the sum it stands for, on a signal with every coefficient in play.
TEST(MpegSynthesis, FastDctEqualsTheDirectSum)
{
    float in[32];
    for (int k = 0; k < 32; ++k)
        in[k] = static_cast<float>(std::sin(0.7 * k + 0.3) * (1.0 + k % 5));
    float out[32];
    MpegSynthesis::dct32(in, out);
    for (int m = 0; m < 32; ++m) {
        double expected = 0.0;
        for (int k = 0; k < 32; ++k)
            expected += in[k] * std::cos(std::numbers::pi * m * (2 * k + 1) / 64.0);
        EXPECT_NEAR(out[m], expected, 1e-4) << m;
    }
}

// A constant in subband 0 settles to the same constant out, once the history is full, and silence gives
// silence: the window's scale is that of full scale 1.0.
TEST(MpegSynthesis, SubbandZeroPassesAConstantAtUnitGain)
{
    MpegSynthesis synthesis;
    float bands[32] = {};
    bands[0] = 0.5f;
    float output[32 * 40];
    std::int32_t count = 0;
    for (int call = 0; call < 40; ++call)
        synthesis.synthesise(bands, 0, output, count);
    EXPECT_EQ(count, 32 * 40);
    for (int sample = 32 * 30; sample < 32 * 40; ++sample)
        EXPECT_NEAR(output[sample], 0.5f, 1e-3f) << sample;
}

} // namespace
} // namespace vlk::test
