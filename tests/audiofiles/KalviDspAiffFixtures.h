#pragma once

#include "audiofiles/KalviDspAiffFileReader.h"
#include "files/KalviDspScratchFolder.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace vlk::test {

// Byte images of AIFF and AIFC files laid out chunk by chunk, so that a test can write exactly the layout it
// is about, faults included. Everything is big-endian, as the format is.

std::string bigEndian16(std::uint16_t value);
std::string bigEndian32(std::uint32_t value);

// The ten bytes of an 80-bit extended float, by a general encoder: sign, biased exponent, and the mantissa
// with its explicit top bit, rounded down to 64 bits.
std::string makeExtendedFloat(double value);
// The ten bytes from their two parts, for values no double gives.
std::string makeExtendedFloat(std::uint16_t signAndExponent, std::uint64_t mantissa);

// Header and content, with the pad byte that the format asks for behind an odd size.
std::string makeAiffChunk(const std::string& id, const std::string& content);
// A header stating sizeField whatever the content is, and no pad byte: for sizes that lie, and for writers
// that leave the pad out.
std::string makeAiffChunkWithSize(const std::string& id, std::uint32_t sizeField, const std::string& content);

// The 18 bytes of a plain COMM chunk.
std::string makeCommonContent(std::uint16_t numChannels, std::uint32_t numFrames, std::uint16_t bitsPerSample,
                              double sampleRate);
// The same with the ten rate bytes given.
std::string makeCommonContentWithRateBytes(std::uint16_t numChannels, std::uint32_t numFrames,
                                           std::uint16_t bitsPerSample, const std::string& rateBytes);
// An AIFC COMM: the 18 bytes, the compression type and its name as a padded Pascal string.
std::string makeAifcCommonContent(std::uint16_t numChannels, std::uint32_t numFrames,
                                  std::uint16_t bitsPerSample, double sampleRate,
                                  const std::string& compression);

// SSND content: the offset, a block size of 0, offset bytes of filler, then the samples.
std::string makeSoundDataContent(const std::string& sampleBytes, std::uint32_t offset = 0);

struct MarkerSpec
{
    std::uint16_t identifier = 0;
    std::uint32_t position = 0;
    std::string name;

    bool operator==(const MarkerSpec&) const = default;
};
// For the messages of failed expectations.
void PrintTo(const MarkerSpec& marker, std::ostream* stream);
// MARK content: the count, then per marker its identifier, position, name length, name, and a pad byte
// when the length is even.
std::string makeMarkerContent(const std::vector<MarkerSpec>& markers);

// "FORM", the size of what follows, the form type ("AIFF" or "AIFC") and the chunks.
std::string makeFormFile(const std::string& formType, const std::string& chunks);
std::string makeFormFileWithSize(const std::string& formType, std::uint32_t formSize,
                                 const std::string& chunks);
// FVER content of the one AIFC version.
std::string makeVersionContent();

// A plain AIFF file at 44100 Hz: COMM counting the frames that sampleBytes holds, then SSND.
std::string makeSimpleAiffFile(std::uint16_t numChannels, std::uint16_t bitsPerSample,
                               const std::string& sampleBytes);
// An AIFC file at 44100 Hz: FVER, COMM with the compression type, SSND.
std::string makeSimpleAifcFile(std::uint16_t numChannels, std::uint16_t bitsPerSample,
                               const std::string& compression, const std::string& sampleBytes);

// Overwrites the compression type of the AIFC file at path, for the layouts that libsndfile names otherwise
// than the reader does (it calls 24-bit little-endian "42n1", where the reader takes "sowt").
void renameCompression(const std::string& path, const std::string& compression);

// Writes bytes to name in the scratch folder and opens it; throws what the reader throws.
std::unique_ptr<AiffFileReader> openAiffImage(const ScratchFolder& scratch, const std::string& bytes,
                                              const std::string& name = "image.aif");
// The message of the exception that the reader throws for bytes, or "" when the file opens.
std::string getAiffRefusal(const ScratchFolder& scratch, const std::string& bytes,
                           const std::string& name = "refused.aif");
// The reader's refusal text for a path.
std::string makeAiffRefusalText(const std::string& path);
// Channel 0 of a file, whole.
std::vector<float> readFirstChannel(AudioFileReader& reader);

} // namespace vlk::test
