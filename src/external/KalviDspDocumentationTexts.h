#pragma once

#include "text/KalviDspString.h"

namespace Velur::Texts {

// Descriptions shared by the catalogue and the class registrations, made when the module loads.

extern const vlk::String loudspeakersMessage;
extern const vlk::String loudspeakerMessage;
extern const vlk::String speakersMessage;
extern const vlk::String openMessage;
extern const vlk::String wcloseMessage;
extern const vlk::String infoMessage;
extern const vlk::String clearMessage;
extern const vlk::String muteAttribute;
extern const vlk::String bypassAttribute;
extern const vlk::String automuteAttribute;
extern const vlk::String numchannelsAttribute;

} // namespace Velur::Texts
