#pragma once

#include "external/KalviDspSfPlayObject.h"

namespace vlk {

// Host's thread, with audio stopped: prepares the player and adds the perform routine to the chain.
void SfPlayDsp64(SfPlayObject* x, t_object* dsp64, short* count, double sampleRate, long maxVectorSize,
                 long flags);
// Audio thread.
void SfPlayPerform64(SfPlayObject* x, t_object* dsp64, double** ins, long numIns, double** outs, long numOuts,
                     long sampleFrames, long flags, void* userParam);
// Posts the player's sample rate, vector size and latency.
void SfPlayPostDspState(SfPlayObject* x);
// Names of the outlets; the one inlet has none.
void SfPlayAssist(SfPlayObject* x, void* box, long kind, long index, char* text);

} // namespace vlk
