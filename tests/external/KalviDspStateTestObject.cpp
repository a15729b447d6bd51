#include "KalviDspStateTestObject.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDumpOutlet.h"

#include <algorithm>

namespace vlk::external::test {
namespace {

t_max_err setGrow(StateTestObject* x, t_object* /*attribute*/, long argc, t_atom* argv)
{
    if (argc > 0) {
        x->grow = static_cast<long>(atom_getlong(argv));
        x->zetaLength = std::clamp(x->grow, 0L, 4L);
    }
    return MAX_ERR_NONE;
}

t_class* stateTestClass()
{
    static t_class* c = [] {
        InitCommonSymbols();
        t_class* made =
            class_new("statetest", nullptr, nullptr, sizeof(StateTestObject), nullptr, A_GIMME, 0);
        CLASS_ATTR_LONG(made, "alpha", 0, StateTestObject, alpha);
        CLASS_ATTR_FLOAT(made, "beta", 0, StateTestObject, beta);
        CLASS_ATTR_DOUBLE_ARRAY(made, "delta", 0, StateTestObject, delta, 3);
        CLASS_ATTR_SYM(made, "gamma", 0, StateTestObject, gamma);
        CLASS_ATTR_LONG(made, "grow", 0, StateTestObject, grow);
        CLASS_ATTR_ACCESSORS(made, "grow", nullptr, setGrow);
        CLASS_ATTR_LONG(made, "twice", 0, StateTestObject, twice);
        CLASS_ATTR_ATTR_PARSE(made, "twice", "invisible", gensym("long"), 0, "2");
        CLASS_ATTR_LONG_VARSIZE(made, "zeta", 0, StateTestObject, zeta, zetaLength, 4);
        CLASS_ATTR_LONG(made, "hiddenvalue", 0, StateTestObject, hiddenvalue);
        CLASS_ATTR_INVISIBLE(made, "hiddenvalue", 0);
        CLASS_ATTR_LONG(made, "peek", ATTR_GET_OPAQUE_USER, StateTestObject, peek);
        CLASS_ATTR_LONG(made, "secret", ATTR_SET_OPAQUE_USER, StateTestObject, secret);
        CLASS_ATTR_LONG(made, "patching_rect", 0, StateTestObject, patchingRect);
        return made;
    }();
    return c;
}

} // namespace

StateTestObject* newStateTestObject()
{
    auto* x = static_cast<StateTestObject*>(object_alloc(stateTestClass()));
    x->gamma = gensym("g");
    CreateDumpOutlet(&x->ob);
    return x;
}

t_object* newStatelessTestObject()
{
    static t_class* c = [] {
        InitCommonSymbols();
        t_class* made =
            class_new("statelesstest", nullptr, nullptr, sizeof(StateTestObject), nullptr, A_GIMME, 0);
        CLASS_ATTR_LONG(made, "hiddenvalue", 0, StateTestObject, hiddenvalue);
        CLASS_ATTR_INVISIBLE(made, "hiddenvalue", 0);
        return made;
    }();
    return static_cast<t_object*>(object_alloc(c));
}

} // namespace vlk::external::test
