#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

namespace vlk {

// A table of names and values in the order they were first set.
class StringPairArray
{
public:
    explicit StringPairArray(bool ignoreCase = true) : ignoreCase(ignoreCase) {}

    // Replaces the value of key when it is present under ignoreCase, otherwise appends the pair.
    void set(const String& key, const String& value);

    // Parallel arrays, always of the same length: change them through set.
    Vector<String> keys;
    Vector<String> values;
    bool ignoreCase;
};

} // namespace vlk
