// velurhost: a headless patcher that loads externals, plays a patch script and records the signal outlets.
#include "KalviDspVelurHostOptions.h"
#include "KalviDspVelurHostScriptError.h"
#include "KalviDspVelurHostSession.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

using vlk::velurhost::Options;
using vlk::velurhost::ScriptError;
using vlk::velurhost::Session;

void reportError(const std::string& where, const std::string& message)
{
    std::fprintf(stderr, "velurhost: %s%s\n", where.c_str(), message.c_str());
}

// Runs every line of the stream; false after the first script error.
bool runStream(Session& session, std::istream& input, const std::string& name)
{
    std::string line;
    for (long number = 1; std::getline(input, line); ++number) {
        try {
            session.execute(line);
        } catch (const ScriptError& error) {
            reportError(name + ":" + std::to_string(number) + ": ", error.what());
            return false;
        }
    }
    return true;
}

// A person at a terminal: a prompt, and an error does not end the session.
void runInteractively(Session& session)
{
    std::string line;
    for (;;) {
        std::fputs("velurhost> ", stderr);
        std::fflush(stderr);
        if (!std::getline(std::cin, line))
            break;
        try {
            session.execute(line);
        } catch (const ScriptError& error) {
            reportError("", error.what());
        }
    }
    std::fputs("\n", stderr);
}

bool runScript(Session& session, const Options& options)
{
    if (options.script == "-")
        return runStream(session, std::cin, "-");
    if (!options.script.empty()) {
        std::ifstream file(options.script);
        if (!file) {
            reportError("", "cannot read " + options.script);
            return false;
        }
        if (!runStream(session, file, options.script))
            return false;
    }
    for (std::size_t i = 0; i < options.lines.size(); ++i) {
        std::istringstream line(options.lines[i]);
        if (!runStream(session, line, "-e " + std::to_string(i + 1)))
            return false;
    }
    if (options.script.empty() && options.lines.empty()) {
        if (isatty(STDIN_FILENO))
            runInteractively(session);
        else
            return runStream(session, std::cin, "-");
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    std::string failure;
    std::optional<Options> options = Options::parse(argc, argv, failure);
    if (!options) {
        reportError("", failure);
        std::fputs(Options::usage(), stderr);
        return 1;
    }
    if (options->help) {
        std::fputs(Options::usage(), stdout);
        return 0;
    }
    Session session(*options);
    bool succeeded = runScript(session, *options);
    try {
        session.finish();
    } catch (const ScriptError& error) {
        reportError("", error.what());
        succeeded = false;
    }
    return succeeded ? 0 : 1;
}
