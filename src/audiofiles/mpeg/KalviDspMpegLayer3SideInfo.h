#pragma once

#include "audiofiles/mpeg/KalviDspMpegBitReader.h"

#include <cstdint>

namespace vlk {

// The side information of a Layer III frame, as the stream states it.
struct MpegLayer3SideInfo
{
    struct Granule
    {
        // Scale factor sharing of the second granule (MPEG-1); -1 in the first.
        std::int32_t scfsi = -1;
        std::uint32_t part2_3Length = 0;
        // Held at 288.
        std::uint32_t bigValues = 0;
        std::uint32_t globalGain = 0;
        std::uint32_t scalefacCompress = 0;
        bool windowSwitching = false;
        std::uint32_t blockType = 0;
        std::uint32_t mixedBlockFlag = 0;
        std::uint32_t tableSelect[3] = {0, 0, 0};
        std::uint32_t subblockGain[3] = {0, 0, 0};
        std::uint32_t region0Count = 0;
        std::uint32_t region1Count = 0;
        std::uint32_t preflag = 0;
        std::uint32_t scalefacScale = 0;
        std::uint32_t count1TableSelect = 0;
    };

    // By channel, then granule: MPEG-1 frames have two granules, MPEG-2 and 2.5 frames one.
    Granule granules[2][2];
    std::uint32_t mainDataBegin = 0;
    std::uint32_t privateBits = 0;

    // Reads the side information of a frame of numChannels channels; lsf selects the MPEG-2 form. Returns
    // the sum of the part2_3_length fields of all granules and channels: the bits of the main data.
    std::uint32_t parse(MpegBitReader& bits, int numChannels, bool lsf);

private:
    void parseGranule(MpegBitReader& bits, Granule& granule, bool lsf);
};

} // namespace vlk
