#include "external/KalviDspDocumentationTexts.h"

namespace Velur::Texts {

// The misspelt message names are the texts as they always were.
const vlk::String loudspeakersMessage =
    "the <m> loudspkeakers </m> message is an alias to the <m> speakers </m> message.";
const vlk::String loudspeakerMessage =
    "the <m> loudspkeaker </m> message is an alias to the <m> speaker </m> message.";
const vlk::String speakersMessage =
    "the <m> speakers </m> message is used to set the coordinates of all the speakers at once. "
    "<br/>syntax : speakers [property] [value] <br/>";
const vlk::String openMessage =
    "opens the Graphical User Interface window. (or brings the window to front if it was already opened)";
const vlk::String wcloseMessage = "closes the Graphical User Interface window.";
const vlk::String infoMessage = "posts information about the current state of the object in the Max window.";
const vlk::String clearMessage =
    "clears the internal state of the object (memories of the filters and/or delay lines, internal "
    "buffers, etc.)";
const vlk::String muteAttribute =
    "The <m> mute </m> attribute is used to enable or disable the signal processing. When <m> mute </m> "
    "is set to 1, the signal processing chain is muted, the CPU is not used, and all output signals are "
    "ensure to be zero.";
// The double blanks are the texts as they always were.
const vlk::String bypassAttribute =
    "The <m> bypass </m> attribute is used to bypass the signal processing chain. When <m> bypass </m> "
    "is set to 1, the signal processing chain is bypassed,  and the CPU is not used. The actual behavior "
    "of the bypassed object depends on the number of inlets/outlets : <br/>Examples: <br/>if the number "
    "of inputs is equal to the number of output, then each channel is bypassed. <br/>if there are 3 "
    "inputs and 4 outputs, then the 3 inputs are bypassed and the 4-th out is zeroed. <br/>if there are "
    "4 inputs and 3 outputs, then the first 3 inputs are bypassed.";
const vlk::String automuteAttribute =
    "The <m> automute </m> attribute is used to automatically mute the signal processing chain when the "
    "input signal is zero. the object inspects its input signals; if the signals are 'inactive' i.e. "
    "zero-signals for a given amount of time, the processing chain (i.e. the cpu load) for the inactive "
    "inlets is automatically disabled. The 'automute' attribute represents the time threshold (in "
    "seconds) before considering an inlet as inactive. If 'automute' is 0, the auto-muting option is "
    "disabled.";
const vlk::String numchannelsAttribute =
    "The <m> numchannels </m> attribute represents the number of input and output channels of the "
    "object. This  attribute must be set in the object box, when the object is instanciated; it can not "
    "be further set with a message, since  the number of signal inlets or outlets can not be changed "
    "dynamically.";

} // namespace Velur::Texts
