#include "audiofiles/KalviDspFfmpegFixtures.h"
#include "audiofiles/KalviDspLameFixtures.h"
#include "audiofiles/KalviDspReaderReads.h"
#include "dsp/KalviDspPlayerHarness.h"
#include "files/KalviDspShellCommand.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace vlk::test {
namespace {

using Lines = std::vector<std::string>;

struct DecodeRun
{
    int status = -1;
    std::string output;
    std::string errors;
};

// velurdecode with these arguments, standard input closed, standard error kept in the scratch folder.
DecodeRun runVelurdecode(const ScratchFolder& scratch, const Lines& arguments)
{
    const std::string errorPath = scratch / "stderr.txt";
    std::string command = shellQuoted(VELURDECODE_PATH);
    for (const std::string& argument : arguments)
        command.append(" ").append(shellQuoted(argument));
    command.append(" </dev/null 2>").append(shellQuoted(errorPath));
    DecodeRun run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    char buffer[4096];
    while (std::fgets(buffer, sizeof(buffer), pipe) != nullptr)
        run.output += buffer;
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.errors = readWholeFile(errorPath);
    return run;
}

// The output's samples as libsndfile reads them, one vector per channel; fails the test when its form is
// not float WAV of the expected shape.
Channels readFloatWav(const std::string& path, int numChannels, int sampleRate, std::int64_t numFrames)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    EXPECT_NE(file, nullptr) << path << ": " << sf_strerror(nullptr);
    if (file == nullptr)
        return {};
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT) << path;
    EXPECT_EQ(info.channels, numChannels) << path;
    EXPECT_EQ(info.samplerate, sampleRate) << path;
    EXPECT_EQ(info.frames, numFrames) << path;
    std::vector<float> interleaved(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);
    Channels channels(static_cast<std::size_t>(info.channels));
    for (std::size_t channel = 0; channel < channels.size(); ++channel)
        for (std::size_t frame = 0; frame < static_cast<std::size_t>(info.frames); ++frame)
            channels[channel].push_back(interleaved[frame * channels.size() + channel]);
    return channels;
}

Lines splitLines(const std::string& text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Frame counts past one block of the program's, which holds 2^18 samples whatever the channel count, so that
// a block's seam and a short last block are crossed.
TEST(VelurDecodeSamples, EveryFrameIsWhatLibsndfileReadsFromTheSameFile)
{
    struct DecodeCase
    {
        std::string name;
        int format;
        int numChannels;
        std::int64_t numFrames;
        int sampleRate;
    };
    const std::vector<DecodeCase> cases{
        {"mono16.wav", SF_FORMAT_PCM_16, 1, 300001, 48000},
        {"stereo16.wav", SF_FORMAT_PCM_16, 2, 262145, 44100},
        {"stereo24.wav", SF_FORMAT_PCM_24, 2, 131073, 96000},
        {"five.wav", SF_FORMAT_FLOAT, 5, 60000, 22050},
        {"empty.wav", SF_FORMAT_PCM_16, 2, 0, 44100},
        {"mono24.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 1, 270000, 32000},
        {"stereo16.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 2, 140000, 44100},
    };
    ScratchFolder scratch;
    for (const DecodeCase& decodeCase : cases) {
        const SoundFile sound =
            writeNoiseFile(scratch, decodeCase.name, decodeCase.format, decodeCase.numChannels,
                           decodeCase.numFrames, decodeCase.sampleRate);
        const std::string output = scratch / (decodeCase.name + ".out.wav");
        const DecodeRun run = runVelurdecode(scratch, {sound.path, output});
        ASSERT_EQ(run.status, 0) << decodeCase.name << ": " << run.errors;
        EXPECT_EQ(run.output, "") << decodeCase.name;
        EXPECT_EQ(run.errors, "") << decodeCase.name;
        const Channels decoded =
            readFloatWav(output, decodeCase.numChannels, decodeCase.sampleRate, decodeCase.numFrames);
        ASSERT_EQ(decoded.size(), sound.samples.size()) << decodeCase.name;
        for (std::size_t channel = 0; channel < decoded.size(); ++channel)
            EXPECT_EQ(findFirstDifference(sound.samples[channel], decoded[channel]), -1)
                << decodeCase.name << " channel " << channel;
    }
}

// The decoder's floats unchanged, exactly the reader's length, for each MPEG version and bit rate mode. The
// constant bit rate has frames too small for a tag: its length is estimated from the file's size and may
// reach past the stream's end by more than the reader's one block of silence there.
TEST(VelurDecodeSamples, AnMp3FileIsWhatItsReaderGives)
{
    const std::vector<LameEncoding> encodings{
        {48000, 'j', BitRateMode::variable, 3},
        {22050, 's', BitRateMode::constant, 48},
        {11025, 'm', BitRateMode::freeFormat, 32},
    };
    ScratchFolder scratch;
    for (const LameEncoding& encoding : encodings) {
        const std::string name = describe(encoding);
        const LameMp3 mp3 = encodeWithLame(scratch.path(), name + ".mp3", encoding, 3.0);
        const Channels expected = readThroughReader(mp3.path);
        const std::string output = scratch / (name + ".out.wav");
        const DecodeRun run = runVelurdecode(scratch, {mp3.path, output});
        ASSERT_EQ(run.status, 0) << name << ": " << run.errors;
        const Channels decoded =
            readFloatWav(output, static_cast<int>(getNumChannels(encoding)), encoding.sampleRate,
                         static_cast<std::int64_t>(expected[0].size()));
        ASSERT_EQ(decoded.size(), expected.size()) << name;
        for (std::size_t channel = 0; channel < decoded.size(); ++channel)
            EXPECT_EQ(findFirstDifference(expected[channel], decoded[channel]), -1)
                << name << " channel " << channel;
    }
}

TEST(VelurDecodeSamples, FilesOfThePlatformAreWhatTheirReaderGives)
{
    ScratchFolder scratch;
    for (const FfmpegFormat& format : getFfmpegFormats()) {
        const EncodedFile file = encodeWithFfmpeg(scratch.path(), format.name, format, 1.0);
        const Channels expected = readThroughReader(file.path);
        const std::string output = scratch / (std::string(format.name) + ".out.wav");
        const DecodeRun run = runVelurdecode(scratch, {file.path, output});
        ASSERT_EQ(run.status, 0) << format.name << ": " << run.errors;
        const Channels decoded =
            readFloatWav(output, 2, format.sampleRate, static_cast<std::int64_t>(expected[0].size()));
        ASSERT_EQ(decoded.size(), expected.size()) << format.name;
        for (std::size_t channel = 0; channel < decoded.size(); ++channel)
            EXPECT_EQ(findFirstDifference(expected[channel], decoded[channel]), -1)
                << format.name << " channel " << channel;
    }
}

// The writer appends to what is there, so a file left at the output's path must go first.
TEST(VelurDecodeSamples, AnExistingOutputIsReplacedWhole)
{
    ScratchFolder scratch;
    const SoundFile sound = writeNoiseFile(scratch, "in.wav", SF_FORMAT_PCM_16, 2, 1000);
    const std::string output = scratch.write("out.wav", makePatternBytes(100000));
    const DecodeRun run = runVelurdecode(scratch, {sound.path, output});
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(readWholeFile(output).size(), 58u + 1000 * 2 * 4);
    const Channels decoded = readFloatWav(output, 2, 44100, 1000);
    ASSERT_EQ(decoded.size(), 2u);
    EXPECT_EQ(findFirstDifference(sound.samples[1], decoded[1]), -1);
}

// The library's WAV reader takes the output's float form and its fact chunk: a second decoding writes the
// same bytes.
TEST(VelurDecodeSamples, TheOutputDecodesToItself)
{
    ScratchFolder scratch;
    const SoundFile sound = writeNoiseFile(scratch, "in.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 3, 5000);
    const std::string once = scratch / "once.wav";
    const std::string twice = scratch / "twice.wav";
    ASSERT_EQ(runVelurdecode(scratch, {sound.path, once}).status, 0);
    ASSERT_EQ(runVelurdecode(scratch, {once, twice}).status, 0);
    EXPECT_EQ(readWholeFile(twice), readWholeFile(once));
}

// The player is the oracle: whatever its info posts for the file, the program prints, line for line.
TEST(VelurDecodeInfo, PrintsTheLinesOfThePlayersInfo)
{
    const std::vector<std::pair<std::string, int>> cases{
        {"stereo16.wav", SF_FORMAT_PCM_16},
        {"float.wav", SF_FORMAT_RF64 | SF_FORMAT_FLOAT},
        {"mono24.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
    };
    ScratchFolder scratch;
    AudioFilePlayer player(2, 192000);
    for (const auto& [name, format] : cases) {
        const SoundFile sound = writeNoiseFile(scratch, name, format, name.starts_with("mono") ? 1 : 2, 4410);
        player.open(sound.path);
        Vector<String> expected;
        player.getInfo(expected);
        const DecodeRun run = runVelurdecode(scratch, {"--info", sound.path});
        ASSERT_EQ(run.status, 0) << name << ": " << run.errors;
        EXPECT_EQ(splitLines(run.output), Lines(expected.begin(), expected.end())) << name;
        EXPECT_EQ(run.errors, "") << name;
    }
}

// Decoding and --info alike: the library's own text, once, and no output file.
TEST(VelurDecodeFailures, TheLibrarysTextAndStatusOne)
{
    struct FailureCase
    {
        std::string name;
        std::string bytes;
        std::string message;
    };
    ScratchFolder scratch;
    const std::vector<FailureCase> cases{
        {"missing.wav", "", "File \"" + scratch / "missing.wav" + "\" does not exist."},
        {"broken.wav", std::string("RIFF\x04\0\0\0WAVE", 12),
         "file \"" + scratch / "broken.wav" + "\" is not a valid WAV file"},
        {"broken.aif", std::string("FORM\0\0\0\x04", 8) + "AIFF",
         "file \"" + scratch / "broken.aif" + "\" is not a valid AIFF file"},
        {"notes.txt", "just text", "File \"" + scratch / "notes.txt" + "\" is not a valid audio file."},
        {"song.mp3", "no frames here", "file \"" + scratch / "song.mp3" + "\" is not a valid MP3 file"},
    };
    for (const FailureCase& failure : cases) {
        const std::string input =
            failure.bytes.empty() ? scratch / failure.name : scratch.write(failure.name, failure.bytes);
        const std::string output = scratch / "out.wav";
        for (const Lines& arguments : {Lines{input, output}, Lines{"--info", input}}) {
            const DecodeRun run = runVelurdecode(scratch, arguments);
            EXPECT_EQ(run.status, 1) << failure.name << " " << arguments[0];
            EXPECT_EQ(run.errors, "velurdecode: " + failure.message + "\n") << arguments[0];
            EXPECT_EQ(run.output, "") << failure.name;
            EXPECT_FALSE(pathExists(output)) << failure.name;
        }
    }
}

TEST(VelurDecodeFailures, AnOutputThatCannotBeWrittenGivesTheLibrarysText)
{
    ScratchFolder scratch;
    const SoundFile sound = writeNoiseFile(scratch, "in.wav", SF_FORMAT_PCM_16, 1, 100);
    const std::string notAFolder = scratch.write("plain", "bytes");
    const DecodeRun run = runVelurdecode(scratch, {sound.path, notAFolder + "/out.wav"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "velurdecode: Couldnt create or write in folder \"" + notAFolder + "\"\n");
}

TEST(VelurDecodeArguments, AnythingButTheTwoFormsGivesTheUsageAndStatusTwo)
{
    const std::vector<Lines> cases{
        {},
        {"in.wav"},
        {"in.wav", "out.wav", "more.wav"},
        {"--info"},
        {"--info", "in.wav", "more.wav"},
        {"--frames", "in.wav"},
        {"", "out.wav"},
        {"in.wav", ""},
        {"--info", ""},
    };
    ScratchFolder scratch;
    for (const Lines& arguments : cases) {
        const DecodeRun run = runVelurdecode(scratch, arguments);
        EXPECT_EQ(run.status, 2) << arguments.size();
        EXPECT_EQ(run.errors.rfind("usage: velurdecode FILE OUT.wav\n", 0), 0u) << run.errors;
        EXPECT_EQ(run.output, "");
    }
}

} // namespace
} // namespace vlk::test
