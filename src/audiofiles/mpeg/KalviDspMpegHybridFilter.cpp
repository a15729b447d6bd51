#include "audiofiles/mpeg/KalviDspMpegHybridFilter.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"

#include <algorithm>

namespace vlk {

namespace {

constexpr std::uint32_t shortBlocks = 2;
constexpr int numSlots = 18;
constexpr int numSubbands = 32;

// One subband through the 36-point IMDCT: its 18 lines in, 18 samples out at a stride of 32, overlap added.
void transformLong(const float* in, const float* window, const float* overlap, float* nextOverlap,
                   float* out) noexcept
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    float distinct[20] = {};
    for (int input = 0; input < 18; ++input)
        for (int output = 0; output < 20; ++output)
            distinct[output] += in[input] * tables.imdct36[input][output];
    // Outputs 9 to 17 mirror 8 to 0, and 27 to 35 mirror 26 to 18.
    float samples[36];
    for (int i = 0; i < 9; ++i) {
        samples[i] = samples[17 - i] = distinct[i];
        samples[18 + i] = samples[35 - i] = distinct[9 + i];
    }
    for (int i = 0; i < numSlots; ++i) {
        out[i * numSubbands] = samples[i] * window[i] + overlap[i];
        nextOverlap[i] = samples[18 + i] * window[18 + i];
    }
}

// One subband of short blocks: three 12-point IMDCTs on the lines of each window, which lie at a stride of 3,
// overlapping by half in the middle of the 36 samples; its first and last 6 samples are 0.
void transformShort(const float* in, const float* window, const float* overlap, float* nextOverlap,
                    float* out) noexcept
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    float block[36] = {};
    for (int part = 0; part < 3; ++part) {
        float distinct[6] = {};
        for (int input = 0; input < 6; ++input)
            for (int output = 0; output < 6; ++output)
                distinct[output] += in[part + 3 * input] * tables.imdct12[input][output];
        // Outputs 3 to 5 mirror 2 to 0, and 9 to 11 mirror 8 to 6.
        float samples[12];
        for (int i = 0; i < 3; ++i) {
            samples[i] = samples[5 - i] = distinct[i];
            samples[6 + i] = samples[11 - i] = distinct[3 + i];
        }
        for (int i = 0; i < 12; ++i)
            block[6 + 6 * part + i] += samples[i] * window[i];
    }
    for (int i = 0; i < numSlots; ++i) {
        out[i * numSubbands] = block[i] + overlap[i];
        nextOverlap[i] = block[18 + i];
    }
}

} // namespace

void MpegHybridFilter::reduceAliasing(float* lines, const GranuleInfo& granule) noexcept
{
    int boundaries = granule.maxSubband - 1;
    if (granule.blockType == shortBlocks) {
        if (granule.mixedBlockFlag == 0)
            return;
        boundaries = 1;
    }
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    for (int subband = 1; subband <= boundaries; ++subband) {
        float* below = lines + numSlots * subband - 1;
        float* above = lines + numSlots * subband;
        for (int i = 0; i < 8; ++i) {
            const float lower = below[-i];
            const float upper = above[i];
            below[-i] = lower * tables.aliasCs[i] - upper * tables.aliasCa[i];
            above[i] = upper * tables.aliasCs[i] + lower * tables.aliasCa[i];
        }
    }
}

void MpegHybridFilter::transform(const float* lines, const GranuleInfo& granule, int channel, float* output) noexcept
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    const float* overlap = overlapBlocks[overlapIndex[channel]][channel];
    overlapIndex[channel] ^= 1;
    float* nextOverlap = overlapBlocks[overlapIndex[channel]][channel];

    int subband = 0;
    if (granule.mixedBlockFlag != 0) {
        transformLong(lines, tables.imdctWindow[0], overlap, nextOverlap, output);
        transformLong(lines + numSlots, tables.imdctWindowOdd[0], overlap + numSlots, nextOverlap + numSlots,
                      output + 1);
        subband = 2;
    }
    const auto blockType = static_cast<int>(granule.blockType);
    const auto transformPair = blockType == shortBlocks ? transformShort : transformLong;
    for (; subband < granule.maxSubband; subband += 2) {
        const int first = subband * numSlots;
        transformPair(lines + first, tables.imdctWindow[blockType], overlap + first, nextOverlap + first,
                      output + subband);
        transformPair(lines + first + numSlots, tables.imdctWindowOdd[blockType], overlap + first + numSlots,
                      nextOverlap + first + numSlots, output + subband + 1);
    }
    // Above the signal there is nothing to transform: what the last granule left over plays out.
    for (; subband < numSubbands; ++subband) {
        for (int i = 0; i < numSlots; ++i)
            output[i * numSubbands + subband] = overlap[subband * numSlots + i];
        std::fill(nextOverlap + subband * numSlots, nextOverlap + (subband + 1) * numSlots, 0.0f);
    }
}

void MpegHybridFilter::reset() noexcept
{
    std::fill(&overlapBlocks[0][0][0], &overlapBlocks[0][0][0] + sizeof(overlapBlocks) / sizeof(float), 0.0f);
    overlapIndex[0] = overlapIndex[1] = 0;
}

} // namespace vlk
