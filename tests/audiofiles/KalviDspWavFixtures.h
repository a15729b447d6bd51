#pragma once

#include "audiofiles/KalviDspWavFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace vlk::test {

// Byte images of WAV, RF64 and BWF files laid out chunk by chunk, so that a test can write exactly the
// layout it is about, faults included.

std::string littleEndian16(std::uint16_t value);
std::string littleEndian32(std::uint32_t value);
std::string littleEndian64(std::uint64_t value);

// Header, content and the pad byte behind an odd size.
std::string makeChunk(const std::string& id, const std::string& content);
// A header stating sizeField whatever the content is, and no pad byte: for sizes that lie.
std::string makeChunkWithSize(const std::string& id, std::uint32_t sizeField, const std::string& content);

// The 16-byte fmt content; the average bytes per second follow from the other fields.
std::string makeFormatContent(std::uint16_t tag, std::uint16_t numChannels, std::uint32_t sampleRate,
                              std::uint16_t bitsPerSample);
// The same with the average bytes per second given: for depths above 64, where it decides the frame size.
std::string makeFormatContent(std::uint16_t tag, std::uint16_t numChannels, std::uint32_t sampleRate,
                              std::uint16_t bitsPerSample, std::uint32_t averageBytesPerSecond);
// The 40-byte fmt content of WAVE_FORMAT_EXTENSIBLE with one of the subformats below.
std::string makeExtensibleFormatContent(std::uint16_t numChannels, std::uint32_t sampleRate,
                                        std::uint16_t bitsPerSample, const std::string& subformat);

// The 16 subformat bytes as they lie in a file.
extern const std::string pcmSubformat;
extern const std::string floatSubformat;
extern const std::string ambisonicPcmSubformat;
extern const std::string ambisonicFloatSubformat;

// "RIFF", the size of what follows, "WAVE" and the chunks.
std::string makeRiffFile(const std::string& chunks);
// "RIFF" with the size field given.
std::string makeRiffFileWithSize(std::uint32_t riffSize, const std::string& chunks);
// "RF64", 0xFFFFFFFF, "WAVE", a 28-byte ds64 chunk with the true RIFF size and dataSize, then the chunks.
std::string makeRf64File(const std::string& chunks, std::uint64_t dataSize);

// A canonical RIFF file: fmt with tag 1 or 3, then data holding sampleBytes.
std::string makeSimpleWavFile(std::uint16_t tag, std::uint16_t numChannels, std::uint16_t bitsPerSample,
                              const std::string& sampleBytes);

// Content of a bext chunk: the fixed fields, zero-padded to their widths, then the coding history.
struct BextContent
{
    std::string description;
    std::string originator;
    std::string originatorReference;
    std::string originationDate;
    std::string originationTime;
    std::uint32_t timeReferenceLow = 0;
    std::uint32_t timeReferenceHigh = 0;
    std::uint16_t version = 0;
    std::string umid; // up to 64 bytes
    std::string codingHistory;
};
std::string makeBextContent(const BextContent& content);

// One 40-byte chna track record; identifiers are zero-padded to 12, 14 and 11 bytes.
std::string makeChnaTrackRecord(std::uint16_t trackIndex, const std::string& audioTrackUid,
                                const std::string& audioTrackFormatIdRef,
                                const std::string& audioPackFormatIdRef);

// Writes bytes to name in the scratch folder and opens it; throws what the reader throws.
std::unique_ptr<WavFileReader> openWavImage(const ScratchFolder& scratch, const std::string& bytes,
                                            const std::string& name = "image.wav");
// The message of the exception that the reader throws for bytes, or "" when the file opens.
std::string getWavRefusal(const ScratchFolder& scratch, const std::string& bytes,
                          const std::string& name = "refused.wav");
// The reader's refusal text for a path.
std::string makeWavRefusalText(const std::string& path);

// What the tests of every reader use.

// Every frame of the file through readSamples, in a buffer of the file's channels.
std::unique_ptr<AudioBuffer> readAllFrames(AudioFileReader& reader);
// Reads numFrames frames at position into a buffer prefilled with a sentinel, at bufferOffset, and checks
// every sample of the buffer: the sentinel outside the span; inside it, expectedSample(frame, channel) for
// the numFileFrames frames of a file of numChannels channels, and zeros behind its end.
void expectPartialRead(AudioFileReader& reader, int numChannels, int numFileFrames,
                       const std::function<float(int frame, int channel)>& expectedSample,
                       std::uint64_t bufferOffset, std::uint64_t numFrames, std::uint64_t position);
// Equal to the bit, so that NaNs, signed zeros and a last-place rounding all count.
::testing::AssertionResult bitsEqual(float actual, float expected);

// Deterministic bytes standing for samples: a seeded generator, so that every byte value turns up.
std::string makeRandomBytes(std::size_t length, std::uint32_t seed);

} // namespace vlk::test
