// velur.sfplay~ as a patch meets it: scripts run by velurhost, and the lines it prints.
#include "KalviDspExternalTestSupport.h"
#include "KalviDspHostTestSupport.h"

#include <charconv>
#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using host::test::ScratchFolder;
using Lines = std::vector<std::string>;

double number(const std::string& text)
{
    double value = -1;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Stereo, 0.5 seconds at 44.1 kHz.
void writeHalfSecond(const ScratchFolder& scratch, const std::string& name)
{
    writeFloatWav(scratch.path() + "/" + name, 2, 22050,
                  [](long k, int c) { return 0.001f * (k % 100) - c * 0.5f; });
}

TEST(SfPlayOpen, AFileOfTheSearchPathIsAnnouncedThroughTheDumpOutlet)
{
    ScratchFolder scratch;
    writeHalfSecond(scratch, "half.wav");
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~ @numchannels 2\nopen half.wav\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"dump: length 500.", "dump: numchannels 2", "dump: filename half.wav"}));
}

TEST(SfPlayOpen, MissingAndRefusedFilesLeaveTheOpenFileInPlace)
{
    ScratchFolder scratch;
    writeHalfSecond(scratch, "half.wav");
    scratch.write("noise.wav", "this is no sound file at all");
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~\nopen half.wav\nopen missing.wav\n"
                                                     "open " +
                                                         scratch.path() +
                                                         "/gone.aif\nopen noise.wav\n"
                                                         "getfilename\ngetnumchannels\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    const Lines lines = withoutBuffering(run.lines);
    ASSERT_EQ(lines.size(), 8u) << run.errors;
    EXPECT_EQ(lines[3], "error: velur.sfplay~: Couldnt locate file :  missing.wav");
    EXPECT_EQ(lines[4], "error: velur.sfplay~: Couldnt locate file :  " + scratch.path() + "/gone.aif");
    // The reader's exception, in its own words.
    EXPECT_EQ(lines[5],
              "error: velur.sfplay~: file \"" + scratch.path() + "/noise.wav\" is not a valid WAV file");
    EXPECT_EQ(lines[6], "dump: filename half.wav");
    EXPECT_EQ(lines[7], "dump: numchannels 2");
}

TEST(SfPlayOpen, NoneAndACancelledDialogDoNothing)
{
    ScratchFolder scratch;
    writeHalfSecond(scratch, "picked.wav");
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~\nopen none\n!dialog cancel\nopen\n"
                                                     "getfilename\n!dialog " +
                                                         scratch.path() + "/picked.wav\nopen\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines), (Lines{"dump: filename \"\"", "dump: length 500.",
                                                  "dump: numchannels 2", "dump: filename picked.wav"}));
}

TEST(SfPlayQueries, WithoutAFileTheAnswersAreEmpty)
{
    ScratchFolder scratch;
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~\ngetlength\ngetnumchannels\ngetfilename\ninfo\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"dump: length 0.", "dump: numchannels 0", "dump: filename \"\"",
                     "post: velur.sfplay~: no audio file"}));
}

TEST(SfPlayQueries, InfoPostsThePathAndTheDescription)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/three.wav", 3, 44100, [](long, int) { return 0.0f; });
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~ @numchannels 2\nopen three.wav\ngetlength\ninfo\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    const Lines lines = withoutBuffering(run.lines);
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[1], "dump: numchannels 3");
    EXPECT_EQ(lines[3], "dump: length 1000.");
    EXPECT_EQ(lines[4], "post: velur.sfplay~: " + scratch.path() + "/three.wav");
    EXPECT_EQ(lines[5].rfind("post: velur.sfplay~: (3 channels, 44.1 kHz, 44100 samples, ", 0), 0u)
        << lines[5];
    EXPECT_EQ(lines[5].back(), ')');
}

TEST(SfPlayQueries, PostDspStatePostsRateAndVectorSize)
{
    ScratchFolder scratch;
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~\n!dsp on\npostdspstate\n",
                                     "--sr 48000 --vector 128");
    ASSERT_EQ(run.status, 0) << run.errors;
    // Each status line ends in its own line feed.
    EXPECT_EQ(withoutBuffering(run.lines), (Lines{"post: velur.sfplay~: samplerate           : 48 kHz", "",
                                                  "post: velur.sfplay~: buffersize           : 128", "",
                                                  "post: velur.sfplay~: latency              : 0", ""}));
}

TEST(SfPlayAssist, OutletsAreNamedAndTheInletIsNot)
{
    ScratchFolder scratch;
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~ @numchannels 3\n!assist outlet 1\n"
                                                     "!assist outlet 3\n!assist outlet 4\n!assist outlet 5\n"
                                                     "!assist inlet 1\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"assist: output #1", "assist: output #3", "assist: playback position", "assist: dumpout",
                     "assist: "}));
}

TEST(SfPlaySeek, OtherFormsAreReportedWithTheirAtoms)
{
    ScratchFolder scratch;
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~\nseek\nseek foo 1\nseek 2 bar\nseek 1.5 2.25 x\n"
                                     "seek \"a b\" 7\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    // seek 2 bar and seek 1.5 2.25 x are well formed: each starts playing and tells progress 0.
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"error: velur.sfplay~: invalid message : seek ",
                     "error: velur.sfplay~: invalid message : seek foo 1 ", "dump: progress 0.",
                     "dump: progress 0.", "error: velur.sfplay~: invalid message : seek a b 7 "}));
}

TEST(SfPlayTransport, StartingWithoutAFileEndsAtTheNextVector)
{
    ScratchFolder scratch;
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~\n!dsp on\n1\n!run 3v\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines), (Lines{"dump: progress 0.", "dump: bang", "dump: progress 0."}));
}

// 25600 frames are 400 vectors of 64: progress climbs by 0.25 a vector, and every second step goes out. The
// samples do not matter here, so the disk side need not keep up.
TEST(SfPlayTransport, ProgressIsThinnedToHalfPercentStepsAndTheEndBangs)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/steps.wav", 1, 25600, [](long, int) { return 0.25f; });
    const HostRun run = runVelurhost(
        scratch.path(), "!new velur.sfplay~\nopen steps.wav\n!dsp on\n1\n!run 410v\n", "--speed 0");
    ASSERT_EQ(run.status, 0) << run.errors;
    Lines expected{"dump: length 580.49884", "dump: numchannels 1", "dump: filename steps.wav"};
    for (int step = 0; step <= 200; ++step)
        expected.push_back("dump: progress " + std::to_string(step / 2) + (step % 2 == 0 ? "." : ".5"));
    // The vector that finds the region over bangs, and tells the unchanged 100 once more.
    expected.push_back("dump: bang");
    expected.push_back("dump: progress 100.");
    EXPECT_EQ(withoutBuffering(run.lines), expected);
}

TEST(SfPlayTransport, ZeroTwoAndPauseStopTheProgressAndResumeGoesOn)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/steps.wav", 1, 25600, [](long, int) { return 0.25f; });
    const HostRun run = runVelurhost(scratch.path(),
                                     "!new velur.sfplay~\nopen steps.wav\n!dsp on\n1\n!run 2v\n0\n!run 5v\n"
                                     "resume\n!run 2v\n2\n!run 5v\nresume\n!run 2v\npause\n!run 5v\n",
                                     "--speed 0");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"dump: length 580.49884", "dump: numchannels 1", "dump: filename steps.wav",
                     "dump: progress 0.", "dump: progress 0.5", "dump: progress 1.", "dump: progress 1.5"}));
}

// The level is told on every vector and after every read; thinned, a few lines stand for 2000 vectors. Two
// threads tell it without a lock, so the thresholds themselves are tested on the listener alone.
TEST(SfPlayTransport, SeekStartsPlayingEvenAfterPause)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/steps.wav", 1, 25600, [](long, int) { return 0.25f; });
    const HostRun run = runVelurhost(scratch.path(),
                                     "!new velur.sfplay~\nopen steps.wav\n!dsp on\n1\npause\n!run 4v\n"
                                     "seek 290\n!run 4v\n",
                                     "--speed 0");
    ASSERT_EQ(run.status, 0) << run.errors;
    // Paused, nothing goes out; the seek tells 0 and plays: about half the file is left, so a vector is a
    // little less than half a percent of it, and every second vector is told.
    const Lines lines = withoutBuffering(run.lines);
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[3], "dump: progress 0.");
    EXPECT_EQ(lines[4], "dump: progress 0.");
    EXPECT_EQ(lines[5].rfind("dump: progress 0.99", 0), 0u) << lines[5];
    EXPECT_EQ(lines[6].rfind("dump: progress 1.99", 0), 0u) << lines[6];
}

// Without a region, the progress stays 0, which always goes out.
TEST(SfPlayTransport, ResumeRightAfterOpeningWithLoopOnTellsProgressZeroOnEveryVector)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/steps.wav", 1, 25600, [](long, int) { return 0.25f; });
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~ @loop 1\nopen steps.wav\n!dsp on\nresume\n!run 3v\n",
                     "--speed 0");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"dump: length 580.49884", "dump: numchannels 1", "dump: filename steps.wav",
                     "dump: progress 0.", "dump: progress 0.", "dump: progress 0."}));
}

TEST(SfPlayTransport, BufferingIsThinned)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/long.wav", 2, 441000, [](long, int) { return 0.1f; });
    const HostRun run = runVelurhost(scratch.path(),
                                     "!new velur.sfplay~ @buffersize 192000\nopen long.wav\n"
                                     "!dsp on\n1\n!run 2000v\n",
                                     "--speed 4");
    ASSERT_EQ(run.status, 0) << run.errors;
    std::vector<double> levels;
    for (const std::string& line : run.lines)
        if (line.rfind("dump: buffering ", 0) == 0)
            levels.push_back(number(line.substr(16)));
    EXPECT_GE(levels.size(), 2u);
    EXPECT_LT(levels.size(), 400u);
    for (double level : levels) {
        EXPECT_GE(level, 0.0);
        EXPECT_LE(level, 100.0);
    }
}

TEST(SfPlayAttributes, BoxValuesAreClippedAndTheSizeIsFixedAfterCreation)
{
    ScratchFolder scratch;
    const HostRun run = runVelurhost(
        scratch.path(), "!new velur.sfplay~ @numchannels 0 @buffersize 1000\n!assist outlet 2\n"
                        "numchannels 1\nbuffersize 192000\nnumchannels 2\nbuffersize 480000\n"
                        "!new velur.sfplay~ @numchannels 300\n!assist outlet 251\n!assist outlet 252\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"assist: playback position",
                     "error: velur.sfplay~: could not dynamically change number of channels",
                     "error: velur.sfplay~: could not dynamically change buffersize",
                     "assist: playback position", "assist: dumpout"}));
}

TEST(SfPlayAttributes, OptionsAreClippedAndLoopIsKept)
{
    ScratchFolder scratch;
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~ @automute 600 @loop 1\ngetautomute\n"
                                     "getloop\nautomute -3\ngetautomute\nmute 5\ngetmute\n"
                                     "bypass -1\ngetbypass\nloop 7\ngetloop\nloop 0\ngetloop\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"dump: automute 500.", "dump: loop 1", "dump: automute 0.", "dump: mute 1",
                     "dump: bypass 0", "dump: loop 1", "dump: loop 0"}));
}

TEST(SfPlayAttributes, DocumentationAttributesAreHiddenFromMessages)
{
    ScratchFolder scratch;
    const HostRun run = runVelurhost(scratch.path(), "!new velur.sfplay~\ngetclassdigest\nclassdigest x\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(withoutBuffering(run.lines),
              (Lines{"error: velur.sfplay~: doesn't understand \"getclassdigest\"",
                     "error: velur.sfplay~: doesn't understand \"classdigest\""}));
}

} // namespace
} // namespace vlk::external::test
