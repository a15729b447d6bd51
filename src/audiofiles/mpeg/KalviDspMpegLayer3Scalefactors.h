#pragma once

#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"
#include "audiofiles/mpeg/KalviDspMpegBitReader.h"

#include <cstdint>

namespace vlk {

// A granule's scale factors in the order its bands meet the Huffman values, zeros behind the last band
// that has one.
using Layer3Scalefactors = std::uint8_t[39];

// MPEG-1: groups that scfsi shares keep the first granule's values, which must still be in scalefactors.
// Returns the bits read.
std::int32_t readMpeg1Scalefactors(MpegBitReader& bits, const GranuleInfo& granule, Layer3Scalefactors& scalefactors);
// MPEG-2 and 2.5: intensityRight selects the lengths of the right channel of an intensity stereo frame. Sets
// the granule's preflag; returns the bits read.
std::int32_t readMpeg2Scalefactors(MpegBitReader& bits, GranuleInfo& granule, bool intensityRight,
                                   Layer3Scalefactors& scalefactors);

} // namespace vlk
