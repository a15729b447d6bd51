#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace vlk::host {

// There are no windows here: each file dialog takes the next answer given in advance, a path or a cancel.
// A dialog without an answer waiting is cancelled.
class FileDialogs
{
public:
    static FileDialogs& instance();

    void answerWithPath(const std::string& path);
    void answerWithCancel();
    void clearAnswers();
    // The next answer, consumed; empty for a cancel.
    std::optional<std::string> takeAnswer();

private:
    // Guards answers.
    std::mutex lock;
    std::deque<std::optional<std::string>> answers;
};

} // namespace vlk::host
