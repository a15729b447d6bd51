#pragma once

#include "ext_mess.h"

#include <cstddef>

namespace vlk::host {

// The value types an attribute can have, named by the type symbols of the SDK ("long", "float64", ...).
// Integer types produce and take A_LONG, float types A_FLOAT; "atom" keeps any atom.
class AttributeType
{
public:
    enum Kind
    {
        charType,
        longType,
        atomLongType,
        int32Type,
        filepathType,
        float32Type,
        float64Type,
        symbolType,
        atomType,
        objectType,
        unknownType
    };

    explicit AttributeType(const t_symbol* type);

    Kind kind() const { return typeKind; }
    // Bytes of one element in an object's structure.
    std::size_t elementSize() const;
    t_atom read(const char* address) const;
    void write(char* address, const t_atom& value) const;
    // The atom as this type would store it; float32 values pass through a float.
    t_atom convert(const t_atom& value) const;

private:
    Kind typeKind;
};

} // namespace vlk::host
