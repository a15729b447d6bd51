#include "audiofiles/KalviDspAiffFixtures.h"

#include "audiofiles/KalviDspWavFixtures.h"
#include "threads/KalviDspException.h"

#include <cmath>
#include <fstream>
#include <stdexcept>

namespace vlk::test {

namespace {

std::string bigEndian(std::uint64_t value, int numBytes)
{
    std::string bytes;
    for (int index = numBytes - 1; index >= 0; --index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFF);
    return bytes;
}

std::string makePascalString(const std::string& text)
{
    std::string bytes = static_cast<char>(text.size()) + text;
    if (bytes.size() % 2 != 0)
        bytes += '\0';
    return bytes;
}

} // namespace

std::string bigEndian16(std::uint16_t value)
{
    return bigEndian(value, 2);
}

std::string bigEndian32(std::uint32_t value)
{
    return bigEndian(value, 4);
}

std::string makeExtendedFloat(double value)
{
    if (value == 0.0)
        return std::string(10, '\0');
    const std::uint16_t sign = std::signbit(value) ? 0x8000 : 0;
    int exponent = 0;
    // frexp gives a fraction in [0.5, 1): the extended form keeps the top bit explicit, in [1, 2).
    const double fraction = std::frexp(std::fabs(value), &exponent);
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 64));
    return makeExtendedFloat(static_cast<std::uint16_t>(sign | (exponent - 1 + 16383)), mantissa);
}

std::string makeExtendedFloat(std::uint16_t signAndExponent, std::uint64_t mantissa)
{
    return bigEndian16(signAndExponent) + bigEndian(mantissa, 8);
}

std::string makeAiffChunk(const std::string& id, const std::string& content)
{
    std::string chunk = makeAiffChunkWithSize(id, static_cast<std::uint32_t>(content.size()), content);
    if (content.size() % 2 != 0)
        chunk += '\0';
    return chunk;
}

std::string makeAiffChunkWithSize(const std::string& id, std::uint32_t sizeField, const std::string& content)
{
    std::string header = id.substr(0, 4);
    header.resize(4, ' ');
    return header + bigEndian32(sizeField) + content;
}

std::string makeCommonContent(std::uint16_t numChannels, std::uint32_t numFrames, std::uint16_t bitsPerSample,
                              double sampleRate)
{
    return makeCommonContentWithRateBytes(numChannels, numFrames, bitsPerSample,
                                          makeExtendedFloat(sampleRate));
}

std::string makeCommonContentWithRateBytes(std::uint16_t numChannels, std::uint32_t numFrames,
                                           std::uint16_t bitsPerSample, const std::string& rateBytes)
{
    return bigEndian16(numChannels) + bigEndian32(numFrames) + bigEndian16(bitsPerSample) + rateBytes;
}

std::string makeAifcCommonContent(std::uint16_t numChannels, std::uint32_t numFrames,
                                  std::uint16_t bitsPerSample, double sampleRate,
                                  const std::string& compression)
{
    return makeCommonContent(numChannels, numFrames, bitsPerSample, sampleRate) + compression +
           makePascalString("compression " + compression);
}

std::string makeSoundDataContent(const std::string& sampleBytes, std::uint32_t offset)
{
    return bigEndian32(offset) + bigEndian32(0) + std::string(offset, '\x5A') + sampleBytes;
}

std::string makeMarkerContent(const std::vector<MarkerSpec>& markers)
{
    std::string content = bigEndian16(static_cast<std::uint16_t>(markers.size()));
    for (const MarkerSpec& marker : markers)
        content +=
            bigEndian16(marker.identifier) + bigEndian32(marker.position) + makePascalString(marker.name);
    return content;
}

void PrintTo(const MarkerSpec& marker, std::ostream* stream)
{
    *stream << "{" << marker.identifier << ", " << marker.position << ", \"" << marker.name << "\"}";
}

std::string makeFormFile(const std::string& formType, const std::string& chunks)
{
    return makeFormFileWithSize(formType, static_cast<std::uint32_t>(4 + chunks.size()), chunks);
}

std::string makeFormFileWithSize(const std::string& formType, std::uint32_t formSize,
                                 const std::string& chunks)
{
    return "FORM" + bigEndian32(formSize) + formType + chunks;
}

std::string makeVersionContent()
{
    return bigEndian32(0xA2805140);
}

std::string makeSimpleAiffFile(std::uint16_t numChannels, std::uint16_t bitsPerSample,
                               const std::string& sampleBytes)
{
    const auto numFrames = static_cast<std::uint32_t>(sampleBytes.size() / (numChannels * bitsPerSample / 8));
    return makeFormFile(
        "AIFF", makeAiffChunk("COMM", makeCommonContent(numChannels, numFrames, bitsPerSample, 44100)) +
                    makeAiffChunk("SSND", makeSoundDataContent(sampleBytes)));
}

std::string makeSimpleAifcFile(std::uint16_t numChannels, std::uint16_t bitsPerSample,
                               const std::string& compression, const std::string& sampleBytes)
{
    const auto numFrames = static_cast<std::uint32_t>(sampleBytes.size() / (numChannels * bitsPerSample / 8));
    return makeFormFile("AIFC",
                        makeAiffChunk("FVER", makeVersionContent()) +
                            makeAiffChunk("COMM", makeAifcCommonContent(numChannels, numFrames, bitsPerSample,
                                                                        44100, compression)) +
                            makeAiffChunk("SSND", makeSoundDataContent(sampleBytes)));
}

void renameCompression(const std::string& path, const std::string& compression)
{
    std::string bytes = readWholeFile(path);
    const std::size_t common = bytes.find("COMM");
    if (common == std::string::npos)
        throw std::runtime_error("no COMM chunk");
    bytes.replace(common + 8 + 18, 4, compression);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

std::unique_ptr<AiffFileReader> openAiffImage(const ScratchFolder& scratch, const std::string& bytes,
                                              const std::string& name)
{
    return std::make_unique<AiffFileReader>(File(scratch.write(name, bytes)));
}

std::string getAiffRefusal(const ScratchFolder& scratch, const std::string& bytes, const std::string& name)
{
    try {
        openAiffImage(scratch, bytes, name);
    } catch (const Exception& exception) {
        return exception.message;
    }
    return "";
}

std::string makeAiffRefusalText(const std::string& path)
{
    return "file \"" + path + "\" is not a valid AIFF file";
}

std::vector<float> readFirstChannel(AudioFileReader& reader)
{
    const auto buffer = readAllFrames(reader);
    return std::vector<float>(buffer->getChannel(0), buffer->getChannel(0) + reader.getNumSamples());
}

} // namespace vlk::test
