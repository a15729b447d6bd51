#include "audiofiles/KalviDspCoreAudioFileReader.h"

#include "threads/KalviDspException.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vlk {

namespace {

constexpr std::uint64_t framesPerBlock = 8192;
// Bytes of bufferList per channel and in its head: more than the structure needs on any platform.
constexpr std::size_t bufferListBytesPerChannel = 88;
constexpr std::size_t bufferListHeadBytes = 24;

// The extension without its dot, in capitals, before " File": a file without one is named " File".
String formatNameOf(const File& file)
{
    String extension = file.getFileExtension();
    if (extension.size() != 0)
        extension.erase(0, 1);
    extension.toUpper();
    return extension + " File";
}

} // namespace

CoreAudioFileReader::CoreAudioFileReader(const File& file) : AudioFileReader(file)
{
    fileReader = std::make_unique<FileReader>(file);
    metadata.isFloatingPoint = true;
    metadata.bitsPerSample = 32;
    metadata.formatName = formatNameOf(file);
    if (!openWithServices())
        return;
    fillClientFormat();
    if (ExtAudioFileSetProperty(extAudioFile, kExtAudioFileProperty_ClientDataFormat, sizeof(clientFormat),
                                &clientFormat) != noErr)
        return;
    allocateBufferList();
    isOpen = true;
}

CoreAudioFileReader::~CoreAudioFileReader()
{
    ExtAudioFileDispose(extAudioFile);
    AudioFileClose(audioFile);
    std::free(bufferList);
}

String CoreAudioFileReader::getFileExtension() const
{
    return String();
}

// The results of the two property reads are not looked at: a format the services could not describe leaves
// a rate or channel count of 0, which the factory refuses.
bool CoreAudioFileReader::openWithServices()
{
    if (AudioFileOpenWithCallbacks(this, readBytes, nullptr, getSize, nullptr, 0, &audioFile) != noErr)
        return false;
    if (ExtAudioFileWrapAudioFileID(audioFile, false, &extAudioFile) != noErr)
        return false;
    AudioStreamBasicDescription fileFormat{};
    UInt32 size = sizeof(fileFormat);
    ExtAudioFileGetProperty(extAudioFile, kExtAudioFileProperty_FileDataFormat, &size, &fileFormat);
    metadata.numChannels = fileFormat.mChannelsPerFrame;
    metadata.sampleRate = fileFormat.mSampleRate;
    SInt64 length = 0;
    size = sizeof(length);
    ExtAudioFileGetProperty(extAudioFile, kExtAudioFileProperty_FileLengthFrames, &size, &length);
    metadata.numSamples = static_cast<std::uint64_t>(length);
    return true;
}

void CoreAudioFileReader::fillClientFormat()
{
    clientFormat.mSampleRate = metadata.sampleRate;
    clientFormat.mFormatID = kAudioFormatLinearPCM;
    clientFormat.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved;
    clientFormat.mBytesPerPacket = 4;
    clientFormat.mFramesPerPacket = 1;
    clientFormat.mBytesPerFrame = 4;
    clientFormat.mChannelsPerFrame = metadata.numChannels;
    clientFormat.mBitsPerChannel = 32;
}

void CoreAudioFileReader::allocateBufferList()
{
    bufferList = static_cast<AudioBufferList*>(
        std::malloc(metadata.numChannels * bufferListBytesPerChannel + bufferListHeadBytes));
    if (bufferList == nullptr)
        throw Exception("out of memory occured", "", 0, false);
    bufferList->mNumberBuffers = metadata.numChannels;
}

// The frame count that a read writes back is not consulted: a block over the end is delivered whole and
// the position advances all the same; the services write zeros behind the true samples.
bool CoreAudioFileReader::readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position)
{
    if (numSamples == 0)
        return true;
    if (position != currentPosition) {
        if (ExtAudioFileSeek(extAudioFile, static_cast<SInt64>(position)) != noErr)
            return false;
        currentPosition = position;
    }
    for (std::uint64_t done = 0; done < numSamples;) {
        const auto blockFrames = static_cast<std::uint32_t>(std::min(numSamples - done, framesPerBlock));
        if (!readBlock(channels, blockFrames, done))
            return false;
        currentPosition += blockFrames;
        done += blockFrames;
    }
    return true;
}

bool CoreAudioFileReader::readBlock(int** channels, std::uint32_t blockFrames, std::uint64_t done)
{
    const std::uint64_t channelBytes = std::uint64_t{blockFrames} * 4;
    interleaveBuffer.ensureSize(channelBytes * metadata.numChannels);
    if (interleaveBuffer.getData() == nullptr)
        return false;
    auto* scratch = static_cast<char*>(interleaveBuffer.getData());
    ::AudioBuffer* buffers = bufferList->mBuffers;
    for (std::uint32_t channel = 0; channel < metadata.numChannels; ++channel) {
        buffers[channel].mNumberChannels = 1;
        buffers[channel].mDataByteSize = static_cast<UInt32>(channelBytes);
        buffers[channel].mData = scratch + channel * channelBytes;
    }
    UInt32 frames = blockFrames;
    if (ExtAudioFileRead(extAudioFile, &frames, bufferList) != noErr)
        return false;
    // From the last channel to the first, skipping null ones. The block read gives one destination per file
    // channel, so none lies beyond the file's channels to be cleared.
    for (std::uint32_t channel = metadata.numChannels; channel-- > 0;)
        if (channels[channel] != nullptr)
            std::memcpy(channels[channel] + done, scratch + channel * channelBytes, channelBytes);
    return true;
}

// A buffering thread cancelled in this read unwinds from here through FFmpeg's frames; its player destroys
// the reader right after, which frees FFmpeg's contexts as they were left.
OSStatus CoreAudioFileReader::readBytes(void* reader, SInt64 position, UInt32 requestCount, void* buffer,
                                        UInt32* actualCount)
{
    FileReader& file = *static_cast<CoreAudioFileReader*>(reader)->fileReader;
    file.setPosition(position);
    *actualCount = static_cast<UInt32>(file.read(buffer, requestCount));
    return noErr;
}

SInt64 CoreAudioFileReader::getSize(void* reader)
{
    return static_cast<CoreAudioFileReader*>(reader)->fileReader->getTotalLength();
}

} // namespace vlk
