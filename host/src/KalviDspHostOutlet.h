#pragma once

#include "ext_mess.h"

#include <functional>
#include <vector>

namespace vlk::host {

// An outlet and what it is connected to. Connections change only while nothing sends through the outlet;
// sending may happen on any thread, and each receiver runs on the sending thread before the send returns.
class Outlet
{
public:
    // The selector is bang, int, float, list or the message's own; ac and av as sent.
    using Receiver = std::function<void(t_symbol* selector, long ac, t_atom* av)>;

    explicit Outlet(t_symbol* type) : type(type) {}

    bool isSignal() const;
    void connect(Receiver receiver);
    // Messages reach the object's left inlet, as typedmess would deliver them.
    void connectToObject(t_object* target);
    void send(t_symbol* selector, long ac, t_atom* av) const;

private:
    t_symbol* type;
    std::vector<Receiver> receivers;
};

} // namespace vlk::host
