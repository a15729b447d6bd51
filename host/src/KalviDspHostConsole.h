#pragma once

#include "ext_mess.h"

#include <functional>
#include <mutex>
#include <string>

namespace vlk::host {

// The Max window. Each line goes to the sink, by default standard output as "post: CLASS: TEXT",
// "error: ...", "warning: ...", "bug: ..." (without "CLASS: " for a null object). Any thread may write.
class Console
{
public:
    enum class Kind
    {
        post,
        error,
        warning,
        bug
    };

    struct Line
    {
        Kind kind;
        // Empty for lines without an object.
        std::string className;
        std::string text;

        std::string format() const;
    };

    using Sink = std::function<void(const Line&)>;

    static Console& instance();

    void write(Kind kind, const t_object* x, const std::string& text);
    // An empty sink restores standard output.
    void setSink(Sink sink);

private:
    // Guards sink; held while the sink runs, so lines reach it one at a time.
    std::recursive_mutex lock;
    Sink sink;
};

} // namespace vlk::host
