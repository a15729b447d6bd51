#pragma once

#include "ext_mess.h"

#include <vector>

namespace vlk::host {

// Calls a C function declared with typed arguments (A_LONG, A_FLOAT, A_SYM, A_OBJ and their A_DEF forms) with
// atoms converted to those types: numbers convert to numbers, a missing argument is 0 or the empty symbol.
// Integers and pointers travel in the integer registers and doubles in the floating-point ones, in
// order, which is how the 64-bit Linux calling conventions place any mix of at most seven of each.
class TypedCall
{
public:
    // With receiver null the first argument is the first atom (a constructor of a typed class).
    TypedCall(void* receiver, const std::vector<long>& types, long ac, const t_atom* av);

    // False when an atom cannot become its declared type.
    bool fits() const { return argumentsFit; }
    void* call(method function) const;

private:
    t_ptr_int integers[8] = {};
    double doubles[8] = {};
    int numIntegers = 0;
    int numDoubles = 0;
    bool argumentsFit = true;
};

// fn(x, s, ac, av), the A_GIMME shape; ac travels as a full long.
void* callGimme(method function, void* x, t_symbol* s, long ac, t_atom* av);

} // namespace vlk::host
