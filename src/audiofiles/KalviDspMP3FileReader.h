#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/mpeg/KalviDspMpegAudioDecoder.h"
#include "files/KalviDspFile.h"
#include "text/KalviDspString.h"

#include <cstdint>
#include <memory>

namespace vlk {

// MPEG audio behind the sample-addressed reader: skips an ID3v2 tag, estimates the length (1152 samples a
// frame, from a Xing or Info tag or from the file's size), keeps one decoded frame, and turns a read at any
// position into a walk from the decoder's table of every fourth frame. Samples are 32-bit floats. One thread
// at a time (the player's diskMutex).
class MP3FileReader : public AudioFileReader
{
public:
    // Throws vlk::Exception when the file cannot be opened or holds no frame in its first 32768 bytes
    // behind the tag.
    explicit MP3FileReader(const File& file);
    ~MP3FileReader() override;

    String getFileExtension() const override;

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override;

private:
    [[noreturn]] void refuse() const;
    void skipId3Tag();
    bool readNextBlock();
    void fillWithSilence();
    void seek(std::uint64_t position);

    // Reads through its own copy of fileReader, which only keeps the path and the descriptor's life.
    std::unique_ptr<MpegAudioDecoder> decoder;
    float decodedLeft[MpegAudioDecoder::maxSamplesPerFrame] = {};
    float decodedRight[MpegAudioDecoder::maxSamplesPerFrame] = {};
    std::int32_t decodedStart = 0;
    std::int32_t decodedEnd = 0;
    // The file sample that the next delivered sample stands for; -1 after a failed seek.
    std::int64_t currentPosition = 0;
};

} // namespace vlk
