#pragma once

#include "ext.h"

namespace vlk {

// The service messages that every object of the package answers, on the thread that delivers them. Faults
// are lines in the Max window; none changes the object.

void kalvimax_version(t_object* x);
// No argument: all state attributes; one symbol: that attribute.
void kalvimax_postattributes(t_object* x, t_symbol* s, long argc, t_atom* argv);
// No argument: all state attributes as one list; a first symbol: that attribute, the rest ignored.
void kalvimax_dump(t_object* x, t_symbol* s, long argc, t_atom* argv);
// The state, or the named attributes, as a dictionary through the dump outlet.
void kalvimax_dumpdict(t_object* x, t_symbol* s, long argc, t_atom* argv);
// The state as a JSON file: the path given as a first symbol, else chosen in the save dialog.
void kalvimax_exportdict(t_object* x, t_symbol* s, long argc, t_atom* argv);
// Sets the attributes from the dictionary registered under the name.
void kalvimax_dictionary(t_object* x, t_symbol* name);
// Whether processing is muted, bypassed or enabled, and whether the host's audio is on.
void kalvimax_postdspstatus(t_object* x);
// Writes the object's reference page into the home folder.
void kalvimax_generatexml(t_object* x);

} // namespace vlk
