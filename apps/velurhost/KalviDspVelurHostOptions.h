#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vlk::velurhost {

// The command line: velurhost [--sr RATE] [--vector N] [--speed X] [--path DIR]... [--out FILE.wav]
// [SCRIPT | -] [-e LINE]...
struct Options
{
    double sampleRate = 44100;
    int vectorSize = 64;
    // Times real time; 0 renders as fast as it can.
    double speed = 1;
    std::vector<std::string> searchFolders;
    std::string outputFile;
    // Empty without a script; "-" for standard input.
    std::string script;
    std::vector<std::string> lines;
    bool help = false;

    // Empty and sets failure when the command line is wrong.
    static std::optional<Options> parse(int argc, char** argv, std::string& failure);
    static const char* usage();
};

} // namespace vlk::velurhost
