#pragma once

#include <array>
#include <cstdint>

namespace vlk {

// One run of a Layer III granule's lines: pairs of lines from start on, at a stride of 1 in a long band and
// 3 in a short one, whose window is 0 to 2, or 3 for a long band.
struct MpegBandMapEntry
{
    std::uint16_t pairs;
    std::uint16_t start;
    std::uint8_t window;
    std::uint8_t band;
};

// What the first bits of a Huffman code tell: a leaf and the bits of its codeword (bits not negative), or the
// tree's node after all the lookup's bits, when the codeword is longer (bits = minus their number).
struct MpegHuffmanLookup
{
    std::int16_t value;
    std::int16_t bits;
};

// The order in which a granule's Huffman values meet its bands: one entry a band, and a band for each
// window of a short one, the window running fastest.
struct MpegBandMap
{
    MpegBandMapEntry entries[39];
    std::int32_t size;
};

// The decoder's derived tables, computed once when the program is loaded, before any thread runs, and only
// read after that: no transcendental function runs while decoding.
struct MpegDecoderTables
{
    // Layers I and II: row k holds the k-th level factor times the 63 scale factors 2^(1 - j/3); entry 63
    // is 0, so that an out-of-range scale index gives silence.
    float muls[27][64];
    // Layer II grouping: three muls rows per codeword, the first sample varying fastest; one triple of zeros
    // behind the last, which a damaged code is held at.
    std::uint8_t groups3[28][3];
    std::uint8_t groups5[126][3];
    std::uint8_t groups9[730][3];
    // The fast DCT's factors 0.5 / cos(pi (2k + 1) / 2N) for N = 32, 16, 8, 4, 2.
    float dct[5][16];
    // The synthesis window D[0..511] as floats.
    float synthesisWindow[512];


    // Layer III. gainPow2[e] = 2^-((e - 46) / 4). 378 entries reach the largest index of a MPEG-1 stream;
    // the 5-bit scale factors of MPEG-2 intensity stereo reach 438.
    float gainPow2[439];
    // ispow[i] = i^(4/3), up to the largest value with 13 linbits.
    float ispow[8207];
    float aliasCs[8];
    float aliasCa[8];
    // The windows by block type, times the factor 1 / (2 cos) by which the IMDCTs below fall short of the
    // transform; the odd subbands' copy has every odd entry negated, which turns their frequencies upside down.
    float imdctWindow[4][36];
    float imdctWindowOdd[4][36];
    // The long IMDCT's 18 distinct outputs (0 to 8 and 18 to 26) of its 18 inputs: [input][output], each row
    // padded to 20, whole vectors of 4.
    float imdct36[18][20];
    // The short IMDCT's 6 distinct outputs (0 to 2 and 6 to 8) of its 6 inputs: [input][output].
    float imdct12[6][6];
    // Intensity stereo ratios: MPEG-1 by position, MPEG-2 by the scale's parity and position, each also times
    // sqrt 2 for mid/side frames. The MPEG-2 tables run to 32 positions, all that a 5-bit factor can hold.
    float tan1[16];
    float tan2[16];
    float tanRoot1[16];
    float tanRoot2[16];
    float pow1[2][32];
    float pow2[2][32];
    float powRoot1[2][32];
    float powRoot2[2][32];
    // The subbands that a band reaches, by sample rate index: up to each long band, and each short band.
    std::int32_t longLimit[9][23];
    std::int32_t shortLimit[9][14];
    // The first 8 bits of each Huffman code by table_select, and of the two count1 codes.
    static constexpr int huffmanLookupBits = 8;
    MpegHuffmanLookup huffmanLookup[32][1 << huffmanLookupBits];
    MpegHuffmanLookup count1Lookup[2][1 << huffmanLookupBits];
    // By sample rate index: mixed, short, long.
    MpegBandMap bandMap[9][3];
    // MPEG-2 scale factor lengths by scalefac_compress: four 3-bit lengths from bit 0 up, the row of band
    // counts in bits 12 to 14, and preflag in bit 15; the right channel of intensity frames by half of it.
    std::uint16_t normalScalefacLengths[512];
    std::uint16_t intensityScalefacLengths[256];

    static const MpegDecoderTables& get() noexcept { return tables; }

private:
    MpegDecoderTables();
    void buildLayer3Tables();
    void buildImdctTables();
    void buildIntensityTables();
    void buildBandTables();
    void buildHuffmanLookups();
    void buildScalefacLengths();

    static const MpegDecoderTables tables;
};

} // namespace vlk
