#include "KalviDspVelurDecodeFloatWavWriter.h"

#include "containers/KalviDspAudioBuffer.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <gtest/gtest.h>
#include <map>
#include <sndfile.h>

namespace vlk::test {
namespace {

using velurdecode::FloatWavWriter;

std::uint64_t readLittleEndian(const std::string& bytes, std::size_t offset, int numBytes)
{
    std::uint64_t value = 0;
    for (int i = numBytes - 1; i >= 0; --i)
        value = value << 8 | static_cast<std::uint8_t>(bytes.at(offset + static_cast<std::size_t>(i)));
    return value;
}

// The chunks from the form's first up to the data's header, by id; the data chunk's content is its size
// field only, since the file holds a few of the frames it announces.
std::map<std::string, std::string> readChunks(const std::string& file)
{
    std::map<std::string, std::string> chunks;
    for (std::size_t offset = 12; offset + 8 <= file.size();) {
        const std::string id = file.substr(offset, 4);
        const auto size = static_cast<std::size_t>(readLittleEndian(file, offset + 4, 4));
        if (id == "data") {
            chunks[id] = file.substr(offset + 4, 4);
            break;
        }
        chunks[id] = file.substr(offset + 8, size);
        offset += 8 + size + (size & 1);
    }
    return chunks;
}

// Lengths on both sides of the largest RIFF file, 4 GiB less 1 byte, and one with more frames than 32 bits
// count. Only the first frames are written: the header is what differs, and libsndfile takes a file shorter
// than its header says.
TEST(FloatWavWriterHeader, RiffWhileTheSizesFitThirtyTwoBitsThenRf64)
{
    struct HeaderCase
    {
        std::uint32_t numChannels;
        std::uint64_t numFrames;
        bool isRf64;
    };
    const std::vector<HeaderCase> cases{
        {1, 4, false},         {1, 1073741811, false}, {1, 1073741812, true},
        {2, 536870905, false}, {2, 536870906, true},   {3, 5000000000, true},
    };
    constexpr std::uint64_t framesWritten = 4;
    ScratchFolder scratch;
    for (const HeaderCase& headerCase : cases) {
        const std::string path = scratch / "out.wav";
        AudioBuffer frames(headerCase.numChannels, framesWritten);
        for (std::uint32_t channel = 0; channel < headerCase.numChannels; ++channel)
            for (std::uint64_t frame = 0; frame < framesWritten; ++frame)
                frames.getChannel(channel)[frame] = frameNumberSample(frame, channel);
        {
            FloatWavWriter writer(File(path), headerCase.numChannels, 44100, headerCase.numFrames);
            writer.writeFrames(frames, framesWritten);
        }

        const std::string file = readWholeFile(path);
        const std::uint64_t dataBytes = headerCase.numFrames * headerCase.numChannels * 4;
        const std::string what =
            std::to_string(headerCase.numChannels) + " x " + std::to_string(headerCase.numFrames);
        ASSERT_GE(file.size(), 12u) << what;
        EXPECT_EQ(file.substr(0, 4), headerCase.isRf64 ? "RF64" : "RIFF") << what;
        const auto chunks = readChunks(file);
        ASSERT_TRUE(chunks.contains("data") && chunks.contains("fact")) << what;
        const std::uint64_t header = file.size() - framesWritten * headerCase.numChannels * 4;
        if (headerCase.isRf64) {
            ASSERT_TRUE(chunks.contains("ds64")) << what;
            const std::string& ds64 = chunks.at("ds64");
            EXPECT_EQ(readLittleEndian(file, 4, 4), 0xFFFFFFFFu) << what;
            EXPECT_EQ(readLittleEndian(ds64, 0, 8), header - 8 + dataBytes) << what;
            EXPECT_EQ(readLittleEndian(ds64, 8, 8), dataBytes) << what;
            EXPECT_EQ(readLittleEndian(ds64, 16, 8), headerCase.numFrames) << what;
            EXPECT_EQ(readLittleEndian(chunks.at("data"), 0, 4), 0xFFFFFFFFu) << what;
        } else {
            EXPECT_FALSE(chunks.contains("ds64")) << what;
            EXPECT_EQ(readLittleEndian(file, 4, 4), header - 8 + dataBytes) << what;
            EXPECT_EQ(readLittleEndian(chunks.at("data"), 0, 4), dataBytes) << what;
            EXPECT_EQ(readLittleEndian(chunks.at("fact"), 0, 4), headerCase.numFrames) << what;
        }

        SF_INFO info{};
        SNDFILE* sound = sf_open(path.c_str(), SFM_READ, &info);
        ASSERT_NE(sound, nullptr) << what << ": " << sf_strerror(nullptr);
        EXPECT_EQ(info.format, (headerCase.isRf64 ? SF_FORMAT_RF64 : SF_FORMAT_WAV) | SF_FORMAT_FLOAT)
            << what;
        EXPECT_EQ(info.channels, static_cast<int>(headerCase.numChannels)) << what;
        std::vector<float> read(framesWritten * headerCase.numChannels);
        EXPECT_EQ(sf_readf_float(sound, read.data(), framesWritten), static_cast<sf_count_t>(framesWritten));
        sf_close(sound);
        for (std::uint32_t channel = 0; channel < headerCase.numChannels; ++channel)
            for (std::uint64_t frame = 0; frame < framesWritten; ++frame)
                EXPECT_EQ(read[frame * headerCase.numChannels + channel], frameNumberSample(frame, channel))
                    << what << " frame " << frame << " channel " << channel;
    }
}

} // namespace
} // namespace vlk::test
