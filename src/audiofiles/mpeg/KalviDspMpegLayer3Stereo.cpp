#include "audiofiles/mpeg/KalviDspMpegLayer3Stereo.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"
#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

namespace vlk {

namespace {

constexpr std::uint32_t shortBlocks = 2;
constexpr int notIntensity = 7;

struct IntensityRatios
{
    const float* left;
    const float* right;

    void apply(int position, int first, int count, int step, float* leftLines, float* rightLines) const noexcept
    {
        if (position == notIntensity)
            return;
        const float toLeft = left[position];
        const float toRight = right[position];
        for (int line = first; count > 0; --count, line += step) {
            const float value = leftLines[line];
            leftLines[line] = value * toLeft;
            rightLines[line] = value * toRight;
        }
    }
};

IntensityRatios selectRatios(const GranuleInfo& right, bool lsf, bool ms)
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    if (!lsf)
        return ms ? IntensityRatios{tables.tanRoot1, tables.tanRoot2} : IntensityRatios{tables.tan1, tables.tan2};
    const std::uint32_t parity = right.scalefacCompress & 1;
    return ms ? IntensityRatios{tables.powRoot1[parity], tables.powRoot2[parity]}
              : IntensityRatios{tables.pow1[parity], tables.pow2[parity]};
}

void applyToLongBands(const IntensityRatios& ratios, const Layer3Scalefactors& scalefactors, int firstBand,
                      int endBand, const std::int16_t* starts, float* leftLines, float* rightLines) noexcept
{
    for (int band = firstBand; band < endBand; ++band)
        ratios.apply(scalefactors[band], starts[band], starts[band + 1] - starts[band], 1, leftLines, rightLines);
}

} // namespace

void applyMidSide(float* left, float* right) noexcept
{
    for (int line = 0; line < 576; ++line) {
        const float mid = left[line];
        const float side = right[line];
        left[line] = mid + side;
        right[line] = mid - side;
    }
}

void applyIntensityStereo(const GranuleInfo& right, const Layer3Scalefactors& scalefactors, bool lsf, bool ms,
                          int sampleRateIndex, float* leftLines, float* rightLines) noexcept
{
    const IntensityRatios ratios = selectRatios(right, lsf, ms);
    const std::int16_t* longStarts = mpeg::layer3LongBandStarts[sampleRateIndex];
    if (right.blockType != shortBlocks) {
        if (right.maxBandLong > 21)
            return;
        applyToLongBands(ratios, scalefactors, right.maxBandLong, 21, longStarts, leftLines, rightLines);
        ratios.apply(scalefactors[20], longStarts[21], 576 - longStarts[21], 1, leftLines, rightLines);
        return;
    }

    const std::int16_t* shortStarts = mpeg::layer3ShortBandStarts[sampleRateIndex];
    const auto mixed = static_cast<int>(right.mixedBlockFlag);
    bool withLongBands = mixed != 0;
    for (int window = 0; window < 3; ++window) {
        int band = right.maxBand[window];
        if (band > 3)
            withLongBands = false;
        // A band's first line here is its width plus the window, not its start: the process stands so, and
        // is kept.
        for (; band < 12; ++band) {
            const int width = shortStarts[band + 1] - shortStarts[band];
            ratios.apply(scalefactors[3 * band + window - mixed], width + window, width, 3, leftLines, rightLines);
        }
        const int width = shortStarts[13] - shortStarts[12];
        ratios.apply(scalefactors[33 + window - mixed], width + window, width, 3, leftLines, rightLines);
    }
    if (withLongBands)
        applyToLongBands(ratios, scalefactors, right.maxBandLong, 8, longStarts, leftLines, rightLines);
}

} // namespace vlk
