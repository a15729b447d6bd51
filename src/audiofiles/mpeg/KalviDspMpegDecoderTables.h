#pragma once

#include <array>
#include <cstdint>

namespace vlk {

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
    // The synthesis window D[0..511] as floats, and by output sample: row j holds D[j + 32a] for the ages
    // a = 0 to 15.
    float synthesisWindow[512];
    float synthesisWindowByOutput[32][16];

    static const MpegDecoderTables& get();

private:
    MpegDecoderTables();

    static const MpegDecoderTables tables;
};

} // namespace vlk
