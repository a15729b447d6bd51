#pragma once

#include "text/KalviDspString.h"

namespace vlk {

// Where reports go: 0 the system log (and standard error), 1 standard error, 2 standard output, anything
// else nowhere. The system never changes it.
enum class LogDestination
{
    systemLog = 0,
    standardError = 1,
    standardOutput = 2
};

// Writes one report, from any thread. Takes no lock: the system log's writes are atomic.
void logMessage(const String& text) noexcept;

} // namespace vlk
