#pragma once

#include <stdexcept>

namespace vlk::velurhost {

// A line of a script that cannot be carried out: an unknown directive or class, a failed creation, a bad
// argument. A script stops at the first one, with exit status 1.
class ScriptError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace vlk::velurhost
