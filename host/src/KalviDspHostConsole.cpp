#include "KalviDspHostConsole.h"

#include "KalviDspHostStandardOutput.h"

#include "ext_obex.h"
#include "ext_post.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

namespace vlk::host {

std::string Console::Line::format() const
{
    static const char* const prefixes[] = {"post: ", "error: ", "warning: ", "bug: "};
    std::string line = prefixes[static_cast<int>(kind)];
    if (!className.empty())
        line += className + ": ";
    return line + text;
}

Console& Console::instance()
{
    static Console console;
    return console;
}

void Console::write(Kind kind, const t_object* x, const std::string& text)
{
    t_symbol* name = x == nullptr ? nullptr : object_classname(const_cast<t_object*>(x));
    Line line{kind, name == nullptr ? std::string() : std::string(name->s_name), text};
    std::lock_guard<std::recursive_mutex> guard(lock);
    if (sink)
        sink(line);
    else
        StandardOutput::writeLine(line.format());
}

void Console::setSink(Sink newSink)
{
    std::lock_guard<std::recursive_mutex> guard(lock);
    sink = std::move(newSink);
}

} // namespace vlk::host

namespace {

std::string formatText(const char* format, va_list arguments)
{
    if (format == nullptr)
        return "";
    va_list copy;
    va_copy(copy, arguments);
    int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length <= 0)
        return "";
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

} // namespace

namespace {

void writeFormatted(vlk::host::Console::Kind kind, const t_object* x, const char* format, va_list arguments)
{
    vlk::host::Console::instance().write(kind, x, formatText(format, arguments));
}

} // namespace

void post(const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    writeFormatted(vlk::host::Console::Kind::post, nullptr, fmt, arguments);
    va_end(arguments);
}

// The system console of this host is standard error.
void cpost(const char* fmt, ...)
{
    va_list arguments;
    va_start(arguments, fmt);
    std::string text = formatText(fmt, arguments);
    va_end(arguments);
    std::fprintf(stderr, "%s\n", text.c_str());
}

void object_post(t_object* x, const char* s, ...)
{
    va_list arguments;
    va_start(arguments, s);
    writeFormatted(vlk::host::Console::Kind::post, x, s, arguments);
    va_end(arguments);
}

void object_error(t_object* x, const char* s, ...)
{
    va_list arguments;
    va_start(arguments, s);
    writeFormatted(vlk::host::Console::Kind::error, x, s, arguments);
    va_end(arguments);
}

void object_warn(t_object* x, const char* s, ...)
{
    va_list arguments;
    va_start(arguments, s);
    writeFormatted(vlk::host::Console::Kind::warning, x, s, arguments);
    va_end(arguments);
}

void object_bug(t_object* x, const char* s, ...)
{
    va_list arguments;
    va_start(arguments, s);
    writeFormatted(vlk::host::Console::Kind::bug, x, s, arguments);
    va_end(arguments);
}

// There is no patcher to show a banner in: an error line says it all.
void object_error_obtrusive(t_object* x, const char* s, ...)
{
    va_list arguments;
    va_start(arguments, s);
    writeFormatted(vlk::host::Console::Kind::error, x, s, arguments);
    va_end(arguments);
}
