#include "KalviDspExternalTestSupport.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sndfile.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>

namespace vlk::external::test {

// Under the race detector the buffering thread runs several times slower, and faster than real time it falls
// behind: the player then plays silence where frames are missing. Real time is what it keeps up with.
std::string speedKeepingUp(const std::string& speed)
{
#if defined(__SANITIZE_THREAD__)
    static_cast<void>(speed);
    return "--speed 1";
#else
    return "--speed " + speed;
#endif
}

HostRun runVelurhost(const std::string& folder, const std::string& script, const std::string& options)
{
    const std::string scriptPath = folder + "/script.txt";
    std::ofstream(scriptPath) << script;
    const std::string errorPath = folder + "/stderr.txt";
    const std::string command = shellQuoted(VELURHOST_PATH) + " --path " + shellQuoted(folder) + " " + options + " " +
                                shellQuoted(scriptPath) + " </dev/null 2>" + shellQuoted(errorPath);
    HostRun run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    char buffer[4096];
    std::string output;
    while (std::fgets(buffer, sizeof(buffer), pipe) != nullptr)
        output += buffer;
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        run.lines.push_back(line);
    std::ifstream errors(errorPath);
    run.errors.assign(std::istreambuf_iterator<char>(errors), std::istreambuf_iterator<char>());
    return run;
}

std::vector<std::string> withoutBuffering(const std::vector<std::string>& lines)
{
    std::vector<std::string> kept;
    for (const std::string& line : lines)
        if (line.rfind("dump: buffering ", 0) != 0)
            kept.push_back(line);
    return kept;
}

namespace {

SNDFILE* openForWriting(const std::string& path, int format, int numChannels)
{
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = numChannels;
    info.format = format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    return file;
}

} // namespace

void writeFloatWav(const std::string& path, int numChannels, long numFrames, const SampleFunction& value)
{
    SNDFILE* file = openForWriting(path, SF_FORMAT_WAV | SF_FORMAT_FLOAT, numChannels);
    std::vector<float> frames(static_cast<std::size_t>(numFrames * numChannels));
    for (long k = 0; k < numFrames; ++k)
        for (int c = 0; c < numChannels; ++c)
            frames[static_cast<std::size_t>(k * numChannels + c)] = value(k, c);
    sf_writef_float(file, frames.data(), numFrames);
    sf_close(file);
}

void writeAiff(const std::string& path, int numChannels, long numFrames, const std::vector<Cue>& cues,
               const std::function<short(long frame, int channel)>& value)
{
    SNDFILE* file = openForWriting(path, SF_FORMAT_AIFF | SF_FORMAT_PCM_16, numChannels);
    auto points = std::make_unique<SF_CUES>();
    points->cue_count = static_cast<std::uint32_t>(cues.size());
    for (std::size_t i = 0; i < cues.size(); ++i) {
        SF_CUE_POINT& point = points->cue_points[i];
        point.indx = cues[i].identifier;
        point.position = cues[i].position;
        point.sample_offset = cues[i].position;
        cues[i].name.copy(point.name, sizeof(point.name) - 1);
    }
    sf_command(file, SFC_SET_CUE, points.get(), sizeof(SF_CUES));
    std::vector<short> frames(static_cast<std::size_t>(numFrames * numChannels));
    for (long k = 0; k < numFrames; ++k)
        for (int c = 0; c < numChannels; ++c)
            frames[static_cast<std::size_t>(k * numChannels + c)] = value(k, c);
    sf_writef_short(file, frames.data(), numFrames);
    sf_close(file);
}

std::vector<float> Recording::channel(int channel) const
{
    std::vector<float> values;
    for (long k = 0; k < numFrames; ++k)
        values.push_back(at(k, channel));
    return values;
}

Recording readRecording(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        throw std::runtime_error("cannot read the recording " + path);
    Recording recording;
    recording.numChannels = info.channels;
    recording.numFrames = static_cast<long>(info.frames);
    recording.sampleRate = info.samplerate;
    recording.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, recording.samples.data(), info.frames);
    sf_close(file);
    return recording;
}

} // namespace vlk::external::test
