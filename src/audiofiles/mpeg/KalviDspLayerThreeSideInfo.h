#pragma once

#include "audiofiles/mpeg/KalviDspMpegBitReader.h"

#include <cstdint>

namespace vlk {

// The side information of one granule of one channel, with what decoding derives from it.
struct GranuleInfo
{
    // Scale factor sharing of the second granule (MPEG-1); -1 in the first.
    std::int32_t scfsi = -1;
    std::uint32_t part2_3Length = 0;
    // Held at 288.
    std::uint32_t bigValues = 0;
    std::uint32_t scalefacCompress = 0;
    // 0 long, 1 start, 2 short, 3 stop.
    std::uint32_t blockType = 0;
    std::uint32_t mixedBlockFlag = 0;
    std::uint32_t tableSelect[3] = {0, 0, 0};
    // Per short window, one past the last band with signal; then the same of the long bands, and the
    // subbands that carry any signal. Set by the Huffman pass.
    std::int32_t maxBand[3] = {0, 0, 0};
    std::int32_t maxBandLong = 0;
    std::int32_t maxSubband = 0;
    // Where the second and third Huffman regions begin, in pairs of lines.
    std::int32_t region1Start = 0;
    std::int32_t region2Start = 0;
    std::uint32_t preflag = 0;
    std::uint32_t scalefacScale = 0;
    std::uint32_t count1TableSelect = 0;
    // The requantisation gain of each short window and of long bands, indexed by the shifted scale factor.
    const float* fullGain[3] = {nullptr, nullptr, nullptr};
    const float* pow2Gain = nullptr;
};

// The side information of a Layer III frame.
struct LayerThreeSideInfo
{
    // By channel, then granule: MPEG-1 frames have two granules, MPEG-2 and 2.5 frames one.
    GranuleInfo granules[2][2];
    std::uint32_t mainDataBegin = 0;
    std::uint32_t privateBits = 0;

    // Reads the side information of a frame of numChannels channels; lsf selects the MPEG-2 form, ms tells
    // mid/side stereo, whose 1/sqrt 2 goes into the gains. Returns the sum of the part2_3_length fields of
    // all granules and channels: the bits of the main data.
    std::uint32_t parse(MpegBitReader& bits, int numChannels, bool lsf, bool ms, int sampleRateIndex);

private:
    void parseGranule(MpegBitReader& bits, GranuleInfo& granule, bool lsf, bool ms, int sampleRateIndex);
};

} // namespace vlk
