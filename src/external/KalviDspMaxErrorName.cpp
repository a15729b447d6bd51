#include "external/KalviDspMaxErrorName.h"

namespace vlk {
namespace {

struct ErrorName
{
    t_max_err code;
    const char* name;
};

constexpr ErrorName errorNames[] = {
    {MAX_ERR_NONE, "MAX_ERR_NONE"},
    {MAX_ERR_GENERIC, "MAX_ERR_GENERIC"},
    {MAX_ERR_INVALID_PTR, "MAX_ERR_INVALID_PTR"},
    {MAX_ERR_DUPLICATE, "MAX_ERR_DUPLICATE"},
    {MAX_ERR_OUT_OF_MEM, "MAX_ERR_OUT_OF_MEM"},
};

} // namespace

const char* GetMaxErrorName(t_max_err error)
{
    for (const ErrorName& entry : errorNames)
        if (entry.code == error)
            return entry.name;
    return "unknown MAX_ERR";
}

} // namespace vlk
