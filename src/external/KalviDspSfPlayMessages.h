#pragma once

#include "external/KalviDspSfPlayObject.h"

namespace vlk {

// The object's own messages. Each reaches the player on the thread that delivered it, except open.

// open [name or path]: deferred to the main thread, which may show a dialog and reads the disk.
void SfPlayOpen(SfPlayObject* x, t_symbol* s, long argc, t_atom* argv);
// 1 starts from the first frame; any other value pauses.
void SfPlayInt(SfPlayObject* x, t_atom_long value);
// seek ms, or seek startMs endMs.
void SfPlaySeek(SfPlayObject* x, t_symbol* s, long argc, t_atom* argv);
void SfPlayResume(SfPlayObject* x);
void SfPlayPause(SfPlayObject* x);
// Posts the open file's description.
void SfPlayInfo(SfPlayObject* x);
void SfPlayGetLength(SfPlayObject* x);
void SfPlayGetNumChannels(SfPlayObject* x);
void SfPlayGetFileName(SfPlayObject* x);

} // namespace vlk
