#include "KalviDspHostTestSupport.h"
#include "files/KalviDspShellCommand.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sstream>
#include <sys/wait.h>

namespace vlk::host::test {
namespace {

using vlk::test::shellQuoted;

struct HostRun
{
    int status = -1;
    std::vector<std::string> lines;
    std::string errors;
};

// velurhost with the test external's folder on its path, the script from a file, standard input closed.
HostRun runVelurhost(const ScratchFolder& scratch, const std::string& script, const std::string& options = "")
{
    const std::string scriptPath = scratch.write("script.txt", script);
    const std::string errorPath = scratch.path() + "/stderr.txt";
    const std::string command = shellQuoted(VELURHOST_PATH) + " --speed 0 --path " +
                                shellQuoted(HOST_TEST_EXTERNALS_DIR) + " " + options + " " +
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

TEST(VelurHostScripts, MessagesAndDirectivesPrintTheirLinesInOrder)
{
    ScratchFolder scratch;
    HostRun run = runVelurhost(scratch, R"(# the test external, three channels
!new hosttest~ @numchannels 3 @level 0.25
bang
5
2.5
1 2 3
echo hello "a b" 1.5 2   # a comment after a message
console
getlevel
foo
later x
fromthread
!assist outlet 4
!assist inlet 1
!state get
!state set 0.75 constant
!state get
!dict d1 b 2.5 a 1 c hello
dictionary d1
!preset store
level 0.5
!preset recall
getlevel
)");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.lines, (std::vector<std::string>{
                             "dump: bang",
                             "dump: 5",
                             "dump: 2.5",
                             "dump: 1 2 3",
                             "dump: echo hello \"a b\" 1.5 2",
                             "post: hosttest~: a post",
                             "warning: hosttest~: a warning",
                             "error: hosttest~: an error",
                             "bug: hosttest~: a bug",
                             "post: a post without object",
                             "dump: level 0.25",
                             "error: hosttest~: doesn't understand \"foo\"",
                             "post: hosttest~: later on main thread: 1",
                             "dump: later x",
                             "post: hosttest~: deferred from another thread ran on main thread: 1",
                             "assist: dump outlet",
                             "assist: messages",
                             "state: 0.25 ramp",
                             "state: 0.75 constant",
                             "dump: b 2.5",
                             "dump: a 1",
                             "dump: c hello",
                             "dump: level 0.75",
                         }));
}

TEST(VelurHostScripts, DspConnectionsDisablingAndRunsReachTheObject)
{
    ScratchFolder scratch;
    HostRun run = runVelurhost(scratch, R"(!new hosttest~ @numchannels 2
!dsp on
!run 3v
report
!disconnect 2
!dsp off
!dsp on
!disable 1
!run 100
report
!disable 0
!connect
!dsp on
!run 1 ms   # one vector
report
)");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.lines, (std::vector<std::string>{
                             "post: hosttest~: dsp64 counts 0 1 1, sr 44100, vector 64",
                             "post: hosttest~: performs 3, frames 192, off main thread 3, disabled 0, dsp 1",
                             "post: hosttest~: dsp64 counts 0 1 0, sr 44100, vector 64",
                             "post: hosttest~: performs 3, frames 192, off main thread 3, disabled 1, dsp 1",
                             "post: hosttest~: dsp64 counts 0 1 1, sr 44100, vector 64",
                             "post: hosttest~: performs 4, frames 256, off main thread 4, disabled 0, dsp 1",
                         }));
}

TEST(VelurHostScripts, TheRecordingHoldsEverySignalOutletAndExactlyTheRenderedFrames)
{
    ScratchFolder scratch;
    const std::string wav = scratch.path() + "/out.wav";
    HostRun run =
        runVelurhost(scratch, "!new hosttest~ @numchannels 3 @level 0.5\n!dsp on\n!run 5v\n!run 130\n",
                     "--sr 22050 --vector 32 --out " + shellQuoted(wav));
    ASSERT_EQ(run.status, 0) << run.errors;
    SF_INFO info{};
    SNDFILE* file = sf_open(wav.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(info.channels, 3);
    EXPECT_EQ(info.samplerate, 22050);
    // 5 vectors, then 130 samples rounded up to 5 vectors of 32.
    ASSERT_EQ(info.frames, 320);
    std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, samples.data(), info.frames);
    sf_close(file);
    for (std::size_t k = 0; k < 320; ++k)
        for (std::size_t c = 0; c < 3; ++c)
            ASSERT_FLOAT_EQ(samples[k * 3 + c], static_cast<float>(0.5 * (c + 1) / 10.0 + (k % 64) / 1024.0))
                << "frame " << k << " channel " << c;
}

TEST(VelurHostScripts, OpenAsksTheDialogOrTheSearchPath)
{
    ScratchFolder scratch;
    scratch.write("found.wav", "RIFF");
    HostRun run = runVelurhost(scratch,
                               "!new hosttest~\n!dialog cancel\nopen\n!dialog " + scratch.path() +
                                   "/picked.aif\nopen\n" + "open found.wav\nopen missing.wav\n",
                               "--path " + shellQuoted(scratch.path()));
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.lines, (std::vector<std::string>{
                             "post: hosttest~: dialog cancelled", "error: hosttest~: no path for picked.aif",
                             "dump: opened found.wav", "error: hosttest~: cannot find missing.wav"}));
}

TEST(VelurHostScripts, ScriptErrorsStopWithStatusOneAndAMessage)
{
    ScratchFolder scratch;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"!frobnicate", "unknown directive !frobnicate"},
        {"!new no.such.object~", "unknown class no.such.object~"},
        {"!new hosttest~ fail", "object creation failed: hosttest~ fail"},
        {"bang", "no object yet"},
        {"!new hosttest~\n!run forever", "bad duration"},
        {"!new hosttest~\n!connect 3", "no signal outlet 3"},
    };
    for (const auto& [script, message] : cases) {
        HostRun run = runVelurhost(scratch, script + "\nbang\n");
        EXPECT_EQ(run.status, 1) << script;
        EXPECT_NE(run.errors.find(message), std::string::npos) << script << ": " << run.errors;
        EXPECT_TRUE(run.lines.empty()) << script;
    }
}

TEST(VelurHostScripts, LinesFromTheCommandLineFollowTheScript)
{
    ScratchFolder scratch;
    HostRun run = runVelurhost(scratch, "!new hosttest~\n", "-e 'echo first' -e 7");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.lines, (std::vector<std::string>{"dump: echo first", "dump: 7"}));
}

} // namespace
} // namespace vlk::host::test
