// The conversion of an 80-bit extended float to a sample rate, on any ten bytes.
#include "audiofiles/KalviDspAiffSampleRate.h"

#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::array<std::uint8_t, 10> bytes{};
    std::memcpy(bytes.data(), data, std::min(size, bytes.size()));
    const std::optional<double> rate = vlk::convertAiffSampleRate(bytes);
    // Whole hertz below 2^30; 0 and 1 come from a mantissa without its top bit, which the factory refuses.
    if (rate && !(*rate >= 0.0 && *rate < 1073741824.0 && *rate == static_cast<double>(static_cast<long>(*rate))))
        std::abort();
    return 0;
}
