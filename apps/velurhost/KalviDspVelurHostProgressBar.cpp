#include "KalviDspVelurHostProgressBar.h"

#include "KalviDspHostStandardOutput.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace vlk::velurhost {
namespace {

constexpr int width = 40;
// Shorter renders end before a bar would help.
constexpr double secondsBeforeShowing = 0.5;

double nowInSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

ProgressBar::ProgressBar() : enabled(isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar()
{
    end();
}

void ProgressBar::begin(long newTotal)
{
    total = newTotal;
    shownPercent = -1;
    startSeconds = nowInSeconds();
    if (enabled)
        host::StandardOutput::setBeforeLine([this] { clear(); });
}

// The bar is drawn again only when its percentage changes.
void ProgressBar::show(long done)
{
    if (!enabled || total <= 0 || nowInSeconds() - startSeconds < secondsBeforeShowing)
        return;
    const int percent = static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total));
    if (percent == shownPercent)
        return;
    shownPercent = percent;
    const int filled = percent * width / 100;
    std::string bar = "\r[";
    bar.append(static_cast<std::size_t>(filled), '#').append(static_cast<std::size_t>(width - filled), ' ');
    bar.append("] ").append(std::to_string(percent)).append("%");
    std::fputs(bar.c_str(), stderr);
    std::fflush(stderr);
    visible = true;
}

void ProgressBar::end()
{
    if (!enabled)
        return;
    host::StandardOutput::setBeforeLine({});
    clear();
    total = 0;
}

void ProgressBar::clear()
{
    if (!visible)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    visible = false;
}

} // namespace vlk::velurhost
