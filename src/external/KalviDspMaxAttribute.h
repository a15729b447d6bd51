#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include "ext.h"

#include <cstdint>
#include <optional>

namespace vlk {

// An attribute of an object, looked up by name, and what its sub-attributes say about it. A missing
// sub-attribute is no fault: the host answers MAX_ERR_GENERIC for it, and every reader takes that as "none".
// Other faults are posted to the Max window with a null object. Thread of the message that asks.
class MaxAttribute
{
public:
    MaxAttribute(t_object* object, const char* name);
    // Around an attribute object the caller already holds.
    static MaxAttribute FromAttributeObject(t_object* attributeObject);

    bool IsNull() const { return attribute == nullptr; }
    // The host's attribute object, null when the object has no such attribute.
    t_object* GetAttributeObject() const { return attribute; }
    // The three fields of the attribute object that the services read; not for a null attribute.
    t_symbol* GetName() const;
    t_symbol* GetType() const;
    long GetFlags() const;

    // The long of the "order" sub-attribute; 0 when there is none.
    std::uint32_t GetOrder() const;
    // True when "invisible" is the long 1; 2 is not invisible.
    bool IsInvisible() const;
    // The first atom of the sub-attribute as text, a float with two decimals; defaultValue when there is
    // none.
    String GetValueOf(t_symbol* subAttribute, const char* defaultValue) const;
    String GetLabel(const char* defaultValue) const;
    // The text of the label's first atom when that is a symbol: how a class keeps a text of its own.
    std::optional<String> GetSymbolLabel() const;
    // The symbols of "enumvals"; the one entry defaultValue when there are none.
    void GetEnumChoices(Vector<String>& choices, const char* defaultValue) const;

private:
    explicit MaxAttribute(t_object* attributeObject) : attribute(attributeObject) {}

    t_object* attribute;
};

} // namespace vlk
