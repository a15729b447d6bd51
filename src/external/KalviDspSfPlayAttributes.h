#pragma once

#include "external/KalviDspSfPlayObject.h"

namespace vlk {

// The class's attributes, in three groups registered at different steps of the class's making.

// classdigest, classdescription, classseealso, externalversion: hidden, and carrying class texts as labels.
void AddSfPlayDocumentationAttributes(t_class* klass);
// mute, bypass, automute.
void AddSfPlayOptionAttributes(t_class* klass);
// numchannels, buffersize, loop.
void AddSfPlayStructureAttributes(t_class* klass);

// The setter of numchannels, buffersize and loop: the first two are fixed once the player exists.
t_max_err SfPlaySetAttribute(SfPlayObject* x, t_object* attribute, long argc, t_atom* argv);
t_max_err SfPlaySetAutoMute(SfPlayObject* x, t_object* attribute, long argc, t_atom* argv);

} // namespace vlk
