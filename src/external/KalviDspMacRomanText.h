#pragma once

#include "text/KalviDspString.h"

#include <optional>

namespace vlk {

// Reads text as Mac Roman and gives it in UTF-8, or nothing when the result would not fit maxBytes bytes
// with its terminating zero, or when the system has no such conversion.
std::optional<String> macRomanToUtf8(const String& text, std::size_t maxBytes);

} // namespace vlk
