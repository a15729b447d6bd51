#include "audiofiles/KalviDspAudioFileReader.h"

#include "audiofiles/KalviDspAiffFileReader.h"
#include "audiofiles/KalviDspCoreAudioFileReader.h"
#include "audiofiles/KalviDspFourCharacterCode.h"
#include "audiofiles/KalviDspMP3FileReader.h"
#include "audiofiles/KalviDspSampleConversion.h"
#include "audiofiles/KalviDspWavFileReader.h"
#include "threads/KalviDspException.h"

#include <algorithm>

namespace vlk {

namespace {

const char* const wavFileType = "WAV File";
const char* const aiffFileType = "AIFF File";
const char* const mp3FileType = "MP3 File";
const char* const unknownFileType = "unknown";

String getFileTypeFromHeader(std::uint32_t header)
{
    if (header == fourCharacterCode("RIFF") || header == fourCharacterCode("RF64") ||
        header == fourCharacterCode("BW64"))
        return wavFileType;
    if (header == fourCharacterCode("FORM"))
        return aiffFileType;
    return String();
}

String getFileTypeFromExtension(const File& file)
{
    if (file.hasAnyFileExtension({".aiff", ".aif"}))
        return aiffFileType;
    if (file.hasAnyFileExtension({".wav", ".bwf", ".bw64", ".amb", ".uhj"}))
        return wavFileType;
    if (file.hasAnyFileExtension({".mp3"}))
        return mp3FileType;
    return unknownFileType;
}

// The type is tested once more, so that each creator may be called on its own.
template <typename Reader> std::unique_ptr<AudioFileReader> createIfOfType(const File& file, const char* type)
{
    if (AudioFileReader::getFileType(file) != type)
        return nullptr;
    return std::make_unique<Reader>(file);
}

String quotedPath(const File& file)
{
    return "\"" + file.getFullPathName() + "\"";
}

} // namespace

AudioFileReader::AudioFileReader(const File& file) : filePath(file.getFullPathName()) {}

AudioFileReader::~AudioFileReader() = default;

// The header wins over the extension: a RIFF file named .mp3 goes to the WAV reader, and a .wav file with a
// foreign header goes there too, to be refused by it.
String AudioFileReader::getFileType(const File& file)
{
    FileReader reader(file);
    // A file shorter than four bytes reads as 0, which no header matches.
    const String type = getFileTypeFromHeader(reader.readUnsignedInt());
    return type.size() != 0 ? type : getFileTypeFromExtension(file);
}

bool AudioFileReader::isWavFile(const File& file)
{
    return getFileType(file) == wavFileType;
}

bool AudioFileReader::isMp3File(const File& file)
{
    return getFileType(file) == mp3FileType;
}

std::unique_ptr<AudioFileReader> AudioFileReader::create(const File& file)
{
    if (file.getFullPathName().size() == 0)
        return nullptr;
    if (!file.existsAsFile())
        throw Exception("File " + quotedPath(file) + " does not exist.", __FILE__, __LINE__);

    // No fallback between readers: a native reader's refusal leaves here, and the platform's services are
    // tried only for files whose header and extension are both foreign.
    const String type = getFileType(file);
    std::unique_ptr<AudioFileReader> reader;
    if (type == aiffFileType)
        reader = createAiffReader(file);
    else if (isWavFile(file))
        reader = createWavReader(file);
    else if (isMp3File(file))
        reader = createMp3Reader(file);
    else
        reader = createCoreAudioReader(file);

    // The length is no part of the test: a file without samples, or in an encoding its reader cannot decode,
    // gives a reader of length 0.
    if (!isAcceptable(reader.get()))
        throw Exception("File " + quotedPath(file) + " is not a valid audio file.", __FILE__, __LINE__);
    return reader;
}

bool AudioFileReader::isAcceptable(const AudioFileReader* reader)
{
    return reader != nullptr && reader->metadata.formatName != unknownFileType &&
           reader->hasAcceptableFormat();
}

bool AudioFileReader::hasAcceptableFormat() const
{
    return metadata.sampleRate > 0.0 && metadata.bitsPerSample != 0 && metadata.numChannels != 0 &&
           metadata.numChannels <= maxNumChannels;
}

std::unique_ptr<AudioFileReader> AudioFileReader::createWavReader(const File& file)
{
    return createIfOfType<WavFileReader>(file, wavFileType);
}

std::unique_ptr<AudioFileReader> AudioFileReader::createAiffReader(const File& file)
{
    return createIfOfType<AiffFileReader>(file, aiffFileType);
}

std::unique_ptr<AudioFileReader> AudioFileReader::createMp3Reader(const File& file)
{
    return createIfOfType<MP3FileReader>(file, mp3FileType);
}

std::unique_ptr<AudioFileReader> AudioFileReader::createCoreAudioReader(const File& file)
{
    auto reader = std::make_unique<CoreAudioFileReader>(file);
    if (!reader->isOpened())
        return nullptr;
    return reader;
}

std::uint32_t AudioFileReader::getNumChannels() const
{
    return metadata.numChannels;
}

std::uint64_t AudioFileReader::getNumSamples() const
{
    return metadata.numSamples;
}

double AudioFileReader::getSampleRate() const
{
    return metadata.sampleRate;
}

double AudioFileReader::getDurationInMs() const
{
    return static_cast<double>(metadata.numSamples) * 1000.0 / metadata.sampleRate;
}

const AudioFilesMetadata& AudioFileReader::getMetadata() const
{
    return metadata;
}

const String& AudioFileReader::getFilePath() const
{
    return fileReader != nullptr ? filePath : String::emptyString();
}

// Runs on the buffering thread, or on the thread of a seek, under the player's diskMutex.
bool AudioFileReader::readSamples(AudioBufferBase& buffer, std::uint64_t bufferOffset,
                                  std::uint64_t numSamples, std::uint64_t position)
{
    if (numSamples == 0)
        return true;
    const std::uint64_t bufferLength = buffer.getNumSamples();
    if (numSamples > bufferLength || bufferOffset > bufferLength - numSamples ||
        metadata.numChannels > buffer.getNumChannels())
        return false;

    channelPointers.resize(std::size_t{metadata.numChannels} + 1);
    for (std::uint32_t channel = 0; channel < metadata.numChannels; ++channel)
        channelPointers[channel] = reinterpret_cast<int*>(buffer.getChannel(channel) + bufferOffset);
    channelPointers[metadata.numChannels] = nullptr;

    if (!readRawSamples(channelPointers.data(), numSamples, position))
        return false;
    if (metadata.isFloatingPoint)
        return true;
    // Once for the whole request, after the raw read: words a raw read left unwritten are converted too.
    for (std::uint32_t channel = 0; channel < metadata.numChannels; ++channel)
        convertToFloat(channelPointers[channel], numSamples);
    return true;
}

bool AudioFileReader::readChannel(AudioBufferBase& buffer, std::uint32_t bufferChannel,
                                  std::uint64_t bufferOffset, std::uint64_t numSamples,
                                  std::uint32_t fileChannel, std::uint64_t position)
{
    const std::uint64_t bufferLength = buffer.getNumSamples();
    if (bufferChannel >= buffer.getNumChannels() || fileChannel >= metadata.numChannels ||
        numSamples > bufferLength || bufferOffset > bufferLength - numSamples)
        return false;
    // Nothing to read; the scratch buffer of 0 frames would have no samples to copy from.
    if (numSamples == 0)
        return true;

    // The scratch holds every file channel, so wide files take smaller blocks.
    const std::uint64_t blockSize = metadata.numChannels < 33 ? 65536 : 8192;
    for (std::uint64_t done = 0; done < numSamples;) {
        const std::uint64_t block = std::min(numSamples - done, blockSize);
        conversionBuffer.resize(metadata.numChannels, block);
        if (!readSamples(conversionBuffer, 0, block, position + done))
            return false;
        buffer.copyToChannel(bufferChannel, bufferOffset + done, conversionBuffer.getChannel(fileChannel),
                             block, 1.0f);
        done += block;
    }
    return true;
}

} // namespace vlk
