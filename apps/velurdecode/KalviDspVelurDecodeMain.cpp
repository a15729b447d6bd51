// velurdecode: decodes a sound file through the library's readers into a 32-bit float WAV file, or prints
// the description that the player's info posts for it.
#include "KalviDspVelurDecodeFloatWavWriter.h"

#include "audiofiles/KalviDspAudioFileDescription.h"
#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "threads/KalviDspException.h"
#include "threads/KalviDspLog.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace {

using vlk::AudioFileReader;
using vlk::Exception;
using vlk::File;
using vlk::velurdecode::FloatWavWriter;

constexpr int failureStatus = 1;
constexpr int usageStatus = 2;
// A block holds this many samples, whatever the channel count, so a wide file takes fewer frames at a time.
constexpr std::uint64_t samplesPerBlock = 1 << 18;

int printUsage()
{
    std::fputs("usage: velurdecode FILE OUT.wav\n       velurdecode --info FILE\n", stderr);
    return usageStatus;
}

// The factory gives null only for an empty path, which the arguments' check has turned away.
std::unique_ptr<AudioFileReader> openReader(const char* path)
{
    return AudioFileReader::create(File(path));
}

void printInfo(const char* path)
{
    std::printf("%s\n", vlk::describeAudioFile(*openReader(path)).c_str());
}

// The native readers' rates are whole already; others are rounded to the format's whole hertz.
std::uint32_t getWavSampleRate(const AudioFileReader& reader)
{
    const double rate = std::round(reader.getSampleRate());
    if (rate < 1.0 || rate > std::numeric_limits<std::uint32_t>::max())
        throw Exception("A WAV file cannot hold the sample rate of " + reader.getFilePath(), __FILE__,
                        __LINE__);
    return static_cast<std::uint32_t>(rate);
}

// Exactly the reader's length, though an estimated one may stop short of the decoded sound or reach past
// it: the read that reaches the sound's end gives zeros behind it and false, and zeros follow without
// further reads, which would seek.
void copyFrames(AudioFileReader& reader, FloatWavWriter& writer)
{
    const std::uint64_t numFrames = reader.getNumSamples();
    const std::uint64_t blockFrames = std::max<std::uint64_t>(1, samplesPerBlock / reader.getNumChannels());
    vlk::AudioBuffer block(reader.getNumChannels(), std::min(blockFrames, numFrames));
    bool soundEnded = false;
    for (std::uint64_t position = 0; position < numFrames;) {
        const std::uint64_t count = std::min(blockFrames, numFrames - position);
        if (soundEnded)
            block.clear();
        else
            soundEnded = !reader.readSamples(block, 0, count, position);
        writer.writeFrames(block, count);
        position += count;
    }
}

void decode(const char* path, const char* outputPath)
{
    const std::unique_ptr<AudioFileReader> reader = openReader(path);
    const File output(outputPath);
    FloatWavWriter writer(output, reader->getNumChannels(), getWavSampleRate(*reader),
                          reader->getNumSamples());
    try {
        copyFrames(*reader, writer);
    } catch (...) {
        // A header that promises frames the file lacks would mislead whatever reads it next.
        output.deleteFile();
        throw;
    }
}

bool isOption(const char* argument)
{
    return std::strncmp(argument, "--", 2) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    const bool isInfo = argc == 3 && std::strcmp(argv[1], "--info") == 0;
    if (argc != 3 || (!isInfo && isOption(argv[1])) || *argv[1] == '\0' || *argv[2] == '\0')
        return printUsage();
    // Every exception writes its own report, file and line included, to the system log and from there to
    // standard error, once for each layer it crosses. The one line below tells the same failure.
    vlk::setLogDestination(vlk::LogDestination::nowhere);
    try {
        if (isInfo)
            printInfo(argv[2]);
        else
            decode(argv[1], argv[2]);
    } catch (const Exception& exception) {
        std::fprintf(stderr, "velurdecode: %s\n", exception.message.c_str());
        return failureStatus;
    } catch (const std::bad_alloc&) {
        std::fputs("velurdecode: out of memory\n", stderr);
        return failureStatus;
    }
    return 0;
}
