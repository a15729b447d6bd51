#pragma once

#include <optional>
#include <string>

namespace vlk::velurhost {

// A duration of a script: "500ms", "2s", "1024" (samples) or "8v" (vectors), in whole vectors, rounded up.
std::optional<long> parseDurationInVectors(const std::string& text, double sampleRate, int vectorSize);

} // namespace vlk::velurhost
