#include "threads/KalviDspMaxConsoleNotifier.h"

#include <gtest/gtest.h>

namespace vlk {
namespace {

class RecordingListener : public MaxConsoleNotifier::Listener
{
public:
    RecordingListener(String name, Vector<String>& journal) : name(std::move(name)), journal(journal) {}

    void consoleMessageReceived(int& level, const String& message) override
    {
        journal.push_back(name + ":" + std::to_string(level) + ":" + message);
        if (notifierToLeave != nullptr)
            notifierToLeave->removeListener(this);
    }

    MaxConsoleNotifier* notifierToLeave = nullptr;

private:
    String name;
    Vector<String>& journal;
};

TEST(MaxConsoleNotifier, CallsListenersInOrderWithLevelTwo)
{
    Vector<String> journal;
    RecordingListener first("a", journal), second("b", journal);
    MaxConsoleNotifier notifier;
    notifier.addListener(&first);
    notifier.addListener(&second);
    notifier.notify("hello");
    EXPECT_EQ(journal, (Vector<String>{"a:2:hello", "b:2:hello"}));
}

TEST(MaxConsoleNotifier, ListenerLeavingDuringNotificationIsSafe)
{
    Vector<String> journal;
    RecordingListener leaving("a", journal), staying("b", journal);
    MaxConsoleNotifier notifier;
    leaving.notifierToLeave = &notifier;
    notifier.addListener(&leaving);
    notifier.addListener(&staying);
    notifier.notify("x");
    notifier.notify("y");
    // The walk goes on by index over the shrunk list: the next listener waits for the next message.
    EXPECT_EQ(journal, (Vector<String>{"a:2:x", "b:2:y"}));
}

} // namespace
} // namespace vlk
