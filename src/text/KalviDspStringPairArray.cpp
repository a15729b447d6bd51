#include "text/KalviDspStringPairArray.h"

#include "text/KalviDspStringList.h"

namespace vlk {

void StringPairArray::set(const String& key, const String& value)
{
    const int index = indexOf(keys, key, ignoreCase);
    if (index >= 0) {
        values[static_cast<std::size_t>(index)] = value;
        return;
    }
    keys.push_back(key);
    values.push_back(value);
}

} // namespace vlk
