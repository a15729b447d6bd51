#pragma once

#include "KalviDspHostConsole.h"
#include "KalviDspHostOutlet.h"

#include "ext.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vlk::host::test {

// Collects the Max window's lines, formatted as velurhost prints them, while it lives.
class ConsoleCapture
{
public:
    ConsoleCapture();
    ~ConsoleCapture();
    std::vector<std::string> lines();

private:
    std::mutex lock;
    std::vector<std::string> captured;
};

// Collects what an outlet sends, one text per message: the selector, then the atoms as the Max window
// shows them. The outlet may outlive the capture and the capture the outlet.
class OutletCapture
{
public:
    explicit OutletCapture(void* outlet);
    std::vector<std::string> messages();

private:
    struct State
    {
        std::mutex lock;
        std::vector<std::string> captured;
    };
    std::shared_ptr<State> state = std::make_shared<State>();
};

// A folder under /tmp for one test, removed with what it holds.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    const std::string& path() const { return folder; }
    std::string write(const std::string& name, const std::string& contents) const;

private:
    std::string folder;
};

std::vector<t_atom> atoms(const std::string& text);
std::string text(long ac, const t_atom* av);

} // namespace vlk::host::test
