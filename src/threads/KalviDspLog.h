#pragma once

#include "text/KalviDspString.h"

namespace vlk {

// Where reports go: 0 the system log (and standard error), 1 standard error, 2 standard output, anything
// else nowhere. The system itself never changes it.
enum class LogDestination
{
    systemLog = 0,
    standardError = 1,
    standardOutput = 2,
    nowhere = 3
};

// For programs that build exceptions by the million, such as the fuzz targets: a report to the system log
// is a blocking call. Set it before any thread that reports runs.
void setLogDestination(LogDestination destination) noexcept;

// Writes one report, from any thread. Takes no lock: the system log's writes are atomic.
void logMessage(const String& text) noexcept;

} // namespace vlk
