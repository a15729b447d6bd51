#include "audiofiles/KalviDspAiffSampleRate.h"

namespace vlk {

namespace {

// The exponent at which the top 32 bits of the mantissa, read as an integer, are the value itself: the bias
// 16383 plus 31. Under the leading 0x40, exponent bytes up to 28 shift right by 2 at least, which keeps rates
// below 2^30 Hz.
constexpr std::uint32_t exponentOfMantissaWord = 16414;
constexpr std::uint8_t largestExponentLowByte = 28;

} // namespace

std::optional<double> convertAiffSampleRate(const std::array<std::uint8_t, 10>& bytes)
{
    if (bytes[0] != 0x40 || bytes[1] > largestExponentLowByte)
        return std::nullopt;
    const std::uint32_t exponent = std::uint32_t{bytes[0]} << 8 | bytes[1];
    const std::uint32_t mantissa = std::uint32_t{bytes[2]} << 24 | std::uint32_t{bytes[3]} << 16 |
                                   std::uint32_t{bytes[4]} << 8 | bytes[5];
    return static_cast<double>(mantissa >> (exponentOfMantissaWord - exponent));
}

} // namespace vlk
