#include "KalviDspHostTestSupport.h"

#include "KalviDspHostAtomParser.h"
#include "KalviDspHostAtomText.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vlk::host::test {

ConsoleCapture::ConsoleCapture()
{
    Console::instance().setSink([this](const Console::Line& line) {
        std::lock_guard<std::mutex> guard(lock);
        captured.push_back(line.format());
    });
}

ConsoleCapture::~ConsoleCapture()
{
    Console::instance().setSink({});
}

std::vector<std::string> ConsoleCapture::lines()
{
    std::lock_guard<std::mutex> guard(lock);
    return captured;
}

OutletCapture::OutletCapture(void* outlet)
{
    static_cast<Outlet*>(outlet)->connect([state = state](t_symbol* selector, long ac, t_atom* av) {
        std::lock_guard<std::mutex> guard(state->lock);
        std::string message = selector->s_name;
        if (ac > 0)
            message.append(" ").append(atomsToText(ac, av));
        state->captured.push_back(message);
    });
}

std::vector<std::string> OutletCapture::messages()
{
    std::lock_guard<std::mutex> guard(state->lock);
    return state->captured;
}

ScratchFolder::ScratchFolder()
{
    char pattern[] = "/tmp/velur-host-XXXXXX";
    folder = mkdtemp(pattern);
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string ScratchFolder::write(const std::string& name, const std::string& contents) const
{
    const std::string path = folder + "/" + name;
    std::ofstream(path, std::ios::binary) << contents;
    return path;
}

std::vector<t_atom> atoms(const std::string& text)
{
    return parseAtoms(text);
}

std::string text(long ac, const t_atom* av)
{
    return atomsToText(ac, av);
}

} // namespace vlk::host::test
