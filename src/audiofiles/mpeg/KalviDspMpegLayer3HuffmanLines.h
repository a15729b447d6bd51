#pragma once

#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"
#include "audiofiles/mpeg/KalviDspMpegBitReader.h"
#include "audiofiles/mpeg/KalviDspMpegLayer3Scalefactors.h"

#include <cstdint>

namespace vlk {

// The Huffman pass of one granule and channel, which requantises as it goes: the granule's 576 frequency
// lines, short bands at a stride of 3 by window, from the granule's bits behind its scale factors, of which
// bitsLeft remain. Notes the bands and subbands with signal in the granule. False when the granule's values
// took more bits than it has: the frame is damaged from here on.
bool decodeHuffmanLines(MpegBitReader& bits, GranuleInfo& granule, const Layer3Scalefactors& scalefactors,
                        std::int32_t bitsLeft, int sampleRateIndex, float* lines);

} // namespace vlk
