#include "KalviDspHostOutlet.h"

#include "KalviDspHostMessageDispatch.h"
#include "KalviDspHostObject.h"

#include "ext_obex.h"
#include "ext_proto.h"

namespace vlk::host {

bool Outlet::isSignal() const
{
    return type == gensym("signal") || type == gensym("multichannelsignal");
}

void Outlet::connect(Receiver receiver)
{
    receivers.push_back(std::move(receiver));
}

void Outlet::connectToObject(t_object* target)
{
    receivers.push_back(
        [target](t_symbol* selector, long ac, t_atom* av) { dispatchMessage(target, selector, ac, av); });
}

void Outlet::send(t_symbol* selector, long ac, t_atom* av) const
{
    for (const Receiver& receiver : receivers)
        receiver(selector, ac, av);
}

} // namespace vlk::host

using vlk::host::Outlet;

void* outlet_new(void* x, const char* s)
{
    vlk::host::ObjectRecord* record = vlk::host::ObjectRecord::of(x);
    if (record == nullptr)
        return nullptr;
    record->outlets.push_back(std::make_unique<Outlet>(s == nullptr ? nullptr : gensym(s)));
    return record->outlets.back().get();
}

void* bangout(void* x)
{
    return outlet_new(x, "bang");
}

void* intout(void* x)
{
    return outlet_new(x, "int");
}

void* floatout(void* x)
{
    return outlet_new(x, "float");
}

void* listout(void* x)
{
    return outlet_new(x, "list");
}

void* outlet_bang(t_outlet* x)
{
    if (x == nullptr)
        return nullptr;
    static_cast<Outlet*>(x)->send(gensym("bang"), 0, nullptr);
    return reinterpret_cast<void*>(1);
}

void* outlet_int(t_outlet* x, t_atom_long n)
{
    if (x == nullptr)
        return nullptr;
    t_atom atom;
    atom_setlong(&atom, n);
    static_cast<Outlet*>(x)->send(gensym("int"), 1, &atom);
    return reinterpret_cast<void*>(1);
}

void* outlet_float(t_outlet* x, double f)
{
    if (x == nullptr)
        return nullptr;
    t_atom atom;
    atom_setfloat(&atom, f);
    static_cast<Outlet*>(x)->send(gensym("float"), 1, &atom);
    return reinterpret_cast<void*>(1);
}

void* outlet_list(t_outlet* x, t_symbol* /*s*/, short ac, t_atom* av)
{
    if (x == nullptr)
        return nullptr;
    static_cast<Outlet*>(x)->send(gensym("list"), ac, av);
    return reinterpret_cast<void*>(1);
}

void* outlet_anything(t_outlet* x, t_symbol* s, short ac, t_atom* av)
{
    if (x == nullptr || s == nullptr)
        return nullptr;
    static_cast<Outlet*>(x)->send(s, ac, av);
    return reinterpret_cast<void*>(1);
}

void outlet_atoms(void* out, short argc, t_atom* argv)
{
    if (argc == 0)
        outlet_bang(out);
    else if (argc == 1 && argv[0].a_type == A_LONG)
        outlet_int(out, argv[0].a_w.w_long);
    else if (argc == 1 && argv[0].a_type == A_FLOAT)
        outlet_float(out, argv[0].a_w.w_float);
    else if (argv[0].a_type == A_SYM)
        outlet_anything(out, argv[0].a_w.w_sym, static_cast<short>(argc - 1), argv + 1);
    else
        outlet_list(out, nullptr, argc, argv);
}
