#include "external/KalviDspOutletSendFormatted.h"

#include <array>
#include <cstdarg>
#include <cstdint>
#include <vector>

namespace vlk {

// Listeners send from the audio thread: the few atoms of their messages stay on the stack.
void OutletSendFormatted(void* outlet, t_symbol* selector, const char* format, short count, ...)
{
    const std::size_t numAtoms = static_cast<std::size_t>(count < 0 ? 0 : count);
    std::array<t_atom, 8> local{};
    std::vector<t_atom> large;
    if (numAtoms > local.size())
        large.resize(numAtoms, t_atom{});
    t_atom* atoms = numAtoms > local.size() ? large.data() : local.data();
    va_list arguments;
    va_start(arguments, count);
    for (std::size_t i = 0; i < numAtoms && format[i] != '\0'; ++i) {
        switch (format[i]) {
        case 'f':
            atom_setfloat(&atoms[i], static_cast<float>(va_arg(arguments, double)));
            break;
        case 'i':
            atom_setlong(&atoms[i], va_arg(arguments, int));
            break;
        case 'l':
            atom_setlong(&atoms[i], static_cast<t_atom_long>(va_arg(arguments, std::int64_t)));
            break;
        case 's':
            atom_setsym(&atoms[i], va_arg(arguments, t_symbol*));
            break;
        default:
            break;
        }
    }
    va_end(arguments);
    outlet_anything(outlet, selector, count, atoms);
}

} // namespace vlk
