// Binbufs: atoms with a semicolon closing each inserted message.
#include "KalviDspHostAtomText.h"
#include "KalviDspHostClass.h"

#include "ext_obex.h"
#include "ext_proto.h"
#include "ext_sysmem.h"

#include <cstdarg>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Binbuf
{
    t_object ob;
    std::vector<t_atom>* atoms;
};

void freeBinbuf(Binbuf* x)
{
    delete x->atoms;
}

t_class* binbufClass()
{
    static t_class* c =
        vlk::host::makeHostClass("binbuf", sizeof(Binbuf), reinterpret_cast<method>(freeBinbuf));
    return c;
}

std::vector<t_atom>* atomsOf(void* x)
{
    return x != nullptr && object_class(x) == binbufClass() ? static_cast<Binbuf*>(x)->atoms : nullptr;
}

// "#1" to "#9" stand for the arguments of a message: they become $1 to $9.
t_atom dollarsFromHashes(const t_atom& atom)
{
    if (atom.a_type != A_SYM)
        return atom;
    const char* text = atom.a_w.w_sym->s_name;
    if (text[0] == '#' && text[1] >= '1' && text[1] <= '9' && text[2] == '\0') {
        t_atom dollar;
        A_SETDOLLAR(&dollar, text[1] - '0');
        return dollar;
    }
    return atom;
}

void appendAtoms(void* x, short argc, t_atom* argv, bool closeMessage)
{
    std::vector<t_atom>* atoms = atomsOf(x);
    if (atoms == nullptr)
        return;
    for (short i = 0; argv != nullptr && i < argc; ++i)
        atoms->push_back(dollarsFromHashes(argv[i]));
    if (closeMessage) {
        t_atom semicolon;
        A_SETSEMI(&semicolon);
        atoms->push_back(semicolon);
    }
}

} // namespace

void* binbuf_new(void)
{
    auto* x = static_cast<Binbuf*>(object_alloc(binbufClass()));
    if (x != nullptr)
        x->atoms = new std::vector<t_atom>();
    return x;
}

void binbuf_insert(t_binbuf* x, t_symbol* /*s*/, short argc, t_atom* argv)
{
    appendAtoms(x, argc, argv, true);
}

void binbuf_append(t_binbuf* x, t_symbol* /*s*/, short argc, t_atom* argv)
{
    appendAtoms(x, argc, argv, false);
}

// Letters s, l and f; at most 16 items, as in Max.
void binbuf_vinsert(void* x, char* fmt, ...)
{
    std::vector<t_atom> atoms;
    va_list arguments;
    va_start(arguments, fmt);
    for (const char* letter = fmt; letter != nullptr && *letter != '\0' && atoms.size() < 16; ++letter) {
        t_atom atom;
        if (*letter == 's')
            atom_setsym(&atom, va_arg(arguments, t_symbol*));
        else if (*letter == 'l')
            atom_setlong(&atom, va_arg(arguments, long));
        else if (*letter == 'f')
            atom_setfloat(&atom, va_arg(arguments, double));
        else
            continue;
        atoms.push_back(atom);
    }
    va_end(arguments);
    appendAtoms(x, static_cast<short>(atoms.size()), atoms.data(), true);
}

// Atoms separated by blanks, each semicolon closing its line.
short binbuf_totext(t_binbuf* x, char** dstText, t_ptr_size* sizep)
{
    std::vector<t_atom>* atoms = atomsOf(x);
    if (atoms == nullptr || dstText == nullptr || sizep == nullptr)
        return 1;
    std::string text;
    for (const t_atom& atom : *atoms) {
        if (atom.a_type == A_SEMI) {
            text += ";\n";
            continue;
        }
        if (!text.empty() && text.back() != '\n')
            text += ' ';
        text += vlk::host::atomToText(atom);
    }
    *dstText = sysmem_newptr(text.size() + 1);
    if (*dstText == nullptr)
        return 1;
    std::memcpy(*dstText, text.c_str(), text.size() + 1);
    *sizep = text.size();
    return 0;
}

// *p1 is the index of the next atom; *p2 is not used. 1 at the end.
short binbuf_getatom(t_binbuf* x, long* p1, long* /*p2*/, t_atom* ap)
{
    std::vector<t_atom>* atoms = atomsOf(x);
    if (atoms == nullptr || p1 == nullptr || ap == nullptr || *p1 < 0 ||
        *p1 >= static_cast<long>(atoms->size()))
        return 1;
    *ap = (*atoms)[static_cast<std::size_t>((*p1)++)];
    return 0;
}
