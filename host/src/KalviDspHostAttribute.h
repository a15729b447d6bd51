#pragma once

#include "KalviDspHostAttributeType.h"

#include "ext_obex.h"

#include <vector>

namespace vlk::host {

// An attribute object: the SDK's t_attr for the fields object code may touch, and the host's own record.
// Its attribute attributes (label, default, ...) are instance attributes of the attribute object itself.
class Attribute
{
public:
    enum class Storage
    {
        member,
        memberArray,
        self
    };

    // The attribute object, of the host class "attr"; free it with object_free.
    static t_object* create(const char* name, const t_symbol* type, long flags, method getter, method setter,
                            Storage storage, long offset = 0, long size = 1, long countOffset = 0);
    // Null unless x is an attribute object.
    static Attribute* of(const void* x);

    t_symbol* name() const { return attr->name; }
    long flags() const { return attr->flags; }

    // Through the getter, default or custom, then the get filters. The caller's contract of getters holds.
    t_max_err getValue(t_object* owner, long* ac, t_atom** av);
    // Through the set filters, then the setter. The caller's atoms are not changed.
    t_max_err setValue(t_object* owner, long ac, const t_atom* av);

    void setClip(bool onSet, bool onGet, double scale, double min, double max, bool useMin, bool useMax);
    void setProc(bool onSet, method proc);

private:
    struct Clip
    {
        bool active = false;
        double scale = 1;
        double min = 0;
        double max = 0;
        bool useMin = false;
        bool useMax = false;
    };

    std::vector<t_atom> readDefault(t_object* owner) const;
    void writeDefault(t_object* owner, const std::vector<t_atom>& values);
    void clipAtoms(const Clip& clip, bool divide, long ac, t_atom* av) const;

    t_attr* attr = nullptr;
    AttributeType type{nullptr};
    Storage storage = Storage::self;
    long offset = 0;
    long size = 1;
    long countOffset = 0;
    std::vector<t_atom> ownValue;
    Clip setClipFilter;
    Clip getClipFilter;
    method setProcFilter = nullptr;
    method getProcFilter = nullptr;
};

// The attribute named so on x: its own first, then its class's. Null if there is none.
t_object* findAttribute(const void* x, t_symbol* name);
// Adds an attribute to x alone, replacing (and freeing) one of the same name.
void addInstanceAttribute(void* x, t_object* attribute);
// Tells x's notify method and x's clients that an attribute changed.
void notifyAttributeChanged(t_object* x, t_object* attribute);

} // namespace vlk::host
