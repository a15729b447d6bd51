#include "KalviDspVelurTonePcmWavWriter.h"

#include "threads/KalviDspException.h"

#include <algorithm>
#include <cmath>

namespace vlk::velurtone {
namespace {

// Little-endian whatever the machine's order.
void appendLittleEndian(std::vector<std::uint8_t>& bytes, std::uint32_t value, int numBytes)
{
    for (int i = 0; i < numBytes; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void appendTag(std::vector<std::uint8_t>& bytes, const char* tag)
{
    bytes.insert(bytes.end(), tag, tag + 4);
}

} // namespace

PcmWavWriter::PcmWavWriter(const File& file, std::uint32_t numChannels, std::uint32_t sampleRate,
                           std::uint32_t numFrames)
    : numChannels(numChannels), sampleRate(sampleRate), numFrames(numFrames)
{
    // The writer appends to what is there.
    if (!file.deleteFile())
        throw Exception("Couldnt replace file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
    writer = std::make_unique<FileWriter>(file);
    if (!writeHeader())
        throw Exception("Couldnt write file " + file.getFullPathName().quoted(), __FILE__, __LINE__);
}

bool PcmWavWriter::writeHeader()
{
    const std::uint32_t blockAlign = numChannels * 2;
    const std::uint32_t dataBytes = numFrames * blockAlign;
    std::vector<std::uint8_t> header;
    appendTag(header, "RIFF");
    appendLittleEndian(header, 36 + dataBytes, 4);
    appendTag(header, "WAVE");
    appendTag(header, "fmt ");
    appendLittleEndian(header, 16, 4);
    appendLittleEndian(header, 1, 2);
    appendLittleEndian(header, numChannels, 2);
    appendLittleEndian(header, sampleRate, 4);
    appendLittleEndian(header, sampleRate * blockAlign, 4);
    appendLittleEndian(header, blockAlign, 2);
    appendLittleEndian(header, 16, 2);
    appendTag(header, "data");
    appendLittleEndian(header, dataBytes, 4);
    return writer->write(header.data(), static_cast<std::int64_t>(header.size()));
}

bool PcmWavWriter::writeFrames(const std::vector<float>& interleaved)
{
    const std::uint32_t available = static_cast<std::uint32_t>(interleaved.size() / numChannels);
    const std::uint32_t count = std::min(available, numFrames - framesWritten);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(count) * numChannels * 2);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count) * numChannels; ++i) {
        const float clipped = std::clamp(interleaved[i], -1.0f, 1.0f);
        const auto sample = static_cast<std::int16_t>(std::lround(clipped * 32767.0f));
        appendLittleEndian(bytes, static_cast<std::uint16_t>(sample), 2);
    }
    framesWritten += count;
    return writer->write(bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

} // namespace vlk::velurtone
