#pragma once

#include <cstdint>

// The tables of the two MPEG audio standards that the decoder takes as they stand, generated from the
// standards' data by scripts/generate-mpeg-tables.py. Constant, so any thread may read them.
namespace vlk::mpeg {

// One allocation code of a Layer II subband: the quantisation steps (0: nothing transmitted), the bits of a
// codeword, and whether one codeword carries three samples.
struct Layer2Quantisation
{
    std::uint16_t steps;
    std::uint8_t codewordBits;
    std::uint8_t grouped;
};

struct Layer2AllocationTable
{
    // Subbands at and above it carry nothing.
    std::int32_t subbandLimit;
    // Bits of each subband's allocation field.
    std::uint8_t allocationBits[32];
    Layer2Quantisation codes[32][16];
};

// A Layer III Huffman code of pairs: the tree, and the bits that extend a value of 15 (0: none).
struct HuffmanTable
{
    const std::int16_t* tree;
    std::uint8_t linbits;
};

// kbit/s by [lsf][layer - 1][bit rate index]; 0 for free format (index 0) and the forbidden index 15.
extern const std::int16_t bitRates[2][3][16];
// Hz by the decoder's sample rate index: MPEG-1, MPEG-2, then MPEG-2.5, three each.
extern const std::int32_t sampleRates[9];
// MPEG-1 Layer II: the allocation table (0 to 3) by [sample rate index][channels - 1][bit rate index].
extern const std::uint8_t layer2TableSelection[3][2][16];
// Tables 0 to 3 of MPEG-1, and 4, the low sampling frequencies' table of MPEG-2.
extern const Layer2AllocationTable layer2AllocationTables[5];
// The synthesis window D[0] to D[511].
extern const double synthesisWindowD[512];

// Layer III scale factor band starts by sample rate index, in lines: 22 long bands of a granule and the end,
// 576; 13 short bands of a window and the end, 192.
extern const std::int16_t layer3LongBandStarts[9][23];
extern const std::int16_t layer3ShortBandStarts[9][14];
// Added to a long band's scale factor under preflag.
extern const std::uint8_t layer3Pretab[22];
// MPEG-1: the bits of the scale factors of the lower and of the upper bands by scalefac_compress.
extern const std::uint8_t layer3ScalefactorLengths[16][2];
// MPEG-2 and 2.5: how many scale factors each of the four lengths covers, by row and block shape (long,
// short, mixed).
extern const std::uint8_t layer3BandCounts[6][3][4];
// The alias reduction coefficients c0 to c7.
extern const double layer3AliasCoefficients[8];
// By table_select. A tree is walked from entry 0: a negative entry reads a bit and, on a 1, moves on by
// minus its value, on a 0 by one; an entry that is not negative is the leaf, x times 16 plus y. Tables 0, 4
// and 14 read nothing and give (0, 0).
extern const HuffmanTable layer3HuffmanTables[32];
// The two count1 codes, walked the same way; a leaf holds v, w, x and y from bit 3 down.
extern const std::int16_t* const layer3Count1Trees[2];

} // namespace vlk::mpeg
