#include "KalviDspHostAttributeType.h"

#include "KalviDspHostAtomText.h"

#include "ext_obex.h"
#include "ext_proto.h"

#include <cstring>
#include <string_view>

namespace vlk::host {
namespace {

template <typename T> T load(const char* address)
{
    T value;
    std::memcpy(&value, address, sizeof(T));
    return value;
}

template <typename T> void store(char* address, T value)
{
    std::memcpy(address, &value, sizeof(T));
}

t_atom makeLong(t_atom_long value)
{
    t_atom atom;
    atom_setlong(&atom, value);
    return atom;
}

t_atom makeFloat(double value)
{
    t_atom atom;
    atom_setfloat(&atom, value);
    return atom;
}

} // namespace

AttributeType::AttributeType(const t_symbol* type)
{
    const std::string_view name = type == nullptr ? "" : type->s_name;
    if (name == "char")
        typeKind = charType;
    else if (name == "long")
        typeKind = longType;
    else if (name == "atom_long")
        typeKind = atomLongType;
    else if (name == "int32")
        typeKind = int32Type;
    else if (name == "filepath")
        typeKind = filepathType;
    else if (name == "float32")
        typeKind = float32Type;
    else if (name == "float64")
        typeKind = float64Type;
    else if (name == "symbol")
        typeKind = symbolType;
    else if (name == "atom")
        typeKind = atomType;
    else if (name == "object" || name == "pointer")
        typeKind = objectType;
    else
        typeKind = unknownType;
}

std::size_t AttributeType::elementSize() const
{
    switch (typeKind) {
    case charType:
        return sizeof(char);
    case longType:
        return sizeof(long);
    case atomLongType:
        return sizeof(t_atom_long);
    case int32Type:
        return sizeof(t_int32);
    case filepathType:
        return sizeof(t_filepath);
    case float32Type:
        return sizeof(float);
    case float64Type:
        return sizeof(double);
    case symbolType:
        return sizeof(t_symbol*);
    case atomType:
        return sizeof(t_atom);
    case objectType:
        return sizeof(t_object*);
    case unknownType:
        break;
    }
    return 0;
}

t_atom AttributeType::read(const char* address) const
{
    t_atom atom;
    switch (typeKind) {
    case charType:
        return makeLong(static_cast<unsigned char>(*address));
    case longType:
        return makeLong(load<long>(address));
    case atomLongType:
        return makeLong(load<t_atom_long>(address));
    case int32Type:
        return makeLong(load<t_int32>(address));
    case filepathType:
        return makeLong(load<t_filepath>(address));
    case float32Type:
        return makeFloat(load<float>(address));
    case float64Type:
        return makeFloat(load<double>(address));
    case symbolType: {
        t_symbol* symbol = load<t_symbol*>(address);
        atom_setsym(&atom, symbol == nullptr ? gensym("") : symbol);
        return atom;
    }
    case atomType:
        return load<t_atom>(address);
    case objectType:
        atom_setobj(&atom, load<t_object*>(address));
        return atom;
    case unknownType:
        break;
    }
    atom.a_type = A_NOTHING;
    atom.a_w.w_long = 0;
    return atom;
}

void AttributeType::write(char* address, const t_atom& value) const
{
    switch (typeKind) {
    case charType:
        *address = static_cast<char>(atom_getlong(&value));
        break;
    case longType:
        store<long>(address, static_cast<long>(atom_getlong(&value)));
        break;
    case atomLongType:
        store<t_atom_long>(address, atom_getlong(&value));
        break;
    case int32Type:
        store<t_int32>(address, static_cast<t_int32>(atom_getlong(&value)));
        break;
    case filepathType:
        store<t_filepath>(address, static_cast<t_filepath>(atom_getlong(&value)));
        break;
    case float32Type:
        store<float>(address, static_cast<float>(atom_getfloat(&value)));
        break;
    case float64Type:
        store<double>(address, atom_getfloat(&value));
        break;
    case symbolType:
        store<t_symbol*>(address, atom_getsym(&value));
        break;
    case atomType:
        store<t_atom>(address, value);
        break;
    case objectType:
        store<t_object*>(address, static_cast<t_object*>(atom_getobj(&value)));
        break;
    case unknownType:
        break;
    }
}

t_atom AttributeType::convert(const t_atom& value) const
{
    switch (typeKind) {
    case charType:
    case longType:
    case atomLongType:
    case int32Type:
    case filepathType:
        return makeLong(atom_getlong(&value));
    case float32Type:
        return makeFloat(static_cast<float>(atom_getfloat(&value)));
    case float64Type:
        return makeFloat(atom_getfloat(&value));
    case symbolType: {
        t_atom atom;
        if (value.a_type == A_SYM)
            return value;
        // A number given as the text of a symbol value stands for its own text.
        atom_setsym(&atom, gensym(atomToText(value).c_str()));
        return atom;
    }
    case objectType: {
        t_atom atom;
        atom_setobj(&atom, atom_getobj(&value));
        return atom;
    }
    case atomType:
    case unknownType:
        break;
    }
    return value;
}

} // namespace vlk::host
