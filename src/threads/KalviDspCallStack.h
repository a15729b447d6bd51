#pragma once

#include "text/KalviDspString.h"

namespace vlk {

template <typename T> class Vector;

// Up to maxFrames frames of the calling thread, the two outermost dropped. A line that backtrace_symbols
// does not write as six tokens gives an empty entry.
Vector<String> getCallStack(int maxFrames, bool namesOnly);

// Names the code that called the caller. Only four frames are taken, so fewer than four entries ever come
// back and the name is always empty: the out-of-memory texts end with "in " and nothing behind it.
String getCallerName();

} // namespace vlk
