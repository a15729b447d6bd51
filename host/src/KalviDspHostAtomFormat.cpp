#include "KalviDspHostAtomFormat.h"

#include "ext_obex.h"

namespace vlk::host {

std::vector<t_atom> formatAtoms(const char* fmt, va_list arguments)
{
    std::vector<t_atom> atoms;
    for (const char* letter = fmt; letter != nullptr && *letter != '\0'; ++letter) {
        t_atom atom;
        switch (*letter) {
        case 'c':
            atom_setlong(&atom, va_arg(arguments, int));
            break;
        case 'l':
            atom_setlong(&atom, va_arg(arguments, t_atom_long));
            break;
        case 'f':
        case 'd':
            atom_setfloat(&atom, va_arg(arguments, double));
            break;
        case 's':
            atom_setsym(&atom, va_arg(arguments, t_symbol*));
            break;
        case 'o':
            atom_setobj(&atom, va_arg(arguments, void*));
            break;
        case 'a':
            atom = *va_arg(arguments, t_atom*);
            break;
        default:
            continue;
        }
        atoms.push_back(atom);
    }
    return atoms;
}

} // namespace vlk::host
