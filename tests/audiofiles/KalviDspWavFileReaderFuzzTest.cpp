#include "audiofiles/KalviDspWavFileReader.h"

#include "audiofiles/KalviDspReaderFuzzSupport.h"
#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

using namespace vlk;
using namespace vlk::test;

namespace {

std::string makeBroadcastContent()
{
    BextContent bext;
    bext.description = "fuzz";
    bext.codingHistory = "A=PCM\r\n";
    return makeBextContent(bext);
}

// Valid files of every kind the reader takes, small enough to mutate quickly.
std::vector<std::string> makeSeedImages()
{
    const std::string chna = littleEndian16(1) + littleEndian16(1) +
                             makeChnaTrackRecord(1, "ATU_00000001", "AT_00010001_01", "AP_00010002");
    return {
        makeRiffFile(makeChunk("LIST", "INFOx") + makeChunk("fmt ", makeFormatContent(1, 2, 44100, 16)) +
                     makeChunk("data", makeRandomBytes(800, 1))),
        makeRiffFile(makeChunk("fmt ", makeExtensibleFormatContent(3, 48000, 24, pcmSubformat)) +
                     makeChunk("bext", makeBroadcastContent()) + makeChunk("chna", chna) +
                     makeChunk("axml", "<a/>") + makeChunk("data", makeRandomBytes(900, 2))),
        makeRf64File(makeChunk("fmt ", makeFormatContent(3, 1, 96000, 32)) +
                         makeChunkWithSize("data", 0xFFFFFFFF, makeRandomBytes(400, 3)),
                     400),
        makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 1, 8000, 8)) +
                     makeChunk("data", makeRandomBytes(333, 4))),
        makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 4, 44100, 32)) +
                     makeChunk("cue ", std::string(28, '\0')) + makeChunk("data", makeRandomBytes(640, 5))),
        makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 48000, 0xFFFF, 288000)) +
                     makeChunk("data", makeRandomBytes(600, 6))),
        // A data chunk stating far more than the file holds, so that a changed frame size still has frames.
        makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 44100, 16)) +
                     makeChunkWithSize("data", 0x100000, makeRandomBytes(600, 7))),
        // A second format behind the data, whose frame size is not the one the length was counted with.
        makeRiffFile(makeChunk("fmt ", makeFormatContent(1, 2, 44100, 24)) +
                     makeChunk("data", makeRandomBytes(600, 8)) + makeChunk("LIST", "INFO") +
                     makeChunk("fmt ", makeFormatContent(1, 2, 44100, 24))),
    };
}

// Offsets of the chunk headers of a valid image, found by walking it; with formatOnly those of fmt chunks.
std::vector<std::size_t> findChunkHeaders(const std::string& image, bool formatOnly = false)
{
    std::vector<std::size_t> headers;
    for (std::size_t offset = 12; offset + 8 <= image.size();) {
        if (!formatOnly || image.compare(offset, 4, "fmt ") == 0)
            headers.push_back(offset);
        std::uint32_t size = 0;
        for (int index = 3; index >= 0; --index)
            size = size << 8 | static_cast<std::uint8_t>(image[offset + 4 + static_cast<std::size_t>(index)]);
        offset += 8 + std::min<std::size_t>(size + (size & 1), image.size());
    }
    return headers;
}

class Mutator : public FuzzRandom
{
public:
    using FuzzRandom::FuzzRandom;

    std::string mutate(std::string image)
    {
        const std::vector<std::size_t> headers = findChunkHeaders(image);
        const std::vector<std::size_t> formats = findChunkHeaders(image, true);
        const int numMutations = 1 + pick(3);
        for (int mutation = 0; mutation < numMutations && !image.empty(); ++mutation) {
            const std::size_t header = headers.empty() ? 12 : pickFrom(headers);
            switch (pick(7)) {
            case 0:
                for (int flip = 1 + pick(8); flip > 0; --flip)
                    image[pickOffset(image)] = static_cast<char>(pick(256));
                break;
            case 1:
                image.resize(pickOffset(image));
                break;
            case 2:
                overwrite(image, header + 4, littleEndian32(pickSize()));
                break;
            case 3:
                overwrite(image, header, pickChunkId());
                break;
            case 4:
                image.insert(pickOffset(image),
                             makeRandomBytes(static_cast<std::size_t>(1 + pick(64)), random32()));
                break;
            case 5:
                // Tag, channels, rate, average bytes, block align or depth of a format chunk.
                if (!formats.empty())
                    overwrite(image, pickFrom(formats) + 8 + 2 * static_cast<std::size_t>(pick(8)),
                              littleEndian16(pickFormatField()));
                break;
            default:
                // The header's own fields: RIFF size, or RF64's ds64 sizes.
                overwrite(image, static_cast<std::size_t>(4 + 8 * pick(4)),
                          littleEndian64(pickSize() * std::uint64_t{random32()}));
                break;
            }
        }
        return image;
    }

    std::string makeRandomFile()
    {
        const std::string prefixes[] = {"", "RIFF", "RF64", "RIFF\xFF\xFF\xFF\x7FWAVE",
                                        "RF64\xFF\xFF\xFF\xFFWAVEds64"};
        return prefixes[pick(5)] + makeRandomBytes(static_cast<std::size_t>(pick(300)), random32());
    }

private:
    std::uint16_t pickFormatField()
    {
        const std::uint16_t values[] = {0, 1, 2, 3, 8, 12, 24, 32, 64, 65, 2881, 0xFFFE, 0xFFFF};
        return pick(3) == 0 ? static_cast<std::uint16_t>(random32()) : values[pick(13)];
    }

    std::uint32_t pickSize()
    {
        const std::uint32_t sizes[] = {
            0, 1, 2, 27, 28, 39, 40, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, random32() % 2000, random32()};
        return sizes[pick(12)];
    }

    std::string pickChunkId()
    {
        const char* ids[] = {"fmt ", "data", "ds64", "bext", "chna", "axml", "LIST", "cue ", "RIFF", "WAVE"};
        return pick(4) == 0 ? makeRandomBytes(4, random32()) : std::string(ids[pick(10)]);
    }
};

} // namespace

TEST(WavFileReaderFuzz, MutatedAndRandomFilesAreRefusedOrReadWhole)
{
    const ScratchFolder scratch;
    const std::vector<std::string> seeds = makeSeedImages();
    const std::string path = scratch / "fuzz.wav";
    Mutator mutator(20240601);
    fuzzReader(
        path, [](const File& file) { return std::make_unique<WavFileReader>(file); },
        makeWavRefusalText(path), 6000,
        [&](int) {
            // A file of random bytes as often as a mutation of each seed.
            const int choice = mutator.pick(static_cast<int>(seeds.size()) + 1);
            return choice < static_cast<int>(seeds.size())
                       ? mutator.mutate(seeds[static_cast<std::size_t>(choice)])
                       : mutator.makeRandomFile();
        });
}
