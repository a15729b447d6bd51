#include "audiofiles/mpeg/KalviDspMpegFrameHeader.h"

namespace vlk {

namespace {

std::uint32_t bits(std::uint32_t word, int lowest, int count)
{
    return (word >> lowest) & ((1u << count) - 1);
}

constexpr int layer2TableOfLowSamplingFrequencies = 4;

} // namespace

void MpegFrameHeader::decode(std::uint32_t word)
{
    mpeg25 = bits(word, 20, 1) == 0;
    lsf = mpeg25 ? 1 : static_cast<std::int32_t>(bits(word, 19, 1) ^ 1);
    layer = 4 - static_cast<std::int32_t>(bits(word, 17, 2));
    crcFollows = bits(word, 16, 1) == 0;
    bitrateIndex = static_cast<std::int32_t>(bits(word, 12, 4));
    padding = static_cast<std::int32_t>(bits(word, 9, 1));
    mode = static_cast<std::int32_t>(bits(word, 6, 2));
    modeExtension = static_cast<std::int32_t>(bits(word, 4, 2));
    sampleRateIndex = static_cast<std::int32_t>(bits(word, 10, 2)) + (mpeg25 ? 6 : 3 * lsf);
    numChannels = mode == 3 ? 1 : 2;

    const std::int32_t bitRate = mpeg::bitRates[lsf][layer - 1][bitrateIndex];
    const std::int32_t sampleRate = mpeg::sampleRates[sampleRateIndex];
    switch (layer) {
    case 1:
        frameSize = (12000 * bitRate / sampleRate + padding) * 4 - 4;
        break;
    case 2:
        frameSize = 144000 * bitRate / sampleRate + padding - 4;
        break;
    default:
        frameSize = bitrateIndex == 0 ? 0 : 144000 * bitRate / (sampleRate << lsf) + padding - 4;
        break;
    }
}

void MpegFrameHeader::selectLayer2AllocationTable()
{
    int table = layer2TableOfLowSamplingFrequencies;
    if (lsf == 0)
        table = mpeg::layer2TableSelection[sampleRateIndex][numChannels - 1][bitrateIndex];
    layer2AllocationTable = &mpeg::layer2AllocationTables[table];
    layer2SubbandLimit = layer2AllocationTable->subbandLimit;
}

bool MpegFrameHeader::isPossibleHeader(std::uint32_t word)
{
    return word >= 0xFFE00000u && bits(word, 17, 2) != 0 && bits(word, 0, 2) != 2 && bits(word, 12, 4) != 15 &&
           bits(word, 10, 2) != 3;
}

} // namespace vlk
