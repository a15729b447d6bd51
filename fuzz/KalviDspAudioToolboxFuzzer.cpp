// The platform's audio file services over FFmpeg, on the fuzzer's bytes in memory: a file that opens is
// described, given the reader's client format, read in blocks as far as a bound, and read again after seeks
// that the bytes choose, behind the end included. What a read reports must hold: no more frames than asked
// for, zeros behind those that came.
#include "audiofiles/coreaudio/KalviDspAudioToolbox.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// Frames of all channels read in all at most, and in one read: enough to cross decoded frames and the end of
// a short stream, few enough to keep the executions many.
constexpr std::uint64_t largestWholeRead = 1 << 15;
constexpr UInt32 blockFrames = 1024;
constexpr UInt32 largestChannelCount = 64;

struct Bytes
{
    const std::uint8_t* data;
    std::size_t size;
};

OSStatus readBytes(void* client, SInt64 position, UInt32 count, void* buffer, UInt32* numRead)
{
    const Bytes& bytes = *static_cast<const Bytes*>(client);
    const std::size_t start =
        std::min<std::size_t>(static_cast<std::size_t>(std::max<SInt64>(position, 0)), bytes.size);
    *numRead = static_cast<UInt32>(std::min<std::size_t>(count, bytes.size - start));
    std::memcpy(buffer, bytes.data + start, *numRead);
    return noErr;
}

SInt64 sizeOf(void* client)
{
    return static_cast<SInt64>(static_cast<const Bytes*>(client)->size);
}

class Buffers
{
public:
    explicit Buffers(UInt32 numChannels)
        : samples(std::size_t{numChannels} * blockFrames),
          list(static_cast<AudioBufferList*>(
              std::malloc(sizeof(AudioBufferList) + numChannels * sizeof(AudioBuffer))))
    {
        list->mNumberBuffers = numChannels;
        AudioBuffer* buffers = list->mBuffers;
        for (UInt32 channel = 0; channel < numChannels; ++channel)
            buffers[channel] = {1, blockFrames * 4, samples.data() + std::size_t{channel} * blockFrames};
    }
    ~Buffers() { std::free(list); }
    Buffers(const Buffers&) = delete;
    Buffers& operator=(const Buffers&) = delete;

    // Reads a block and checks what the read reports; the frames that came.
    UInt32 read(ExtAudioFileRef file)
    {
        std::fill(samples.begin(), samples.end(), 1.0f);
        UInt32 frames = blockFrames;
        if (ExtAudioFileRead(file, &frames, list) != noErr)
            return 0;
        if (frames > blockFrames)
            std::abort();
        for (UInt32 channel = 0; channel < list->mNumberBuffers; ++channel)
            for (UInt32 frame = frames; frame < blockFrames; ++frame)
                if (samples[std::size_t{channel} * blockFrames + frame] != 0.0f)
                    std::abort();
        return frames;
    }

private:
    std::vector<float> samples;
    AudioBufferList* list;
};

void readAll(ExtAudioFileRef file, std::uint64_t seed)
{
    AudioStreamBasicDescription format{};
    UInt32 size = sizeof(format);
    ExtAudioFileGetProperty(file, kExtAudioFileProperty_FileDataFormat, &size, &format);
    SInt64 length = 0;
    size = sizeof(length);
    ExtAudioFileGetProperty(file, kExtAudioFileProperty_FileLengthFrames, &size, &length);
    if (length < 0 || format.mChannelsPerFrame == 0 || format.mChannelsPerFrame > largestChannelCount)
        return;
    format.mFormatID = kAudioFormatLinearPCM;
    format.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved;
    format.mBytesPerPacket = 4;
    format.mFramesPerPacket = 1;
    format.mBytesPerFrame = 4;
    format.mBitsPerChannel = 32;
    if (ExtAudioFileSetProperty(file, kExtAudioFileProperty_ClientDataFormat, sizeof(format), &format) !=
        noErr)
        return;
    Buffers buffers(format.mChannelsPerFrame);
    const std::uint64_t bound = largestWholeRead / format.mChannelsPerFrame;
    for (std::uint64_t done = 0; done < bound;) {
        const UInt32 frames = buffers.read(file);
        if (frames == 0)
            break;
        done += frames;
    }
    const SInt64 positions[] = {
        length, length - 1,     length + 1000, static_cast<SInt64>(seed % (std::uint64_t(length) + 1)),
        0,      SInt64{1} << 62};
    for (const SInt64 position : positions)
        if (ExtAudioFileSeek(file, position) == noErr)
            buffers.read(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes{data, size};
    std::uint64_t seed = size;
    for (std::size_t index = 0; index < size; index += 61)
        seed = seed * 31 + data[index];
    AudioFileID file = nullptr;
    if (AudioFileOpenWithCallbacks(&bytes, readBytes, nullptr, sizeOf, nullptr, 0, &file) != noErr)
        return 0;
    ExtAudioFileRef extFile = nullptr;
    if (ExtAudioFileWrapAudioFileID(file, false, &extFile) == noErr) {
        readAll(extFile, seed);
        ExtAudioFileDispose(extFile);
    }
    AudioFileClose(file);
    return 0;
}
