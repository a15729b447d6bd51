#pragma once

#include "dsp/KalviDspAudioProcessorWithAutoMute.h"

namespace vlk {

// The processor whose commands will run inside the audio callback, between two vectors. For now it adds
// nothing to the auto-mute frame; processors derive from it so that the command surface joins them without
// a change to their class tree.
class AudioProcessorWithOscInAudioInterrupt : public AudioProcessorWithAutoMute
{
public:
    using AudioProcessorWithAutoMute::AudioProcessorWithAutoMute;
};

} // namespace vlk
