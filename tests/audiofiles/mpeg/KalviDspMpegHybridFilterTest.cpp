#include "audiofiles/mpeg/KalviDspMpegHybridFilter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace vlk::test {
namespace {

constexpr double pi = std::numbers::pi;

// The windows of the four block types as the standard writes them, without any factor folded in.
double standardWindow(int blockType, int i)
{
    const double longSine = std::sin(pi / 36.0 * (i + 0.5));
    switch (blockType) {
    case 1:
        if (i < 18)
            return longSine;
        if (i < 24)
            return 1.0;
        return i < 30 ? std::sin(pi / 12.0 * (i - 18 + 0.5)) : 0.0;
    case 2:
        return std::sin(pi / 12.0 * (i + 0.5));
    case 3:
        if (i < 6)
            return 0.0;
        if (i < 12)
            return std::sin(pi / 12.0 * (i - 6 + 0.5));
        return i < 18 ? 1.0 : longSine;
    default:
        return longSine;
    }
}

// One subband's 36 windowed samples by the IMDCT's definition: the long transform of its 18 lines, or three
// short ones of the lines of each window overlapped in the middle. Odd subbands have every odd sample negated.
std::vector<double> windowedBlock(const float* lines, int blockType, int subband)
{
    std::vector<double> block(36, 0.0);
    if (blockType == 2) {
        for (int window = 0; window < 3; ++window)
            for (int i = 0; i < 12; ++i) {
                double sum = 0.0;
                for (int k = 0; k < 6; ++k)
                    sum += lines[window + 3 * k] * std::cos(pi / 24.0 * (2 * i + 7) * (2 * k + 1));
                block[6 + 6 * window + i] += sum * standardWindow(2, i);
            }
    } else {
        for (int i = 0; i < 36; ++i) {
            double sum = 0.0;
            for (int k = 0; k < 18; ++k)
                sum += lines[k] * std::cos(pi / 72.0 * (2 * i + 19) * (2 * k + 1));
            block[i] = sum * standardWindow(blockType, i);
        }
    }
    if (subband % 2 == 1)
        for (int i = 1; i < 36; i += 2)
            block[i] = -block[i];
    return block;
}

class MpegHybridFilterTransform : public testing::TestWithParam<int>
{
};

// Two granules of every subband through the filter: each output is the first half of its block plus the
// second half of the one before.
TEST_P(MpegHybridFilterTransform, EqualsTheWindowedImdctWithOverlap)
{
    const int blockType = GetParam();
    GranuleInfo granule;
    granule.blockType = static_cast<std::uint32_t>(blockType);
    granule.maxSubband = 32;
    MpegHybridFilter filter;
    float lines[2][576];
    float output[576];
    for (int granuleIndex = 0; granuleIndex < 2; ++granuleIndex) {
        for (int line = 0; line < 576; ++line)
            lines[granuleIndex][line] = static_cast<float>(std::sin(0.37 * line + 1.3 * granuleIndex) * 0.2);
        filter.transform(lines[granuleIndex], granule, 0, output);
    }
    for (int subband = 0; subband < 32; ++subband) {
        const std::vector<double> previous = windowedBlock(lines[0] + 18 * subband, blockType, subband);
        const std::vector<double> current = windowedBlock(lines[1] + 18 * subband, blockType, subband);
        for (int slot = 0; slot < 18; ++slot)
            EXPECT_NEAR(output[32 * slot + subband], current[slot] + previous[18 + slot], 2e-5)
                << "subband " << subband << ", slot " << slot;
    }
}

INSTANTIATE_TEST_SUITE_P(BlockTypes, MpegHybridFilterTransform, testing::Values(0, 1, 2, 3));

// Above the signal nothing is transformed: the overlap plays out and the next granule's is silence.
TEST(MpegHybridFilter, SubbandsAboveTheSignalPlayOutTheirOverlap)
{
    GranuleInfo full;
    full.maxSubband = 32;
    GranuleInfo silentTop = full;
    silentTop.maxSubband = 4;
    float lines[576];
    for (int line = 0; line < 576; ++line)
        lines[line] = 0.1f * static_cast<float>(line % 7);
    MpegHybridFilter filter;
    float output[576];
    filter.transform(lines, full, 0, output);
    float silence[576] = {};
    filter.transform(silence, silentTop, 0, output);
    filter.transform(silence, silentTop, 0, output);
    for (int slot = 0; slot < 18; ++slot)
        for (int subband = 4; subband < 32; ++subband)
            EXPECT_EQ(output[32 * slot + subband], 0.0f);
}

} // namespace
} // namespace vlk::test
