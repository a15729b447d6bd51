#pragma once

#include "ext.h"

namespace vlk::external::test {

// An object whose attributes take every road of the state services. State, alphabetically: alpha (long),
// beta (float32), delta (three float64), gamma (symbol), grow (long; its setter sets the length of zeta),
// twice (long, "invisible" 2), zeta (up to four longs, none at first: then it is no state). Not state:
// hiddenvalue ("invisible" 1), peek and secret (opaque to the user's get and set), patching_rect (a box's).
struct StateTestObject
{
    t_object ob;
    long alpha;
    float beta;
    double delta[3];
    t_symbol* gamma;
    long grow;
    long twice;
    long zetaLength;
    long zeta[4];
    long hiddenvalue;
    long peek;
    long secret;
    long patchingRect;
};

// With a dump outlet; InitCommonSymbols has run. Freed with object_free.
StateTestObject* newStateTestObject();
// An object none of whose attributes is state.
t_object* newStatelessTestObject();

} // namespace vlk::external::test
