#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"

#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <cmath>
#include <numbers>

namespace vlk {

namespace {

// The level factors of the quantiser rows, in row order.
constexpr double levelFactors[27] = {0.0,          -2.0 / 3.0,    2.0 / 3.0,    2.0 / 7.0,    2.0 / 15.0,
                                     2.0 / 31.0,   2.0 / 63.0,    2.0 / 127.0,  2.0 / 255.0,  2.0 / 511.0,
                                     2.0 / 1023.0, 2.0 / 2047.0,  2.0 / 4095.0, 2.0 / 8191.0, 2.0 / 16383.0,
                                     2.0 / 32767.0, 2.0 / 65535.0, -4.0 / 5.0,  -2.0 / 5.0,   2.0 / 5.0,
                                     4.0 / 5.0,    -8.0 / 9.0,    -4.0 / 9.0,   -2.0 / 9.0,   2.0 / 9.0,
                                     4.0 / 9.0,    8.0 / 9.0};

template <std::size_t numTriples, std::size_t numDigits>
void fillGroups(std::uint8_t (&groups)[numTriples][3], const std::uint8_t (&digits)[numDigits])
{
    std::size_t triple = 0;
    for (std::size_t third = 0; third < numDigits; ++third)
        for (std::size_t second = 0; second < numDigits; ++second)
            for (std::size_t first = 0; first < numDigits; ++first, ++triple) {
                groups[triple][0] = digits[first];
                groups[triple][1] = digits[second];
                groups[triple][2] = digits[third];
            }
    for (; triple < numTriples; ++triple)
        groups[triple][0] = groups[triple][1] = groups[triple][2] = 0;
}

} // namespace

MpegDecoderTables::MpegDecoderTables()
    : muls{}, groups3{}, groups5{}, groups9{}, dct{}, synthesisWindow{}, gainPow2{},
      ispow{}, aliasCs{}, aliasCa{}, imdctWindow{}, imdctWindowOdd{}, imdct36{}, imdct12{}, tan1{}, tan2{},
      tanRoot1{}, tanRoot2{}, pow1{}, pow2{}, powRoot1{}, powRoot2{}, longLimit{}, shortLimit{}, huffmanLookup{}, count1Lookup{}, bandMap{},
      normalScalefacLengths{}, intensityScalefacLengths{}
{
    for (int row = 0; row < 27; ++row) {
        for (int scale = 0; scale < 63; ++scale)
            muls[row][scale] = static_cast<float>(levelFactors[row] * std::pow(2.0, (3.0 - scale) / 3.0));
        muls[row][63] = 0.0f;
    }
    fillGroups(groups3, {1, 0, 2});
    fillGroups(groups5, {17, 18, 0, 19, 20});
    fillGroups(groups9, {21, 1, 22, 23, 0, 24, 25, 2, 26});
    for (int level = 0, size = 32; level < 5; ++level, size /= 2)
        for (int k = 0; k < size / 2; ++k)
            dct[level][k] = static_cast<float>(0.5 / std::cos(std::numbers::pi * (2 * k + 1) / (2.0 * size)));
    for (int i = 0; i < 512; ++i)
        synthesisWindow[i] = static_cast<float>(mpeg::synthesisWindowD[i]);
    buildLayer3Tables();
}

// Built when the library is loaded, before any thread runs.
const MpegDecoderTables MpegDecoderTables::tables;

} // namespace vlk
