#pragma once

#include "audiofiles/mpeg/KalviDspMpegBitReader.h"
#include "audiofiles/mpeg/KalviDspMpegFrameHeader.h"
#include "audiofiles/mpeg/KalviDspMpegSynthesis.h"

#include <cstdint>

namespace vlk {

// Layers I and II: the frame's bits, read from behind the header (and its CRC), into samples of both
// channels at left and right from samplesDone on. right may be null for a mono frame. Layer I gives 384
// samples a channel, Layer II 1152. A damaged frame decodes to whatever its bits say, within the arrays.
void decodeLayer1(const MpegFrameHeader& header, MpegBitReader& bits, MpegSynthesis& synthesis, float* left,
                  float* right, std::int32_t& samplesDone);
void decodeLayer2(const MpegFrameHeader& header, MpegBitReader& bits, MpegSynthesis& synthesis, float* left,
                  float* right, std::int32_t& samplesDone);

} // namespace vlk
