#include "audiofiles/KalviDspAudioFileReader.h"

#include "audiofiles/KalviDspFfmpegFixtures.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <filesystem>
#include <vector>

using namespace vlk;
using vlk::test::ScratchFolder;
using namespace std::string_literals;

namespace {

std::string typeOf(const ScratchFolder& scratch, const std::string& name, const std::string& bytes)
{
    return AudioFileReader::getFileType(File(scratch.write(name, bytes)));
}

// The message of the exception that create throws, or "" when it throws none.
std::string createMessage(const std::string& path)
{
    try {
        AudioFileReader::create(File(path));
    } catch (const Exception& exception) {
        return exception.message;
    }
    return "";
}

// A stereo 16-bit file at 44100 Hz written by libsndfile, an independent writer: frame f holds f * 8 - 2000
// on the left and its negation on the right.
std::string writeStereoWav(const ScratchFolder& scratch, const std::string& name, int numFrames)
{
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::string path = scratch / name;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    std::vector<short> samples;
    for (int frame = 0; frame < numFrames; ++frame) {
        samples.push_back(static_cast<short>(frame * 8 - 2000));
        samples.push_back(static_cast<short>(2000 - frame * 8));
    }
    sf_writef_short(file, samples.data(), numFrames);
    sf_close(file);
    return path;
}

} // namespace

TEST(AudioFileReaderFileType, HeaderWinsOverExtension)
{
    const ScratchFolder scratch;
    EXPECT_EQ(typeOf(scratch, "riff.mp3", "RIFF\x10\0\0\0WAVE"s), "WAV File");
    EXPECT_EQ(typeOf(scratch, "rf64.aif", "RF64\xff\xff\xff\xff"s), "WAV File");
    EXPECT_EQ(typeOf(scratch, "bw64.txt", "BW64"), "WAV File");
    EXPECT_EQ(typeOf(scratch, "form.wav", "FORM\0\0\0\4AIFF"s), "AIFF File");
    // The header is compared whole and with its case.
    EXPECT_EQ(typeOf(scratch, "riff.txt", "riff\0\0\0\0"s), "unknown");
}

TEST(AudioFileReaderFileType, ForeignHeaderFallsToTheExtensionInAnyCase)
{
    const ScratchFolder scratch;
    EXPECT_EQ(typeOf(scratch, "short.aif", "AB"), "AIFF File");
    EXPECT_EQ(typeOf(scratch, "empty.aiff", ""), "AIFF File");
    EXPECT_EQ(typeOf(scratch, "LOUD.WAV", "abcdefgh"), "WAV File");
    for (const char* name : {"a.bwf", "a.bw64", "a.amb", "a.UHJ"})
        EXPECT_EQ(typeOf(scratch, name, "abcdefgh"), "WAV File") << name;
    EXPECT_EQ(typeOf(scratch, "song.Mp3", "ID3\3"), "MP3 File");
    EXPECT_EQ(typeOf(scratch, "notes.txt", "abcdefgh"), "unknown");
    EXPECT_EQ(typeOf(scratch, "wav", "abcdefgh"), "unknown");
}

TEST(AudioFileReaderFileType, DotBeforeTheLastSlashIsNoExtension)
{
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch / "take.wav");
    EXPECT_EQ(typeOf(scratch, "take.wav/noextension", "abcdefgh"), "unknown");
}

TEST(AudioFileReaderFileType, MissingFileThrows)
{
    const ScratchFolder scratch;
    EXPECT_THROW(AudioFileReader::getFileType(File(scratch / "absent.wav")), Exception);
}

TEST(AudioFileReaderCreate, EmptyPathGivesNoReader)
{
    EXPECT_EQ(AudioFileReader::create(File()), nullptr);
}

TEST(AudioFileReaderCreate, MissingFileAndFolderDoNotExist)
{
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch / "x.wav");
    for (const std::string& path : {scratch / "absent.wav", scratch / "x.wav"})
        EXPECT_EQ(createMessage(path), "File \"" + path + "\" does not exist.");
}

// Files that no native reader takes and the platform's services do not open either, whatever they are named.
// A list that names a sound file beside it is one: a file is read from its own bytes only.
TEST(AudioFileReaderCreate, FilesWithoutAReaderAreNotValid)
{
    const ScratchFolder scratch;
    writeStereoWav(scratch, "inside.wav", 100);
    for (const std::string& path : {scratch.write("notes.txt", "plain text"), scratch.write("empty.ogg", ""),
                                    scratch.write("noise.xyz", test::makePatternBytes(100000)),
                                    scratch.write("list.txt", "ffconcat version 1.0\nfile inside.wav\n")})
        EXPECT_EQ(createMessage(path), "File \"" + path + "\" is not a valid audio file.");
}

#ifdef VELUR_WITHOUT_FFMPEG
// Built without the platform's services, a format that only they read has no reader.
TEST(AudioFileReaderCreate, WithoutThePlatformsServicesAFlacFileIsNotValid)
{
    const ScratchFolder scratch;
    const test::EncodedFile flac = test::encodeWithFfmpeg(
        scratch.path(), "take", {"flac", ".flac", "-c:a flac", 44100, true, "", 0.0f}, 0.1);
    EXPECT_EQ(createMessage(flac.path), "File \"" + flac.path + "\" is not a valid audio file.");
}
#endif

// A .mp3 file goes to the MPEG reader, which refuses one without frames in its own words.
TEST(AudioFileReaderCreate, Mp3FileWithoutFramesIsRefusedByItsReader)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("song.mp3", "ID3\3\0"s);
    EXPECT_EQ(createMessage(path), "file \"" + path + "\" is not a valid MP3 file");
}

// The WAV reader's refusal leaves the factory as it stands: no other reader is tried.
TEST(AudioFileReaderCreate, RefusalOfTheWavReaderPassesThrough)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("broken.mp3", "RIFF\4\0\0\0JUNK"s);
    EXPECT_EQ(createMessage(path), "file \"" + path + "\" is not a valid WAV file");
}

TEST(AudioFileReaderCreate, WavFileIsReadWhole)
{
    const ScratchFolder scratch;
    const std::string path = writeStereoWav(scratch, "ramp.wav", 1000);
    const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(File(path));
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->getMetadata().formatName, "WAV File");
    EXPECT_EQ(reader->getFileExtension(), ".wav");
    EXPECT_EQ(reader->getNumChannels(), 2u);
    EXPECT_EQ(reader->getNumSamples(), 1000u);
    EXPECT_EQ(reader->getFilePath(), path);

    AudioBuffer buffer(2, 1000);
    ASSERT_TRUE(reader->readSamples(buffer, 0, 1000, 0));
    for (int frame = 0; frame < 1000; ++frame) {
        ASSERT_EQ(buffer.getChannel(0)[frame], (frame * 8 - 2000) / 32768.0f) << frame;
        ASSERT_EQ(buffer.getChannel(1)[frame], (2000 - frame * 8) / 32768.0f) << frame;
    }

    AudioBuffer right(1, 10);
    ASSERT_TRUE(reader->readChannel(right, 0, 0, 10, 1, 995));
    EXPECT_EQ(right.getChannel(0)[4], (2000 - 999 * 8) / 32768.0f);
    EXPECT_EQ(right.getChannel(0)[5], 0.0f);
}
