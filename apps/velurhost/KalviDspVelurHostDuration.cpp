#include "KalviDspVelurHostDuration.h"

#include <charconv>
#include <cmath>

namespace vlk::velurhost {

std::optional<long> parseDurationInVectors(const std::string& text, double sampleRate, int vectorSize)
{
    double value = 0;
    auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || value < 0 || !std::isfinite(value))
        return std::nullopt;
    const std::string unit(result.ptr, text.data() + text.size());
    double samples = 0;
    if (unit == "ms")
        samples = value * sampleRate / 1000.0;
    else if (unit == "s")
        samples = value * sampleRate;
    else if (unit.empty() || unit == "samples")
        samples = value;
    else if (unit == "v")
        samples = value * vectorSize;
    else
        return std::nullopt;
    // A sample's worth of rounding error in the unit's conversion does not add a vector.
    const double vectors = std::ceil(samples / vectorSize - 1e-9);
    if (vectors > 1e12)
        return std::nullopt;
    return static_cast<long>(vectors);
}

} // namespace vlk::velurhost
