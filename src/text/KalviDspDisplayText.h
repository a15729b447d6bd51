#pragma once

#include "text/KalviDspString.h"

#include <cstdint>
#include <ctime>

namespace vlk {

// "999 ms", "1.00 sec", "1 h 2 min 3 sec".
String getTimeText(double milliseconds);
String getTimeText(std::uint64_t numSamples, double sampleRate);
// Decimal scale in the units "Ko", "Mo", "Go".
String getFileSizeText(std::int64_t bytes);
// "44.1 kHz", "22050 Hz"; without the unit "44.1k", "22050".
String getSampleRateText(bool withUnit, float rate);

// Broken-down local time of a wall-clock time in milliseconds.
std::tm localTime(std::int64_t milliseconds);
// "14/11/2026 - 12h05m09s" with date, time and letters.
String getDateText(std::int64_t milliseconds, bool includeDate, bool includeTime, bool letters, bool weekday,
                   bool underscores);

} // namespace vlk
