#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/KalviDspChnaChunk.h"
#include "audiofiles/KalviDspInterleavedFrameReader.h"
#include "audiofiles/KalviDspWavBextRecord.h"
#include "files/KalviDspFile.h"
#include "files/KalviDspInputStream.h"
#include "text/KalviDspString.h"
#include "text/KalviDspStringPairArray.h"

#include <cstdint>

namespace vlk {

// Reads RIFF/WAVE files, their 64-bit RF64 form and the broadcast chunks bext, axml and chna. The file is
// parsed once here; each read then sets the file position from the frame number, so reads may come in any
// order. One thread at a time (the player's diskMutex).
class WavFileReader : public AudioFileReader
{
public:
    // Throws vlk::Exception when the file cannot be opened or its content is refused.
    explicit WavFileReader(const File& file);

    String getFileExtension() const override;

    // The broadcast metadata, kept as the file gave it; nothing in the player reads it.
    const StringPairArray& getBextFields() const { return bextFields; }
    const ChnaChunk& getChnaChunk() const { return chnaChunk; }
    const String& getAxmlText() const { return axmlText; }
    // The extensible format named the ambisonic B-format PCM subformat.
    bool isAmbisonic() const { return isAmbisonicFormat; }

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override;

private:
    [[noreturn]] void refuse() const;
    void parseHeader();
    std::int64_t readDs64Chunk(InputStream& stream, std::int64_t start);
    void walkChunks(InputStream& stream, std::int64_t limit);
    void parseFormat(InputStream& stream, std::uint32_t chunkSize);
    void computeFrameSizeFromAverageBytes(std::uint32_t averageBytesPerSecond);
    void parseExtensibleFormat(InputStream& stream, std::uint32_t chunkSize);
    void takeDataChunk(std::int64_t contentStart, std::uint32_t chunkSize);
    void readAxmlChunk(InputStream& stream, std::uint32_t chunkSize);
    InterleavedFrameReader::Layout getLayout() const;
    InterleavedFrameReader::Converter getConverter() const;

    std::int32_t bytesPerFrame = 0;
    std::uint64_t dataOffset = 0;
    std::int64_t dataSize = 0;
    String axmlText;
    // The last bext chunk met by the walk, and its text table.
    WavBextRecord bextRecord;
    StringPairArray bextFields{true};
    ChnaChunk chnaChunk;
    bool isAmbisonicFormat = false;
    // Holds the scratch array of one block of raw file data.
    InterleavedFrameReader frameReader;
};

} // namespace vlk
