#pragma once

#include "text/KalviDspString.h"

#include "ext.h"

namespace vlk {

// Atoms as the Max window shows them, each followed by one blank: symbols as they are, floats in single
// precision without trailing zeros ("1.5 ", "2. "), longs in decimal; other atoms add nothing. text is
// emptied first.
void AtomsToText(long count, const t_atom* atoms, String& text);

// "text atoms..." as an error line of the object; without atoms the line ends in a blank.
void ReportInvalidMessage(t_object* x, long argc, const t_atom* argv, const char* text);

} // namespace vlk
