#pragma once

#include "ext.h"

#include <cxxabi.h>

namespace vlk {

// How a failure that reached the host boundary is told in the Max window: a user's error or a program's bug,
// and the format that shows a vlk::Exception's text.
struct FaultWords
{
    void (*report)(t_object* x, const char* format, ...);
    const char* exceptionFormat;
};

inline constexpr FaultWords errorWords{object_error, "%s"};
inline constexpr FaultWords bugWords{object_bug, "exception : %s"};

// Called inside a catch block: vlk::Exception, then out of memory, then anything else.
void ReportCaughtException(t_object* x, const FaultWords& words);

// Runs body so that no exception reaches the host; false after a failure was reported. A thread's forced
// unwind passes through.
template <typename Body> bool CallAtHostBoundary(t_object* x, const FaultWords& words, Body&& body)
{
    try {
        body();
        return true;
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (...) {
        ReportCaughtException(x, words);
        return false;
    }
}

} // namespace vlk
