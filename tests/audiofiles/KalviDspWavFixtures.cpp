#include "audiofiles/KalviDspWavFixtures.h"

#include <bit>
#include <random>
#include <stdexcept>

namespace vlk::test {

namespace {

std::string littleEndian(std::uint64_t value, int numBytes)
{
    std::string bytes;
    for (int index = 0; index < numBytes; ++index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFF);
    return bytes;
}

std::string padded(const std::string& text, std::size_t width)
{
    std::string field = text.substr(0, width);
    field.resize(width, '\0');
    return field;
}

std::string makeSubformat(std::initializer_list<int> bytes)
{
    std::string subformat;
    for (const int byte : bytes)
        subformat += static_cast<char>(byte);
    return subformat;
}

} // namespace

const std::string pcmSubformat = makeSubformat(
    {0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71});
const std::string floatSubformat = makeSubformat(
    {0x03, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71});
const std::string ambisonicPcmSubformat = makeSubformat(
    {0x01, 0x00, 0x00, 0x00, 0x21, 0x07, 0xD3, 0x11, 0x86, 0x44, 0xC8, 0xC1, 0xCA, 0x00, 0x00, 0x00});
const std::string ambisonicFloatSubformat = makeSubformat(
    {0x03, 0x00, 0x00, 0x00, 0x21, 0x07, 0xD3, 0x11, 0x86, 0x44, 0xC8, 0xC1, 0xCA, 0x00, 0x00, 0x00});

std::string littleEndian16(std::uint16_t value)
{
    return littleEndian(value, 2);
}

std::string littleEndian32(std::uint32_t value)
{
    return littleEndian(value, 4);
}

std::string littleEndian64(std::uint64_t value)
{
    return littleEndian(value, 8);
}

std::string makeChunk(const std::string& id, const std::string& content)
{
    std::string chunk = makeChunkWithSize(id, static_cast<std::uint32_t>(content.size()), content);
    if (content.size() % 2 != 0)
        chunk += '\0';
    return chunk;
}

std::string makeChunkWithSize(const std::string& id, std::uint32_t sizeField, const std::string& content)
{
    return padded(id, 4) + littleEndian32(sizeField) + content;
}

std::string makeFormatContent(std::uint16_t tag, std::uint16_t numChannels, std::uint32_t sampleRate,
                              std::uint16_t bitsPerSample)
{
    const std::uint32_t blockAlign = numChannels * bitsPerSample / 8;
    return makeFormatContent(tag, numChannels, sampleRate, bitsPerSample, sampleRate * blockAlign);
}

std::string makeFormatContent(std::uint16_t tag, std::uint16_t numChannels, std::uint32_t sampleRate,
                              std::uint16_t bitsPerSample, std::uint32_t averageBytesPerSecond)
{
    const auto blockAlign = static_cast<std::uint16_t>(numChannels * bitsPerSample / 8);
    return littleEndian16(tag) + littleEndian16(numChannels) + littleEndian32(sampleRate) +
           littleEndian32(averageBytesPerSecond) + littleEndian16(blockAlign) + littleEndian16(bitsPerSample);
}

std::string makeExtensibleFormatContent(std::uint16_t numChannels, std::uint32_t sampleRate,
                                        std::uint16_t bitsPerSample, const std::string& subformat)
{
    const std::uint32_t allChannelsMask = numChannels >= 32 ? 0xFFFFFFFFu : (1u << numChannels) - 1;
    return makeFormatContent(0xFFFE, numChannels, sampleRate, bitsPerSample) + littleEndian16(22) +
           littleEndian16(bitsPerSample) + littleEndian32(allChannelsMask) + subformat;
}

std::string makeRiffFile(const std::string& chunks)
{
    return makeRiffFileWithSize(static_cast<std::uint32_t>(4 + chunks.size()), chunks);
}

std::string makeRiffFileWithSize(std::uint32_t riffSize, const std::string& chunks)
{
    return "RIFF" + littleEndian32(riffSize) + "WAVE" + chunks;
}

std::string makeRf64File(const std::string& chunks, std::uint64_t dataSize)
{
    const std::uint64_t ds64ChunkSize = 8 + 28;
    const std::uint64_t riffSize = 4 + ds64ChunkSize + chunks.size();
    const std::string ds64 =
        littleEndian64(riffSize) + littleEndian64(dataSize) + littleEndian64(0) + littleEndian32(0);
    return "RF64" + littleEndian32(0xFFFFFFFF) + "WAVE" + makeChunk("ds64", ds64) + chunks;
}

std::string makeSimpleWavFile(std::uint16_t tag, std::uint16_t numChannels, std::uint16_t bitsPerSample,
                              const std::string& sampleBytes)
{
    return makeRiffFile(makeChunk("fmt ", makeFormatContent(tag, numChannels, 44100, bitsPerSample)) +
                        makeChunk("data", sampleBytes));
}

std::string makeBextContent(const BextContent& content)
{
    return padded(content.description, 256) + padded(content.originator, 32) +
           padded(content.originatorReference, 32) + padded(content.originationDate, 10) +
           padded(content.originationTime, 8) + littleEndian32(content.timeReferenceLow) +
           littleEndian32(content.timeReferenceHigh) + littleEndian16(content.version) +
           padded(content.umid, 64) + std::string(190, '\0') + content.codingHistory;
}

std::string makeChnaTrackRecord(std::uint16_t trackIndex, const std::string& audioTrackUid,
                                const std::string& audioTrackFormatIdRef,
                                const std::string& audioPackFormatIdRef)
{
    return littleEndian16(trackIndex) + padded(audioTrackUid, 12) + padded(audioTrackFormatIdRef, 14) +
           padded(audioPackFormatIdRef, 11) + std::string(1, '\0');
}

std::unique_ptr<WavFileReader> openWavImage(const ScratchFolder& scratch, const std::string& bytes,
                                            const std::string& name)
{
    return std::make_unique<WavFileReader>(File(scratch.write(name, bytes)));
}

std::string getWavRefusal(const ScratchFolder& scratch, const std::string& bytes, const std::string& name)
{
    try {
        openWavImage(scratch, bytes, name);
    } catch (const Exception& exception) {
        return exception.message;
    }
    return "";
}

std::string makeWavRefusalText(const std::string& path)
{
    return "file \"" + path + "\" is not a valid WAV file";
}

std::unique_ptr<AudioBuffer> readAllFrames(AudioFileReader& reader)
{
    auto buffer = std::make_unique<AudioBuffer>(reader.getNumChannels(), reader.getNumSamples());
    if (!reader.readSamples(*buffer, 0, reader.getNumSamples(), 0))
        throw std::runtime_error("readSamples failed");
    return buffer;
}

void expectPartialRead(AudioFileReader& reader, int numChannels, int numFileFrames,
                       const std::function<float(int frame, int channel)>& expectedSample,
                       std::uint64_t bufferOffset, std::uint64_t numFrames, std::uint64_t position)
{
    constexpr float sentinel = 9.5f;
    const std::uint64_t length = bufferOffset + numFrames + 3;
    AudioBuffer buffer(static_cast<std::uint32_t>(numChannels), length);
    for (int channel = 0; channel < numChannels; ++channel)
        buffer.fillChannel(static_cast<std::uint32_t>(channel), sentinel);
    ASSERT_TRUE(reader.readSamples(buffer, bufferOffset, numFrames, position));
    for (int channel = 0; channel < numChannels; ++channel)
        for (std::uint64_t sample = 0; sample < length; ++sample) {
            const std::uint64_t frame = position + sample - bufferOffset;
            float expected = sentinel;
            if (sample >= bufferOffset && sample < bufferOffset + numFrames)
                expected = frame < static_cast<std::uint64_t>(numFileFrames)
                               ? expectedSample(static_cast<int>(frame), channel)
                               : 0.0f;
            ASSERT_TRUE(bitsEqual(buffer.getChannel(static_cast<std::uint32_t>(channel))[sample], expected))
                << "offset " << bufferOffset << ", " << numFrames << " frames at " << position << ", channel "
                << channel << ", sample " << sample;
        }
}

::testing::AssertionResult bitsEqual(float actual, float expected)
{
    if (std::bit_cast<std::uint32_t>(actual) == std::bit_cast<std::uint32_t>(expected))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << actual << " != " << expected;
}

std::string makeRandomBytes(std::size_t length, std::uint32_t seed)
{
    std::mt19937 generator(seed);
    std::string bytes(length, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator() & 0xFF);
    return bytes;
}

} // namespace vlk::test
