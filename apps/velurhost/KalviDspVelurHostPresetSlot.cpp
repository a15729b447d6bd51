#include "KalviDspVelurHostPresetSlot.h"

#include "KalviDspHostMessageDispatch.h"

#include <algorithm>

namespace vlk::velurhost {

PresetSlot::~PresetSlot()
{
    object_free(binbuf);
}

void PresetSlot::store(const std::vector<t_object*>& objects)
{
    object_free(binbuf);
    binbuf = binbuf_new();
    t_symbol* binding = gensym("_preset");
    binding->s_thing = static_cast<t_object*>(binbuf);
    for (t_object* x : objects)
        if (object_getmethod(x, gensym("preset")) != nullptr)
            host::dispatchMessage(x, gensym("preset"), 0, nullptr);
    binding->s_thing = nullptr;
}

// Each message reads: the object, its class name, the selector, the arguments.
bool PresetSlot::recall(const std::vector<t_object*>& objects)
{
    if (binbuf == nullptr)
        return false;
    std::vector<t_atom> message;
    long index = 0;
    long unused = 0;
    t_atom atom;
    while (binbuf_getatom(binbuf, &index, &unused, &atom) == 0) {
        if (atom.a_type != A_SEMI) {
            message.push_back(atom);
            continue;
        }
        t_object* target = message.size() >= 3 ? static_cast<t_object*>(atom_getobj(&message[0])) : nullptr;
        if (target != nullptr && std::find(objects.begin(), objects.end(), target) != objects.end() &&
            message[2].a_type == A_SYM)
            host::dispatchMessage(target, message[2].a_w.w_sym, static_cast<long>(message.size() - 3),
                                  message.data() + 3);
        message.clear();
    }
    return true;
}

} // namespace vlk::velurhost
