#pragma once

#include "ext.h"

namespace vlk {

// An object's state as one flat run of atoms, for pattr and the preset object: the state attributes in
// alphabetical order, their values one after the other, without names. Every fault is a line in the Max
// window and the result is always 0, so that pattr never sees a failure. Thread of the message.

// Allocates the atoms unless the caller passes a count above 0 and an array, which is then filled instead.
t_max_err kalvimax_getvalueof(t_object* x, long* ac, t_atom** av);
// Refuses the whole run when its count is not the state's; sets the attributes one by one, in order, through
// their setters.
t_max_err kalvimax_setvalueof(t_object* x, long ac, t_atom* av);
// Appends "object classname recallpreset state..." to the binbuf bound to _preset, if any.
void kalvimax_preset(t_object* x);
// The preset object's recall: the atoms go to kalvimax_setvalueof.
void kalvimax_recallpreset(t_object* x, t_symbol* s, long ac, t_atom* av);

} // namespace vlk
