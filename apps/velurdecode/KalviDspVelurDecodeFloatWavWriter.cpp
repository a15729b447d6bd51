#include "KalviDspVelurDecodeFloatWavWriter.h"

#include "threads/KalviDspException.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>

namespace vlk::velurdecode {
namespace {

constexpr std::uint32_t bytesPerSample = 4;
constexpr std::uint32_t largestSize = std::numeric_limits<std::uint32_t>::max();
// What the RIFF size counts besides the data: "WAVE", then "fmt " of 18 bytes, "fact" of 4, the data's own
// chunk header.
constexpr std::uint64_t riffOverhead = 4 + 8 + 18 + 8 + 4 + 8;
constexpr std::uint32_t ds64Size = 28;
// The RF64 size of the whole file must still fit its 64 bits.
constexpr std::uint64_t largestData = std::numeric_limits<std::uint64_t>::max() - riffOverhead - 8 - ds64Size;

// Little-endian whatever the machine's order.
void append(std::vector<std::uint8_t>& bytes, std::uint64_t value, int numBytes)
{
    for (int i = 0; i < numBytes; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void appendTag(std::vector<std::uint8_t>& bytes, const char* tag)
{
    // Byte by byte: GCC 12 takes a range insert into the growing header for an overflow.
    for (int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<std::uint8_t>(tag[i]));
}

void appendFormat(std::vector<std::uint8_t>& bytes, std::uint32_t numChannels, std::uint32_t sampleRate)
{
    const std::uint32_t blockAlign = numChannels * bytesPerSample;
    // The byte rate is only a hint to players; rates that overflow it keep the largest it can tell.
    const std::uint64_t byteRate =
        std::min<std::uint64_t>(std::uint64_t{sampleRate} * blockAlign, largestSize);
    appendTag(bytes, "fmt ");
    append(bytes, 18, 4);
    append(bytes, 3, 2);
    append(bytes, numChannels, 2);
    append(bytes, sampleRate, 4);
    append(bytes, byteRate, 4);
    append(bytes, blockAlign, 2);
    append(bytes, 32, 2);
    append(bytes, 0, 2);
}

} // namespace

FloatWavWriter::FloatWavWriter(const File& file, std::uint32_t numChannels, std::uint32_t sampleRate,
                               std::uint64_t numFrames)
    : file(file), numChannels(numChannels), sampleRate(sampleRate), numFrames(numFrames)
{
    assert(numChannels >= 1 && numChannels <= 0xFFFF / bytesPerSample);
    // Only a length estimated from a damaged header comes near: no disk holds such a file.
    if (numFrames > largestData / (numChannels * bytesPerSample))
        throw Exception("Too many frames for a WAV file: " + std::to_string(numFrames), __FILE__, __LINE__);
    // The writer appends to what is there; a folder is left for the writer to refuse.
    if (file.existsAsFile() && !file.deleteFile())
        throw Exception("Couldnt replace file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
    writer = std::make_unique<FileWriter>(file);
    const std::vector<std::uint8_t> header = makeHeader();
    if (!writer->write(header.data(), static_cast<std::int64_t>(header.size())))
        throw Exception("Couldnt write file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
}

// The ds64 chunk is written only when needed, rather than reserved as JUNK: the length is known up front.
std::vector<std::uint8_t> FloatWavWriter::makeHeader() const
{
    const std::uint64_t dataBytes = numFrames * numChannels * bytesPerSample;
    const bool isRf64 = riffOverhead + dataBytes > largestSize;
    std::vector<std::uint8_t> header;
    appendTag(header, isRf64 ? "RF64" : "RIFF");
    append(header, isRf64 ? largestSize : riffOverhead + dataBytes, 4);
    appendTag(header, "WAVE");
    if (isRf64) {
        appendTag(header, "ds64");
        append(header, ds64Size, 4);
        append(header, riffOverhead + 8 + ds64Size + dataBytes, 8);
        append(header, dataBytes, 8);
        append(header, numFrames, 8);
        // No table of other chunks' sizes.
        append(header, 0, 4);
    }
    appendFormat(header, numChannels, sampleRate);
    appendTag(header, "fact");
    append(header, 4, 4);
    append(header, isRf64 ? largestSize : numFrames, 4);
    appendTag(header, "data");
    append(header, isRf64 ? largestSize : dataBytes, 4);
    return header;
}

void FloatWavWriter::writeFrames(const AudioBufferBase& buffer, std::uint64_t count)
{
    assert(count <= numFrames - framesWritten && count <= buffer.getNumSamples());
    bytes.resize(count * numChannels * bytesPerSample);
    std::uint8_t* out = bytes.data();
    for (std::uint64_t frame = 0; frame < count; ++frame) {
        for (std::uint32_t channel = 0; channel < numChannels; ++channel) {
            const auto bits = std::bit_cast<std::uint32_t>(buffer.getChannel(channel)[frame]);
            for (std::uint32_t i = 0; i < bytesPerSample; ++i)
                *out++ = static_cast<std::uint8_t>(bits >> (8 * i));
        }
    }
    if (!writer->write(bytes.data(), static_cast<std::int64_t>(bytes.size())))
        throw Exception("Couldnt write file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
    framesWritten += count;
}

} // namespace vlk::velurdecode
