#include "external/KalviDspSfplayTilda.h"

namespace Velur::External {

MaxMspExternal::Type SfplayTilda::GetType() const
{
    return MaxMspExternal::Type::velurSfplayTilda;
}

// The final blank is part of the text.
vlk::String SfplayTilda::GetDescription() const
{
    return "velur.sfplay~ plays AIFF and WAVE files from disk. To play a file, you send velur.sfplay~ the "
           "open "
           "message, then send it a 1 to start and a 0 to stop. open takes an argument to specify a filename "
           "in "
           "the search path. ";
}

vlk::String SfplayTilda::GetDigest() const
{
    return "(Multichannel) Sound file player.";
}

vlk::String SfplayTilda::GetSeeAlso() const
{
    return "sfplay~, velur.sfrecord~, velur.sfinfo, velur.index~";
}

} // namespace Velur::External
