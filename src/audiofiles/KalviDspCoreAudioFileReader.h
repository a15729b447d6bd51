#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/coreaudio/KalviDspAudioToolbox.h"
#include "files/KalviDspMemoryBlock.h"

#include <cstdint>

namespace vlk {

// The last resort of the factory: any file that no native reader takes, through the platform's audio file
// services, which get the bytes through callbacks on this reader's FileReader and give 32-bit floats back.
// Whether the services took the file is decided once, in the constructor; one thread at a time reads (the
// player's diskMutex), and the services call the callbacks on that thread.
class CoreAudioFileReader : public AudioFileReader
{
public:
    // Throws only when the file cannot be opened; content the services refuse leaves isOpened() false.
    explicit CoreAudioFileReader(const File& file);
    ~CoreAudioFileReader() override;

    String getFileExtension() const override;
    bool isOpened() const { return isOpen; }

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override;

private:
    bool openWithServices();
    void fillClientFormat();
    void allocateBufferList();
    bool readBlock(int** channels, std::uint32_t blockFrames, std::uint64_t done);

    static OSStatus readBytes(void* reader, SInt64 position, UInt32 requestCount, void* buffer,
                              UInt32* actualCount);
    static SInt64 getSize(void* reader);

    bool isOpen = false;
    AudioFileID audioFile = nullptr;
    ExtAudioFileRef extAudioFile = nullptr;
    AudioStreamBasicDescription clientFormat{};
    MemoryBlock interleaveBuffer;
    AudioBufferList* bufferList = nullptr;
    std::uint64_t currentPosition = 0;
};

} // namespace vlk
