#pragma once

#include "text/KalviDspString.h"

#include <cstdint>
#include <cxxabi.h>
#include <exception>
#include <new>
#include <source_location>

namespace vlk {

// The one failure type of the library. Building one writes its report to the log at once, whether or not
// anybody catches it, so a failure that crosses a translation block is logged once per block.
class Exception : public std::exception
{
public:
    Exception(const String& message, const char* sourcePath, std::uint64_t line, bool verbose = true,
              bool exitAfter = false);
    Exception(const std::exception& cause, const char* sourcePath, std::uint64_t line, bool verbose = true,
              bool exitAfter = false);
    // The text travels; file and line become those of the new throw site.
    Exception(const Exception& cause, const char* sourcePath, std::uint64_t line, bool verbose = true,
              bool exitAfter = false);
    Exception(const Exception&) = default;
    ~Exception() override = default;

    const char* what() const noexcept override { return message.c_str(); }

    // Last component of the throw site's source path; empty when the site gave none.
    String file;
    String message;
    std::uint64_t line = 0;

protected:
    void report(bool verbose, bool exitAfter) noexcept;
};

class UnknownException : public Exception
{
public:
    UnknownException(const char* sourcePath, std::uint64_t line, bool verbose = true, bool exitAfter = false);
    ~UnknownException() override = default;
};

// The report that an exception writes to the log, without the line feed that logMessage adds.
String getExceptionReport(const String& file, const String& message, std::uint64_t line, bool verbose);

// Runs body so that nothing but a vlk::Exception leaves it: a vlk::Exception is rethrown with this
// block's own file and line, a standard exception is wrapped, anything else becomes an UnknownException.
template <typename Body>
decltype(auto) translateExceptions(Body&& body, std::source_location where = std::source_location::current())
{
    try {
        return body();
    } catch (abi::__forced_unwind&) {
        // A cancelled thread unwinds through here: that is no failure, and it must go on unwinding.
        throw;
    } catch (const Exception& exception) {
        throw Exception(exception, where.file_name(), where.line());
    } catch (const std::exception& exception) {
        throw Exception(exception, where.file_name(), where.line());
    } catch (...) {
        throw UnknownException(where.file_name(), where.line());
    }
}

} // namespace vlk
