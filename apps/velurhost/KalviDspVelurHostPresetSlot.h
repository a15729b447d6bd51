#pragma once

#include "ext_obex.h"

#include <vector>

namespace vlk::velurhost {

// The one slot of a preset object: storing sends "preset" to every object with "_preset" bound to the slot's
// binbuf; recalling sends each stored message back to its object, if that object still exists. Main thread.
class PresetSlot
{
public:
    PresetSlot() = default;
    ~PresetSlot();
    PresetSlot(const PresetSlot&) = delete;
    PresetSlot& operator=(const PresetSlot&) = delete;

    void store(const std::vector<t_object*>& objects);
    // False when nothing was stored yet.
    bool recall(const std::vector<t_object*>& objects);

private:
    void* binbuf = nullptr;
};

} // namespace vlk::velurhost
