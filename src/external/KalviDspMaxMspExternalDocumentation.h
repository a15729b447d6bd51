#pragma once

#include "external/KalviDspMaxMspExternal.h"
#include "text/KalviDspString.h"

namespace Velur {

// The texts of one object of the package, all constants. An instance lives for one lookup.
class MaxMspExternalDocumentation
{
public:
    virtual ~MaxMspExternalDocumentation();
    virtual MaxMspExternal::Type GetType() const = 0;
    // One paragraph, with <m> and <br/> markup.
    virtual vlk::String GetDescription() const = 0;
    // One line.
    virtual vlk::String GetDigest() const = 0;
    // Object names separated by ", ".
    virtual vlk::String GetSeeAlso() const = 0;
};

} // namespace Velur
