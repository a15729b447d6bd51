#pragma once

#include "external/KalviDspMaxMspExternalDocumentation.h"

namespace Velur::External {

// velur.sfplay~
class SfplayTilda : public MaxMspExternalDocumentation
{
public:
    MaxMspExternal::Type GetType() const override;
    vlk::String GetDescription() const override;
    vlk::String GetDigest() const override;
    vlk::String GetSeeAlso() const override;
};

} // namespace Velur::External
