#pragma once

#include "audiofiles/KalviDspAudioFilesManager.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspFile.h"
#include "files/KalviDspFileReader.h"
#include "math/KalviDspVector.h"

#include <cstdint>
#include <memory>

namespace vlk {

// A reader of one sound file, built for one path and read for as long as that file stays loaded; never
// writes. Its metadata are constant after construction and may be read from any thread; the reads carry one
// file position and scratch state, so one thread at a time reads: the player holds its diskMutex.
class AudioFileReader : public AudioFilesManager
{
public:
    ~AudioFileReader() override;

    // Wider files are refused: every read goes through scratch of one sample per channel per frame, and no
    // output of the package comes near this many.
    static constexpr std::uint32_t maxNumChannels = 1024;

    // Null only for an empty path. Throws Exception for a missing file, a folder, a file refused by its
    // reader, and one that no reader takes.
    static std::unique_ptr<AudioFileReader> create(const File& file);
    // "WAV File", "AIFF File", "MP3 File" or "unknown": by the first four bytes, then by the extension.
    // Throws when the file cannot be opened.
    static String getFileType(const File& file);
    static bool isWavFile(const File& file);
    static bool isMp3File(const File& file);
    // Null when the file is not of the reader's type; the reader's constructor throws for content it refuses.
    static std::unique_ptr<AudioFileReader> createWavReader(const File& file);
    static std::unique_ptr<AudioFileReader> createAiffReader(const File& file);
    static std::unique_ptr<AudioFileReader> createMp3Reader(const File& file);
    // The platform's audio file services, untested by type; null when they do not open the file.
    static std::unique_ptr<AudioFileReader> createCoreAudioReader(const File& file);

    std::uint32_t getNumChannels() const;
    std::uint64_t getNumSamples() const;
    double getSampleRate() const;
    double getDurationInMs() const;
    const AudioFilesMetadata& getMetadata() const;
    // The shared empty string when no file is open.
    const String& getFilePath() const;

    // numSamples frames of every file channel from file frame position into buffer from sample bufferOffset
    // on. False, with nothing written, when the buffer is too short or has fewer channels than the file;
    // buffer channels beyond the file's are left as they are. Frames behind the file's end read as zeros.
    bool readSamples(AudioBufferBase& buffer, std::uint64_t bufferOffset, std::uint64_t numSamples,
                     std::uint64_t position);
    // The same for file channel fileChannel into buffer channel bufferChannel, in blocks through scratch.
    bool readChannel(AudioBufferBase& buffer, std::uint32_t bufferChannel, std::uint64_t bufferOffset,
                     std::uint64_t numSamples, std::uint32_t fileChannel, std::uint64_t position);

protected:
    // Records the path that getFilePath gives once the concrete reader has opened fileReader on it.
    explicit AudioFileReader(const File& file);

    // Writes numSamples 32-bit words into each channel array up to the first null entry: left-justified
    // signed integers, or floats when metadata.isFloatingPoint is set, and zeros behind the end of the file.
    virtual bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) = 0;

    // The acceptance test of every reader: a rate above 0, a depth, and 1 to maxNumChannels channels.
    bool hasAcceptableFormat() const;

    // Declared first so that it is destroyed last.
    std::unique_ptr<FileReader> fileReader;

private:
    static bool isAcceptable(const AudioFileReader* reader);

    AudioBuffer conversionBuffer;
    // One pointer per file channel and a closing null, which the raw reads' zero-fill stops at.
    Vector<int*> channelPointers;
    String filePath;
};

} // namespace vlk
