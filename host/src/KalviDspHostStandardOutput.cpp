#include "KalviDspHostStandardOutput.h"

#include <cstdio>
#include <mutex>

namespace vlk::host {
namespace {

// Guards standard output and beforeLine.
std::mutex& outputLock()
{
    static std::mutex lock;
    return lock;
}

std::function<void()>& beforeLine()
{
    static std::function<void()> callback;
    return callback;
}

} // namespace

void StandardOutput::writeLine(const std::string& line)
{
    std::lock_guard<std::mutex> guard(outputLock());
    if (beforeLine())
        beforeLine()();
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void StandardOutput::setBeforeLine(std::function<void()> callback)
{
    std::lock_guard<std::mutex> guard(outputLock());
    beforeLine() = std::move(callback);
}

} // namespace vlk::host
