#pragma once

#include "ext_mess.h"

#include <string>

namespace vlk::host {

// Atoms as the Max window shows them: floats through "%f" with the trailing zeros cut but the point kept
// (2 gives "2.", 0.5 gives "0.5"), symbols as they are, in double quotes when they would not read back as
// one symbol (empty, or holding a blank, a quote or a backslash). Independent of the locale.
std::string atomToText(const t_atom& atom);
// The atoms joined by single blanks.
std::string atomsToText(long ac, const t_atom* av);

} // namespace vlk::host
