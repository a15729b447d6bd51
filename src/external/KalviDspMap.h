#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <cstring>
#include <strings.h>

namespace Velur {

// Keys and values in two parallel lists, in the order of insertion. No hashing: a key is found by a linear
// scan, which is all the few hundred rows of the catalogue need.
template <typename Value> class Map
{
public:
    explicit Map(bool ignoreCase = false) : ignoreCase(ignoreCase) {}

    bool ContainsKey(const vlk::String& key) const { return IndexOf(key) >= 0; }
    // -1 when absent.
    int IndexOf(const vlk::String& key) const
    {
        for (std::size_t i = 0; i < keys.size(); ++i)
            if ((ignoreCase ? strcasecmp(keys[i].c_str(), key.c_str())
                            : std::strcmp(keys[i].c_str(), key.c_str())) == 0)
                return static_cast<int>(i);
        return -1;
    }
    // A new key is appended with a default value first.
    Value& operator[](const vlk::String& key)
    {
        int index = IndexOf(key);
        if (index < 0) {
            keys.push_back(key);
            values.push_back(Value{});
            index = static_cast<int>(keys.size()) - 1;
        }
        return values[static_cast<std::size_t>(index)];
    }
    const Value& getValue(int index) const { return values[static_cast<std::size_t>(index)]; }
    std::size_t size() const noexcept { return keys.size(); }
    bool isEmpty() const noexcept { return keys.empty(); }

private:
    bool ignoreCase;
    vlk::Vector<vlk::String> keys;
    vlk::Vector<Value> values;
};

} // namespace Velur
