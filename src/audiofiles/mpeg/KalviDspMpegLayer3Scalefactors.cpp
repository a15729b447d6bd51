#include "audiofiles/mpeg/KalviDspMpegLayer3Scalefactors.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"
#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

namespace vlk {

namespace {

constexpr std::uint32_t shortBlocks = 2;

std::uint8_t* readValues(MpegBitReader& bits, std::uint8_t* to, int count, int length)
{
    for (int value = 0; value < count; ++value)
        *to++ = static_cast<std::uint8_t>(bits.read(length));
    return to;
}

} // namespace

std::int32_t readMpeg1Scalefactors(MpegBitReader& bits, const GranuleInfo& granule, Layer3Scalefactors& scalefactors)
{
    const int lower = mpeg::layer3ScalefactorLengths[granule.scalefacCompress][0];
    const int upper = mpeg::layer3ScalefactorLengths[granule.scalefacCompress][1];
    if (granule.blockType == shortBlocks) {
        const int lowerCount = granule.mixedBlockFlag != 0 ? 17 : 18;
        std::uint8_t* end = readValues(bits, scalefactors, lowerCount, lower);
        end = readValues(bits, end, 18, upper);
        end[0] = end[1] = end[2] = 0;
        return lowerCount * lower + 18 * upper;
    }
    if (granule.scfsi < 0) {
        readValues(bits, readValues(bits, scalefactors, 11, lower), 10, upper);
        scalefactors[21] = 0;
        return 11 * lower + 10 * upper;
    }
    constexpr int groupSizes[4] = {6, 5, 5, 5};
    std::int32_t numBits = 0;
    std::uint8_t* group = scalefactors;
    for (int index = 0; index < 4; ++index) {
        const int length = index < 2 ? lower : upper;
        if ((granule.scfsi & (8 >> index)) == 0) {
            readValues(bits, group, groupSizes[index], length);
            numBits += groupSizes[index] * length;
        }
        group += groupSizes[index];
    }
    scalefactors[21] = 0;
    return numBits;
}

std::int32_t readMpeg2Scalefactors(MpegBitReader& bits, GranuleInfo& granule, bool intensityRight,
                                   Layer3Scalefactors& scalefactors)
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    const std::uint32_t lengths = intensityRight ? tables.intensityScalefacLengths[granule.scalefacCompress / 2]
                                                 : tables.normalScalefacLengths[granule.scalefacCompress];
    granule.preflag = (lengths >> 15) & 1;
    int shape = 0;
    if (granule.blockType == shortBlocks)
        shape = granule.mixedBlockFlag != 0 ? 2 : 1;
    const std::uint8_t* counts = mpeg::layer3BandCounts[(lengths >> 12) & 7][shape];
    std::int32_t numBits = 0;
    std::uint8_t* end = scalefactors;
    for (int group = 0; group < 4; ++group) {
        const int length = static_cast<int>((lengths >> (3 * group)) & 7);
        end = readValues(bits, end, counts[group], length);
        numBits += counts[group] * length;
    }
    constexpr int tailZeros[3] = {1, 3, 5};
    for (int zero = 0; zero < tailZeros[shape]; ++zero)
        *end++ = 0;
    return numBits;
}

} // namespace vlk
