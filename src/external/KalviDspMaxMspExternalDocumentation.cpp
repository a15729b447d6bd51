#include "external/KalviDspMaxMspExternalDocumentation.h"

namespace Velur {

MaxMspExternalDocumentation::~MaxMspExternalDocumentation() = default;

} // namespace Velur
