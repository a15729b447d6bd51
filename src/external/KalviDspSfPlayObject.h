#pragma once

#include "dsp/KalviDspAudioFilePlayer.h"
#include "external/KalviDspSfPlayListener.h"

#include "z_dsp.h"

#include <memory>
#include <type_traits>

namespace vlk {

// The instance of velur.sfplay~, in the layout its attributes point into. The host allocates it zeroed; the
// two owning pointers are constructed in place by the constructor and destroyed by the free method.
struct SfPlayObject
{
    t_pxobject ob;
    t_object* box;
    // Storage of the documentation attributes, which carry their texts as labels: never written.
    t_symbol* classdescription;
    t_symbol* classdigest;
    t_symbol* externalversion;
    t_symbol* classseealso;
    // Written by the host between audio vectors, read by the perform routine.
    long mute;
    long bypass;
    float automute;
    std::unique_ptr<AudioFilePlayer> player;
    std::unique_ptr<SfPlayListener> listener;
    long numchannels;
    long buffersize;
    long loop;
};

static_assert(std::is_standard_layout_v<SfPlayObject>, "attributes address the members by offset");

// The class that the constructor instantiates; set once the class is registered.
extern t_class* sfPlayClass;

inline t_object* asObject(SfPlayObject* x)
{
    return &x->ob.z_ob;
}

} // namespace vlk
