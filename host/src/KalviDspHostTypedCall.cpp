#include "KalviDspHostTypedCall.h"

#include "ext_obex.h"
#include "ext_proto.h"

namespace vlk::host {

TypedCall::TypedCall(void* receiver, const std::vector<long>& types, long ac, const t_atom* av)
{
    if (receiver != nullptr)
        integers[numIntegers++] = reinterpret_cast<t_ptr_int>(receiver);
    for (std::size_t i = 0; i < types.size() && numIntegers < 8 && numDoubles < 8; ++i) {
        const t_atom* atom = static_cast<long>(i) < ac && av != nullptr ? av + i : nullptr;
        const bool isNumber = atom != nullptr && (atom->a_type == A_LONG || atom->a_type == A_FLOAT);
        switch (types[i]) {
        case A_LONG:
        case A_DEFLONG:
            argumentsFit = argumentsFit && (atom == nullptr || isNumber);
            integers[numIntegers++] = isNumber ? atom_getlong(atom) : 0;
            break;
        case A_FLOAT:
        case A_DEFFLOAT:
            argumentsFit = argumentsFit && (atom == nullptr || isNumber);
            doubles[numDoubles++] = isNumber ? atom_getfloat(atom) : 0.0;
            break;
        case A_SYM:
        case A_DEFSYM:
            argumentsFit = argumentsFit && (atom == nullptr || atom->a_type == A_SYM);
            integers[numIntegers++] = reinterpret_cast<t_ptr_int>(atom_getsym(atom));
            break;
        case A_OBJ:
            integers[numIntegers++] = reinterpret_cast<t_ptr_int>(atom_getobj(atom));
            break;
        default:
            argumentsFit = false;
            break;
        }
    }
}

void* TypedCall::call(method function) const
{
    using Wide = void* (*)(t_ptr_int, t_ptr_int, t_ptr_int, t_ptr_int, t_ptr_int, t_ptr_int, t_ptr_int,
                           t_ptr_int, double, double, double, double, double, double, double, double);
    const t_ptr_int* i = integers;
    const double* d = doubles;
    return reinterpret_cast<Wide>(function)(i[0], i[1], i[2], i[3], i[4], i[5], i[6], i[7], d[0], d[1], d[2],
                                            d[3], d[4], d[5], d[6], d[7]);
}

void* callGimme(method function, void* x, t_symbol* s, long ac, t_atom* av)
{
    using Gimme = void* (*)(void*, t_symbol*, long, t_atom*);
    return reinterpret_cast<Gimme>(function)(x, s, ac, av);
}

} // namespace vlk::host
