#include "KalviDspVelurHostOptions.h"

#include <charconv>
#include <cstring>

namespace vlk::velurhost {
namespace {

bool parseNumber(const char* text, double& value)
{
    const char* end = text + std::strlen(text);
    auto result = std::from_chars(text, end, value);
    return result.ec == std::errc() && result.ptr == end;
}

bool parseInteger(const char* text, int& value)
{
    const char* end = text + std::strlen(text);
    auto result = std::from_chars(text, end, value);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

const char* Options::usage()
{
    return "usage: velurhost [--sr RATE] [--vector N] [--speed X] [--path DIR]... [--out FILE.wav] "
           "[SCRIPT | -] [-e LINE]...\n"
           "  --sr RATE      sample rate in Hz (44100)\n"
           "  --vector N     signal vector size in samples (64)\n"
           "  --speed X      audio pace in times real time, 0 for as fast as possible (1)\n"
           "  --path DIR     a folder of the search path for externals and files (repeatable)\n"
           "  --out FILE     records every signal outlet of every object as a 32-bit float WAV\n"
           "  SCRIPT | -     a patch script, or - for standard input; then each -e LINE\n"
           "Script lines: Max messages to the current object, or directives: !new BOXTEXT, !dsp on|off,\n"
           "!connect [I...], !disconnect [I...], !run DURATION, !wait DURATION (500ms, 2s, 1024 samples, "
           "8v),\n"
           "!dialog cancel|PATH, !disable 0|1, !dict NAME KEY VALUE..., !preset store|recall,\n"
           "!state get|set ATOMS, !assist inlet|outlet N (1-based), !answer SELECTOR MESSAGE (the dump\n"
           "outlet's SELECTOR sends MESSAGE back into the object). # starts a comment.\n";
}

std::optional<Options> Options::parse(int argc, char** argv, std::string& failure)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool takesValue = argument == "--sr" || argument == "--vector" || argument == "--speed" ||
                                argument == "--path" || argument == "--out" || argument == "-e";
        if (takesValue && i + 1 >= argc) {
            failure = argument + " needs a value";
            return std::nullopt;
        }
        const char* value = takesValue ? argv[++i] : nullptr;
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--sr") {
            if (!parseNumber(value, options.sampleRate) || options.sampleRate <= 0) {
                failure = std::string("bad sample rate ") + value;
                return std::nullopt;
            }
        } else if (argument == "--vector") {
            if (!parseInteger(value, options.vectorSize) || options.vectorSize < 1 ||
                options.vectorSize > 2048) {
                failure = std::string("bad vector size ") + value + " (1 to 2048)";
                return std::nullopt;
            }
        } else if (argument == "--speed") {
            if (!parseNumber(value, options.speed) || options.speed < 0) {
                failure = std::string("bad speed ") + value;
                return std::nullopt;
            }
        } else if (argument == "--path") {
            options.searchFolders.push_back(value);
        } else if (argument == "--out") {
            options.outputFile = value;
        } else if (argument == "-e") {
            options.lines.push_back(value);
        } else if (argument.size() > 1 && argument[0] == '-' && argument != "-") {
            failure = "unknown option " + argument;
            return std::nullopt;
        } else if (options.script.empty()) {
            options.script = argument;
        } else {
            failure = "more than one script: " + argument;
            return std::nullopt;
        }
    }
    return options;
}

} // namespace vlk::velurhost
