#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"
#include "audiofiles/KalviDspInterleavedFrameReader.h"
#include "files/KalviDspFile.h"
#include "files/KalviDspInputStream.h"
#include "text/KalviDspString.h"

#include <cstdint>

namespace vlk {

// Reads AIFF and AIFC files: big-endian integers of 8, 16, 24 and 32 bits, and the AIFC forms "NONE",
// "twos", "sowt" (little-endian), "fl32" and "FL32". The only reader that fills the metadata's markers, from
// the MARK chunk. The file is parsed once here; each read then sets the file position from the frame number,
// so reads may come in any order. One thread at a time (the player's diskMutex).
class AiffFileReader : public AudioFileReader
{
public:
    // Throws vlk::Exception when the file cannot be opened or its content is refused.
    explicit AiffFileReader(const File& file);

    String getFileExtension() const override;

protected:
    bool readRawSamples(int** channels, std::uint64_t numSamples, std::uint64_t position) override;

private:
    [[noreturn]] void refuse() const;
    void parse();
    void walkChunks(InputStream& stream, std::int64_t limit);
    bool readCommonChunk(InputStream& stream, std::uint32_t chunkSize);
    bool readCompressionType(InputStream& stream);
    void readSoundDataChunk(InputStream& stream, std::uint32_t chunkSize);
    InterleavedFrameReader::Layout getLayout() const;
    InterleavedFrameReader::Converter getConverter() const;

    std::int32_t bytesPerFrame = 0;
    std::uint64_t dataOffset = 0;
    bool isLittleEndian = false;
    // Holds the scratch array of one block of raw file data.
    InterleavedFrameReader frameReader;
};

} // namespace vlk
