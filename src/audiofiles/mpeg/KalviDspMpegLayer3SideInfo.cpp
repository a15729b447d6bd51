#include "audiofiles/mpeg/KalviDspMpegLayer3SideInfo.h"

#include <algorithm>

namespace vlk {

namespace {

constexpr std::uint32_t largestBigValues = 288;

} // namespace

std::uint32_t MpegLayer3SideInfo::parse(MpegBitReader& bits, int numChannels, bool lsf)
{
    const bool stereo = numChannels == 2;
    mainDataBegin = bits.read(lsf ? 8 : 9);
    privateBits = bits.read(lsf ? (stereo ? 2 : 1) : (stereo ? 3 : 5));
    const int numGranules = lsf ? 1 : 2;
    for (int channel = 0; channel < numChannels; ++channel) {
        granules[channel][0].scfsi = -1;
        if (!lsf)
            granules[channel][1].scfsi = static_cast<std::int32_t>(bits.read(4));
    }
    std::uint32_t dataBits = 0;
    for (int granule = 0; granule < numGranules; ++granule)
        for (int channel = 0; channel < numChannels; ++channel) {
            parseGranule(bits, granules[channel][granule], lsf);
            dataBits += granules[channel][granule].part2_3Length;
        }
    return dataBits;
}

void MpegLayer3SideInfo::parseGranule(MpegBitReader& bits, Granule& granule, bool lsf)
{
    granule.part2_3Length = bits.read(12);
    granule.bigValues = std::min(bits.read(9), largestBigValues);
    granule.globalGain = bits.read(8);
    granule.scalefacCompress = bits.read(lsf ? 9 : 4);
    granule.windowSwitching = bits.readBit();
    if (granule.windowSwitching) {
        granule.blockType = bits.read(2);
        granule.mixedBlockFlag = bits.read(1);
        granule.tableSelect[0] = bits.read(5);
        granule.tableSelect[1] = bits.read(5);
        granule.tableSelect[2] = 0;
        for (std::uint32_t& gain : granule.subblockGain)
            gain = bits.read(3);
        granule.region0Count = granule.region1Count = 0;
    } else {
        for (std::uint32_t& table : granule.tableSelect)
            table = bits.read(5);
        granule.region0Count = bits.read(4);
        granule.region1Count = bits.read(3);
        granule.blockType = granule.mixedBlockFlag = 0;
    }
    granule.preflag = lsf ? 0 : bits.read(1);
    granule.scalefacScale = bits.read(1);
    granule.count1TableSelect = bits.read(1);
}

} // namespace vlk
