#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace vlk {

// The sample rate of an AIFF COMM chunk from its ten bytes of 80-bit extended float, as stored (big-endian).
// No general conversion: only exponents for 2 Hz up to just below 2^30 Hz are taken, from the top 32 bits of
// the mantissa, and any fraction of a hertz is dropped (11025.5 gives 11025). Empty outside that range,
// negative rates included.
std::optional<double> convertAiffSampleRate(const std::array<std::uint8_t, 10>& bytes);

} // namespace vlk
