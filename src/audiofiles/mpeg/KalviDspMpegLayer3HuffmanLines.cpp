#include "audiofiles/mpeg/KalviDspMpegLayer3HuffmanLines.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"
#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <algorithm>
#include <bit>

namespace vlk {

namespace {

constexpr std::uint32_t shortBlocks = 2;
constexpr int longWindow = 3;

// Walks the band map a pair of lines at a time, with the gain of the band the pair lies in.
class BandCursor
{
public:
    BandCursor(const MpegBandMap& map, const GranuleInfo& granule, const Layer3Scalefactors& scalefactors)
        : map(map), granule(granule), scalefactor(scalefactors), shift(1 + static_cast<int>(granule.scalefacScale))
    {
    }

    // Moves on to the next band when this one has no pairs left; false when the map is done.
    bool nextPair() noexcept
    {
        if (pairsLeft == 0 && !beginBand())
            return false;
        --pairsLeft;
        return true;
    }

    // Where the next line goes, and how far the one after it lies.
    std::int32_t line = 0;
    std::int32_t step = 1;
    float gain = 0.0f;
    std::int32_t window = longWindow;
    std::int32_t band = 0;

private:
    bool beginBand() noexcept
    {
        if (entry == map.size)
            return false;
        const MpegBandMapEntry& next = map.entries[entry++];
        pairsLeft = next.pairs;
        line = next.start;
        window = next.window;
        band = next.band;
        if (window == longWindow) {
            step = 1;
            int scale = *scalefactor++;
            if (granule.preflag != 0)
                scale += mpeg::layer3Pretab[band];
            gain = granule.pow2Gain[scale << shift];
        } else {
            step = 3;
            gain = granule.fullGain[window][*scalefactor++ << shift];
        }
        return true;
    }

    const MpegBandMap& map;
    const GranuleInfo& granule;
    const std::uint8_t* scalefactor;
    const int shift;
    std::int32_t entry = 0;
    std::int32_t pairsLeft = 0;
};

constexpr int longestCount1Code = 6;

// A tree walk, its first bits by lookup: the leaf, with the bits it took off left.
std::int16_t decodePair(MpegBitReader& bits, const std::int16_t* tree, const MpegHuffmanLookup* lookup,
                        std::int64_t& left) noexcept
{
    const MpegHuffmanLookup& first = lookup[bits.peek(MpegDecoderTables::huffmanLookupBits)];
    if (first.bits >= 0) {
        bits.skip(first.bits);
        left -= first.bits;
        return first.value;
    }
    bits.skip(-first.bits);
    left += first.bits;
    std::int32_t node = first.value;
    std::int16_t entry;
    while ((entry = tree[node]) < 0) {
        node += bits.readBit() ? -entry : 1;
        --left;
    }
    return entry;
}

float withSign(float magnitude, bool negative) noexcept
{
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(magnitude) ^ (static_cast<std::uint32_t>(negative) << 31));
}

} // namespace

bool decodeHuffmanLines(MpegBitReader& bits, GranuleInfo& granule, const Layer3Scalefactors& scalefactors,
                        std::int32_t bitsLeft, int sampleRateIndex, float* lines)
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    std::fill(lines, lines + 576, 0.0f);
    std::int64_t left = bitsLeft;
    const auto bigValues = static_cast<std::int32_t>(granule.bigValues);
    const std::int32_t regionPairs[3] = {
        std::clamp(granule.region1Start, 0, bigValues),
        std::clamp(granule.region2Start - granule.region1Start, 0, std::max(bigValues - granule.region1Start, 0)),
        std::max(bigValues - std::max(granule.region2Start, granule.region1Start), 0)};

    const bool shortMap = granule.blockType == shortBlocks;
    const bool mixed = shortMap && granule.mixedBlockFlag != 0;
    const MpegBandMap& map = tables.bandMap[sampleRateIndex][shortMap ? (mixed ? 0 : 1) : 2];
    BandCursor band(map, granule, scalefactors);
    // The last band with signal per window, the long bands as window 3; a mixed block's long bands cover the
    // short bands below 3.
    std::int32_t lastBand[4] = {-1, -1, -1, -1};
    if (mixed)
        lastBand[0] = lastBand[1] = lastBand[2] = 2;

    bool mapDone = false;
    for (int region = 0; region < 3 && !mapDone; ++region) {
        const mpeg::HuffmanTable& table = mpeg::layer3HuffmanTables[granule.tableSelect[region]];
        const MpegHuffmanLookup* lookup = tables.huffmanLookup[granule.tableSelect[region]];
        for (std::int32_t pair = regionPairs[region]; pair > 0; --pair) {
            if (!band.nextPair()) {
                mapDone = true;
                break;
            }
            const std::int16_t entry = decodePair(bits, table.tree, lookup, left);
            for (std::uint32_t value : {static_cast<std::uint32_t>(entry) >> 4, static_cast<std::uint32_t>(entry) & 15u}) {
                if (value != 0) {
                    if (value == 15 && table.linbits != 0) {
                        value += bits.read(table.linbits);
                        left -= table.linbits;
                    }
                    lines[band.line] = withSign(tables.ispow[value] * band.gain, bits.readBit());
                    --left;
                    lastBand[band.window] = band.band;
                }
                band.line += band.step;
            }
        }
    }

    const std::int16_t* count1Tree = mpeg::layer3Count1Trees[granule.count1TableSelect];
    const MpegHuffmanLookup* count1Lookup = tables.count1Lookup[granule.count1TableSelect];
    for (std::int32_t quads = (288 - bigValues) / 2; quads > 0 && left > 0 && !mapDone; --quads) {
        std::int16_t entry;
        if (left >= longestCount1Code) {
            entry = decodePair(bits, count1Tree, count1Lookup, left);
        } else {
            // The walk ends where the granule's bits do, be it inside a codeword.
            std::int32_t node = 0;
            while ((entry = count1Tree[node]) < 0 && left >= 1) {
                node += bits.readBit() ? -entry : 1;
                --left;
            }
            if (entry < 0)
                break;
        }
        for (int value = 0; value < 4; ++value) {
            if (value % 2 == 0 && !band.nextPair()) {
                mapDone = true;
                break;
            }
            if ((entry & (8 >> value)) != 0) {
                if (left <= 0) {
                    mapDone = true;
                    break;
                }
                lines[band.line] = withSign(band.gain, bits.readBit());
                --left;
                lastBand[band.window] = band.band;
            }
            band.line += band.step;
        }
    }

    if (shortMap) {
        const std::int32_t largest = std::max({lastBand[0], lastBand[1], lastBand[2]});
        for (int window = 0; window < 3; ++window)
            granule.maxBand[window] = lastBand[window] + 1;
        granule.maxBandLong = lastBand[longWindow] + 1;
        granule.maxSubband = largest + 1 > 0 ? tables.shortLimit[sampleRateIndex][largest + 1]
                                             : tables.longLimit[sampleRateIndex][granule.maxBandLong];
    } else {
        granule.maxBandLong = lastBand[longWindow] + 1;
        granule.maxSubband = tables.longLimit[sampleRateIndex][granule.maxBandLong];
    }

    if (left > 0)
        bits.skip(left);
    return left >= 0;
}

} // namespace vlk
