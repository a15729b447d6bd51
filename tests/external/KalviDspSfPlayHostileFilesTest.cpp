// Files made to hurt: each is refused or opened at once, and the object plays on after it.
#include "KalviDspExternalTestSupport.h"
#include "KalviDspHostTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vlk::external::test {
namespace {

using host::test::ScratchFolder;
using Lines = std::vector<std::string>;

std::string littleEndian(std::uint32_t value, int numBytes)
{
    std::string bytes;
    for (int index = 0; index < numBytes; ++index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFF);
    return bytes;
}

std::string bigEndian(std::uint32_t value, int numBytes)
{
    std::string bytes = littleEndian(value, numBytes);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

// 8-bit PCM at 48 kHz with a legal header of any channel count, and a second of data for few of them.
std::string makeWideWav(std::uint16_t channels)
{
    const std::string format = littleEndian(1, 2) + littleEndian(channels, 2) + littleEndian(48000, 4) +
                               littleEndian(48000u * channels, 4) + littleEndian(channels, 2) +
                               littleEndian(8, 2);
    const std::string chunks = "fmt " + littleEndian(16, 4) + format + "data" + littleEndian(57600, 4) +
                               std::string(57600, '\x80');
    return "RIFF" + littleEndian(static_cast<std::uint32_t>(4 + chunks.size()), 4) + "WAVE" + chunks;
}

std::string makeAiff(std::uint16_t channels, std::uint32_t frames, std::uint16_t depth, const std::string& rest)
{
    const std::string rate44100("\x40\x0E\xAC\x44\0\0\0\0\0\0", 10);
    const std::string chunks = "COMM" + bigEndian(18, 4) + bigEndian(channels, 2) + bigEndian(frames, 4) +
                               bigEndian(depth, 2) + rate44100 + "SSND" + bigEndian(16, 4) +
                               std::string(16, '\0') + rest;
    return "FORM" + bigEndian(static_cast<std::uint32_t>(4 + chunks.size()), 4) + "AIFF" + chunks;
}

// MARK chunks of one marker each that claim 65535.
std::string makeMarkerFlood(int numChunks)
{
    std::string chunks;
    for (int index = 0; index < numChunks; ++index)
        chunks += "MARK" + bigEndian(10, 4) + bigEndian(65535, 2) + bigEndian(1, 2) + bigEndian(7, 4) +
                  std::string(2, '\0');
    return makeAiff(1, 4, 16, chunks);
}

TEST(SfPlayHostileFiles, EachIsRefusedOrOpenedAndTheObjectPlaysOn)
{
    ScratchFolder scratch;
    writeFloatWav(scratch.path() + "/half.wav", 2, 22050, [](long k, int) { return 0.001f * (k % 100); });
    ASSERT_EQ(::mkfifo((scratch.path() + "/x.wav").c_str(), 0600), 0);
    scratch.write("wide.wav", makeWideWav(5760));
    scratch.write("negative.aif", makeAiff(0xFFFE, 0, 0xFFF0, ""));
    scratch.write("marks.aif", makeMarkerFlood(2000));
    const HostRun run =
        runVelurhost(scratch.path(), "!new velur.sfplay~ @numchannels 2\nopen x.wav\nopen wide.wav\n"
                                     "open negative.aif\nopen marks.aif\nopen half.wav\n!dsp on\n1\n!run 1s\n");
    ASSERT_EQ(run.status, 0) << run.errors;
    const Lines lines = withoutBuffering(run.lines);
    ASSERT_GE(lines.size(), 9u) << run.errors;
    const std::string folder = scratch.path() + "/";
    EXPECT_EQ(lines[0], "error: velur.sfplay~: Couldnt open file \"" + folder + "x.wav\"");
    EXPECT_EQ(lines[1], "error: velur.sfplay~: file \"" + folder + "wide.wav\" is not a valid WAV file");
    EXPECT_EQ(lines[2], "error: velur.sfplay~: file \"" + folder + "negative.aif\" is not a valid AIFF file");
    EXPECT_EQ(Lines(lines.begin() + 3, lines.begin() + 9),
              (Lines{"dump: length 0.090703", "dump: numchannels 1", "dump: filename marks.aif",
                     "dump: length 500.", "dump: numchannels 2", "dump: filename half.wav"}));
    EXPECT_NE(std::find(lines.begin(), lines.end(), "dump: bang"), lines.end());
}

} // namespace
} // namespace vlk::external::test
