#pragma once

#include "files/KalviDspShellCommand.h"

#include <functional>
#include <string>
#include <vector>

namespace vlk::external::test {

// What a run of velurhost printed: the Max window and the dump outlet on standard output, the rest (its own
// errors, the log's echo, sanitizer reports) on standard error.
struct HostRun
{
    int status = -1;
    std::vector<std::string> lines;
    std::string errors;
};

// velurhost with the folder on its search path, the script from a file, standard input closed. The folder of
// the built externals is on its path by default.
HostRun runVelurhost(const std::string& folder, const std::string& script, const std::string& options = "");
// The lines without those of the buffering level, which come when the buffering thread gets to them.
std::vector<std::string> withoutBuffering(const std::vector<std::string>& lines);
using vlk::test::shellQuoted;
// The option of a pace at which the disk side keeps up with the audio, so that a recording holds every frame
// of the file; speed where it can.
std::string speedKeepingUp(const std::string& speed);

// A sound file whose sample of frame k and channel c is value(k, c).
using SampleFunction = std::function<float(long frame, int channel)>;
// 32-bit float WAV, by libsndfile.
void writeFloatWav(const std::string& path, int numChannels, long numFrames, const SampleFunction& value);

struct Cue
{
    int identifier;
    unsigned position;
    // Odd lengths only: libsndfile counts a terminating zero in even ones.
    std::string name;
};
// 16-bit AIFF with markers, by libsndfile; value(k, c) is a whole 16-bit sample.
void writeAiff(const std::string& path, int numChannels, long numFrames, const std::vector<Cue>& cues,
               const std::function<short(long frame, int channel)>& value);

// A recording of velurhost's --out, read by libsndfile.
struct Recording
{
    int numChannels = 0;
    long numFrames = 0;
    double sampleRate = 0;
    std::vector<float> samples;

    float at(long frame, int channel) const
    {
        return samples[static_cast<std::size_t>(frame) * static_cast<std::size_t>(numChannels) +
                       static_cast<std::size_t>(channel)];
    }
    std::vector<float> channel(int channel) const;
};
Recording readRecording(const std::string& path);

} // namespace vlk::external::test
