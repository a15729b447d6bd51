#pragma once

#include <functional>
#include <string>

namespace vlk::host {

// Whole lines on standard output from any thread, never interleaved, flushed one by one so that a reader
// sees the events in the order they happened.
class StandardOutput
{
public:
    static void writeLine(const std::string& line);
    // Called under the output lock before each line, e.g. to clear a progress bar from the terminal.
    static void setBeforeLine(std::function<void()> callback);
};

} // namespace vlk::host
