#pragma once

#include "text/KalviDspString.h"

#include <cstdint>
#include <memory>

namespace Velur {

class MaxMspExternalDocumentation;

// The package's documentation catalogue: object names to type ids, type ids to documentation objects, and
// message names to their descriptions. Names are compared without regard to case. Built on first use by the
// thread that loads the class; not for other threads.
class MaxMspExternal
{
public:
    // One id per object of the package.
    enum class Type : std::uint32_t
    {
        velurSfplayTilda = 112
    };
    static constexpr std::uint32_t lastType = 151;

    // Fills the catalogue; a second call adds nothing.
    static void BuildExternalMap();
    // 0 for an unknown name, after a notice in the log; callers test the name first.
    static Type GetExternalType(const vlk::String& name);
    // Null for null, for an id above the last, and for ids without documentation.
    static std::unique_ptr<MaxMspExternalDocumentation> CreateDocumentation(const Type* type);
    // The texts of an object; empty for an unknown name or an id without documentation.
    static vlk::String GetExternalDescription(const vlk::String& name);
    static vlk::String GetExternalDigest(const vlk::String& name);
    static vlk::String GetExternalSeeAlso(const vlk::String& name);
    // Empty for an unknown message, after a notice on standard error.
    static vlk::String GetMethodDocumentation(const vlk::String& name);
};

} // namespace Velur
