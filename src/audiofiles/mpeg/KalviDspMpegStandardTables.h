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

} // namespace vlk::mpeg
