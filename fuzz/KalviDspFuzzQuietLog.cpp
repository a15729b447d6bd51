// Linked into every fuzz target: each refusal builds an exception, which reports itself, and a million
// reports to the system log would cost more than the parsing they follow.
#include "threads/KalviDspLog.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    vlk::setLogDestination(vlk::LogDestination::nowhere);
    return 0;
}
