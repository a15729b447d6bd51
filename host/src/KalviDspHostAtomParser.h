#pragma once

#include "ext_mess.h"

#include <string_view>
#include <vector>

namespace vlk::host {

// Text in message-box syntax into atoms: blanks separate atoms; a whole number is a long, a number with a
// point or an exponent a float; text in double quotes is one symbol (backslash escapes the next character);
// anything else a symbol. With stopAtComment, an unquoted atom starting with '#' ends the text.
std::vector<t_atom> parseAtoms(std::string_view text, bool stopAtComment = false);

} // namespace vlk::host
