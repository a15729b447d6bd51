#include "threads/KalviDspLog.h"

#include <iostream>
#include <pthread.h>
#include <sstream>
#include <syslog.h>

namespace vlk {

namespace {

int logDestination = static_cast<int>(LogDestination::systemLog);

// LOG_PID | LOG_CONS | LOG_NDELAY | LOG_PERROR: the report reaches standard error too.
constexpr int logOptions = 43;
// Up to and including LOG_NOTICE.
constexpr int logMask = 63;

} // namespace

void setLogDestination(LogDestination destination) noexcept
{
    logDestination = static_cast<int>(destination);
}

void logMessage(const String& text) noexcept
{
    // The system log's calls are cancellation points, and this function may not unwind: a thread cancelled
    // during a report is cancelled at its next cancellation point instead.
    int previousCancelState = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previousCancelState);

    std::ostringstream stream;
    stream << text << '\n';
    stream.flush();
    const std::string report = stream.str();

    switch (logDestination) {
    case static_cast<int>(LogDestination::systemLog):
        // Opened and closed for each report, so a report needs no start-up step on any thread.
        openlog("vlk", logOptions, LOG_USER);
        setlogmask(logMask);
        syslog(LOG_NOTICE, "%s", report.c_str());
        closelog();
        break;
    case static_cast<int>(LogDestination::standardError):
        std::cerr << report << std::endl;
        break;
    case static_cast<int>(LogDestination::standardOutput):
        std::cout << report << std::endl;
        break;
    default:
        break;
    }
    pthread_setcancelstate(previousCancelState, nullptr);
}

} // namespace vlk
