#pragma once

#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"

namespace vlk {

// The Layer III hybrid filter of both channels: alias reduction, then per subband an IMDCT, its window and
// the overlap with the previous granule, into 18 slots of 32 subband samples.
class MpegHybridFilter
{
public:
    static void reduceAliasing(float* lines, const GranuleInfo& granule) noexcept;
    // output holds 18 rows of 32 subbands.
    void transform(const float* lines, const GranuleInfo& granule, int channel, float* output) noexcept;
    void reset() noexcept;

private:
    // [index][channel]: the current block of each channel holds the overlap that the next granule adds.
    float overlapBlocks[2][2][576] = {};
    int overlapIndex[2] = {0, 0};
};

} // namespace vlk
