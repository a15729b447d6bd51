#include "external/KalviDspHostBoundary.h"

#include "threads/KalviDspException.h"

#include <new>

namespace vlk {

void ReportCaughtException(t_object* x, const FaultWords& words)
{
    try {
        throw;
    } catch (const Exception& exception) {
        words.report(x, words.exceptionFormat, exception.what());
    } catch (const std::bad_alloc& exception) {
        words.report(x, "out of memory : %s", exception.what());
    } catch (...) {
        words.report(x, "unknown exception");
    }
}

} // namespace vlk
