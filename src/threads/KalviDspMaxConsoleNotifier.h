#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

namespace vlk {

// Passes console messages to its listeners. The OSC surface derives from it; no code of the object adds a
// listener, so its notifications go nowhere in this object.
class MaxConsoleNotifier
{
public:
    class Listener
    {
    public:
        virtual ~Listener() = default;
        virtual void consoleMessageReceived(int& level, const String& message) = 0;
    };

    ~MaxConsoleNotifier() { listeners.clear(); }

    // Listeners are not owned.
    void addListener(Listener* listener) { listeners.push_back(listener); }
    void removeListener(Listener* listener);

    // Calls every listener in order with level 2; a listener may remove itself or others while called.
    void notify(const String& message);

private:
    Vector<Listener*> listeners;
};

} // namespace vlk
