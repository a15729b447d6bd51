#pragma once

#include "text/KalviDspString.h"

// Escape sequences of a terminal: the library's vocabulary, which the object itself never prints.
namespace vlk::Terminal {

inline const String escape = "\x1b";

inline const String foregroundBlack = escape + "[30m";
inline const String foregroundRed = escape + "[31m";
inline const String foregroundGreen = escape + "[32m";
inline const String foregroundYellow = escape + "[33m";
inline const String foregroundBlue = escape + "[34m";
inline const String foregroundMagenta = escape + "[35m";
inline const String foregroundCyan = escape + "[36m";
inline const String foregroundWhite = escape + "[37m";

inline const String backgroundBlack = escape + "[40m";
inline const String backgroundRed = escape + "[41m";
inline const String backgroundGreen = escape + "[42m";
inline const String backgroundYellow = escape + "[43m";
inline const String backgroundBlue = escape + "[44m";
inline const String backgroundMagenta = escape + "[45m";
inline const String backgroundCyan = escape + "[46m";
inline const String backgroundWhite = escape + "[47m";

inline const String reset = escape + "[0m";
inline const String bold = escape + "[1m";
// Without its final letter, as it always was.
inline const String underline = escape + "[4";
inline const String blink = escape + "[5m";
inline const String reverse = escape + "[7m";
inline const String clearLine = "\n" + escape + "[F" + escape + "[J";

} // namespace vlk::Terminal
