#include "threads/KalviDspException.h"

#include "threads/KalviDspLog.h"

#include <cstdlib>

namespace vlk {

namespace {

String lastPathComponent(const char* sourcePath)
{
    const String path(sourcePath != nullptr ? sourcePath : "");
    const auto slash = path.find_last_of('/');
    return slash == String::npos ? path : String(path.substr(slash + 1));
}

} // namespace

String getExceptionReport(const String& file, const String& message, std::uint64_t line, bool verbose)
{
    if (!verbose)
        return "Exception occured : " + message + "\n\n";
    return "Exception occured in file \"" + file + "\" (line " + std::to_string(line) + "): \n" + message +
           "\n\n";
}

Exception::Exception(const String& message, const char* sourcePath, std::uint64_t line, bool verbose,
                     bool exitAfter)
    : file(lastPathComponent(sourcePath)), message(message), line(line)
{
    report(verbose, exitAfter);
}

Exception::Exception(const std::exception& cause, const char* sourcePath, std::uint64_t line, bool verbose,
                     bool exitAfter)
    : Exception(String(cause.what()), sourcePath, line, verbose, exitAfter)
{
}

Exception::Exception(const Exception& cause, const char* sourcePath, std::uint64_t line, bool verbose,
                     bool exitAfter)
    : Exception(cause.message, sourcePath, line, verbose, exitAfter)
{
}

void Exception::report(bool verbose, bool exitAfter) noexcept
{
    logMessage(getExceptionReport(file, message, line, verbose));
    if (exitAfter)
        std::exit(1);
}

UnknownException::UnknownException(const char* sourcePath, std::uint64_t line, bool verbose, bool exitAfter)
    : Exception(String("unknown exception"), sourcePath, line, verbose, exitAfter)
{
}

} // namespace vlk
