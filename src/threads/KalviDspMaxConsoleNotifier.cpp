#include "threads/KalviDspMaxConsoleNotifier.h"

namespace vlk {

namespace {

constexpr int notificationLevel = 2;

} // namespace

void MaxConsoleNotifier::removeListener(Listener* listener)
{
    for (std::size_t index = 0; index < listeners.size(); ++index) {
        if (listeners[index] == listener) {
            listeners.removeAt(index);
            return;
        }
    }
}

void MaxConsoleNotifier::notify(const String& message)
{
    // The size is read again after each call, since a listener may change the list.
    for (std::size_t index = 0; index < listeners.size(); ++index) {
        int level = notificationLevel;
        listeners[index]->consoleMessageReceived(level, message);
    }
}

} // namespace vlk
