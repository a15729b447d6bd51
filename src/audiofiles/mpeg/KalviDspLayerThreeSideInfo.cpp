#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"
#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <algorithm>

namespace vlk {

namespace {

constexpr std::uint32_t largestBigValues = 288;
constexpr int shortBlocks = 2;
constexpr int lowestRate = 8;

} // namespace

std::uint32_t LayerThreeSideInfo::parse(MpegBitReader& bits, int numChannels, bool lsf, bool ms,
                                        int sampleRateIndex)
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
            parseGranule(bits, granules[channel][granule], lsf, ms, sampleRateIndex);
            dataBits += granules[channel][granule].part2_3Length;
        }
    return dataBits;
}

void LayerThreeSideInfo::parseGranule(MpegBitReader& bits, GranuleInfo& granule, bool lsf, bool ms,
                                      int sampleRateIndex)
{
    granule.part2_3Length = bits.read(12);
    granule.bigValues = std::min(bits.read(9), largestBigValues);
    const std::uint32_t globalGain = bits.read(8);
    // 1/sqrt 2 of mid/side stereo sits two entries further, so that the matrix is a bare sum and difference.
    granule.pow2Gain = MpegDecoderTables::get().gainPow2 + 256 - globalGain + (ms ? 2 : 0);
    granule.scalefacCompress = bits.read(lsf ? 9 : 4);
    if (bits.readBit()) {
        granule.blockType = bits.read(2);
        granule.mixedBlockFlag = bits.read(1);
        granule.tableSelect[0] = bits.read(5);
        granule.tableSelect[1] = bits.read(5);
        granule.tableSelect[2] = 0;
        for (const float*& gain : granule.fullGain)
            gain = granule.pow2Gain + 8 * bits.read(3);
        if (!lsf)
            granule.region1Start = 18;
        else if (granule.blockType == shortBlocks)
            granule.region1Start = sampleRateIndex == lowestRate ? 36 : 18;
        else
            granule.region1Start = sampleRateIndex == lowestRate ? 54 : 27;
        granule.region2Start = 288;
    } else {
        for (std::uint32_t& table : granule.tableSelect)
            table = bits.read(5);
        const auto region0Count = static_cast<int>(bits.read(4));
        const auto region1Count = static_cast<int>(bits.read(3));
        const std::int16_t* starts = mpeg::layer3LongBandStarts[sampleRateIndex];
        granule.region1Start = starts[region0Count + 1] / 2;
        granule.region2Start = starts[std::min(region0Count + region1Count + 2, 22)] / 2;
        granule.blockType = granule.mixedBlockFlag = 0;
    }
    granule.preflag = lsf ? 0 : bits.read(1);
    granule.scalefacScale = bits.read(1);
    granule.count1TableSelect = bits.read(1);
}

} // namespace vlk
