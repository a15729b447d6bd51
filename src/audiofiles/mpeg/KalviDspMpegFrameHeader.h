#pragma once

#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <cstdint>

namespace vlk {

// The fields of one MPEG audio frame header.
struct MpegFrameHeader
{
    // 1, 2 or 3; 0 until the first header was decoded.
    std::int32_t layer = 0;
    // Bytes of the frame behind its four header bytes; 0 for free format.
    std::int32_t frameSize = 0;
    std::int32_t numChannels = 0;
    // Stays -1: the layers always decode every channel.
    std::int32_t singleChannel = -1;
    // 1 for MPEG-2 and 2.5, the low sampling frequencies.
    std::int32_t lsf = 0;
    bool mpeg25 = false;
    bool crcFollows = false;
    std::int32_t bitrateIndex = 0;
    // 0 to 8 into mpeg::sampleRates.
    std::int32_t sampleRateIndex = 0;
    std::int32_t padding = 0;
    // 0 stereo, 1 joint stereo, 2 dual channel, 3 mono.
    std::int32_t mode = 0;
    std::int32_t modeExtension = 0;
    // Layer II: the subbands a frame carries, and the allocation table they follow.
    std::int32_t layer2SubbandLimit = 0;
    const mpeg::Layer2AllocationTable* layer2AllocationTable = nullptr;

    // Fills every field but the Layer II ones from a big-endian header word. A Layer I or II frame of bit
    // rate index 0 gets a size at or below 0, which no frame has: free format exists in Layer III only.
    void decode(std::uint32_t word);
    // For a Layer II frame: the allocation table and the subband limit.
    void selectLayer2AllocationTable();

    // Whether a word may be a header: sync, a layer, a legal bit rate, rate and emphasis.
    static bool isPossibleHeader(std::uint32_t word);
};

} // namespace vlk
