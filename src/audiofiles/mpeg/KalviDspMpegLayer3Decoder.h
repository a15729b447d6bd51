#pragma once

#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"
#include "audiofiles/mpeg/KalviDspMpegBitReader.h"
#include "audiofiles/mpeg/KalviDspMpegFrameHeader.h"
#include "audiofiles/mpeg/KalviDspMpegHybridFilter.h"
#include "audiofiles/mpeg/KalviDspMpegLayer3Scalefactors.h"
#include "audiofiles/mpeg/KalviDspMpegSynthesis.h"

#include <cstdint>

namespace vlk {

// Layer III: the granules of a frame from its main data, reservoir included, into samples of both channels
// at left and right from samplesDone on; right may be null for a mono frame. A granule that overruns its
// bits ends the frame: what was decoded before it stands.
class MpegLayer3Decoder
{
public:
    void decodeFrame(const MpegFrameHeader& header, LayerThreeSideInfo& sideInfo, MpegBitReader& bits,
                     MpegSynthesis& synthesis, float* left, float* right, std::int32_t& samplesDone) noexcept;
    void reset() noexcept;

private:
    bool decodeChannel(const MpegFrameHeader& header, GranuleInfo& granule, int channel, bool intensityRight,
                       MpegBitReader& bits) noexcept;

    // The frequency lines of a granule, then its subband samples, 18 rows of 32.
    float hybridIn[2][576] = {};
    float hybridOut[2][576] = {};
    // Kept from one granule to the next, whose scale factor sharing takes them over.
    Layer3Scalefactors scalefactors[2] = {};
    MpegHybridFilter hybridFilter;
};

} // namespace vlk
