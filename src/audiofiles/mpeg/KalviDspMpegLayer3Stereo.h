#pragma once

#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"
#include "audiofiles/mpeg/KalviDspMpegLayer3Scalefactors.h"

namespace vlk {

// Mid/side to left/right over all 576 lines: the 1/sqrt 2 is in the gains already.
void applyMidSide(float* left, float* right) noexcept;

// Rebuilds the right channel's bands above its signal from the left channel, the right channel's scale
// factors giving the positions; 7 leaves a band as it is.
void applyIntensityStereo(const GranuleInfo& right, const Layer3Scalefactors& rightScalefactors, bool lsf, bool ms,
                          int sampleRateIndex, float* leftLines, float* rightLines) noexcept;

} // namespace vlk
