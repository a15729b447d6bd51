#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

namespace vlk {

// An empty text gives no token, even with keepEmpty; without it empty tokens are dropped.
Vector<String> split(const String& text, const String& delimiter, bool keepEmpty = false);
Vector<String> split(const String& text, char delimiter, bool keepEmpty = false);
// The reverse of split: no separator behind the last.
String join(const Vector<String>& strings, const String& separator);
bool contains(const Vector<String>& strings, const String& text, bool ignoreCase = false);
// -1 when absent.
int indexOf(const Vector<String>& strings, const String& text, bool ignoreCase = false);

} // namespace vlk
