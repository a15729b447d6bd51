#pragma once

#include <atomic>

namespace vlk::velurhost {

// A bar on standard error while a long render runs, when standard error is a terminal. Main thread.
class ProgressBar
{
public:
    ProgressBar();
    ~ProgressBar();

    void begin(long total);
    void show(long done);
    void end();

private:
    void clear();

    bool enabled;
    long total = 0;
    int shownPercent = -1;
    // Cleared from whichever thread prints a line.
    std::atomic<bool> visible{false};
    double startSeconds = 0;
};

} // namespace vlk::velurhost
