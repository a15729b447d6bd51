#include "audiofiles/KalviDspAiffFileReader.h"

#include "audiofiles/KalviDspAiffFixtures.h"
#include "audiofiles/KalviDspReaderFuzzSupport.h"
#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

using namespace vlk;
using namespace vlk::test;

namespace {

std::string common(std::uint16_t numChannels, std::uint32_t numFrames, std::uint16_t bits)
{
    return makeAiffChunk("COMM", makeCommonContent(numChannels, numFrames, bits, 44100));
}

std::string aifcCommon(std::uint16_t numChannels, std::uint32_t numFrames, std::uint16_t bits,
                       const std::string& compression)
{
    return makeAiffChunk("COMM", makeAifcCommonContent(numChannels, numFrames, bits, 48000, compression));
}

std::string soundData(std::size_t numBytes, std::uint32_t seed, std::uint32_t offset = 0)
{
    return makeAiffChunk("SSND", makeSoundDataContent(makeRandomBytes(numBytes, seed), offset));
}

std::string markers()
{
    return makeAiffChunk("MARK", makeMarkerContent({{1, 10, "one"}, {2, 20, "two!"}, {3, 0xFFFFFFFF, ""}}));
}

std::string version()
{
    return makeAiffChunk("FVER", makeVersionContent());
}

// Valid files of every kind the reader takes, small enough to mutate quickly.
std::vector<std::string> makeSeedImages()
{
    return {
        makeFormFile("AIFF",
                     common(2, 200, 16) + makeAiffChunk("ANNO", "note") + soundData(800, 1) + markers()),
        makeFormFile("AIFC", version() + aifcCommon(3, 100, 24, "sowt") + markers() + soundData(900, 2)),
        makeFormFile("AIFC", version() + aifcCommon(1, 100, 32, "fl32") + soundData(400, 3)),
        makeFormFile("AIFF", common(1, 333, 8) + soundData(333, 4, 4)),
        makeFormFile("AIFF", common(4, 40, 32) + makeAiffChunk("ANNO", "odd") + soundData(640, 5)),
        // A sound chunk stating far more than the file holds, so that a changed frame size still has frames.
        makeFormFile("AIFF", common(2, 0x100000, 16) +
                                 makeAiffChunkWithSize("SSND", 0x100000,
                                                       makeSoundDataContent(makeRandomBytes(600, 6)))),
        makeFormFile("AIFF", soundData(600, 7) + common(2, 150, 16) + markers()),
        makeFormFile("AIFC",
                     aifcCommon(2, 150, 16, "twos") + common(2, 150, 16) + soundData(600, 8) + version()),
    };
}

std::uint32_t readBigEndian32(const std::string& bytes, std::size_t offset)
{
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 4; ++index)
        value = value << 8 | static_cast<std::uint8_t>(bytes[offset + index]);
    return value;
}

// Offsets of the chunk headers of a valid image, found by walking it; with id those of that chunk only.
std::vector<std::size_t> findChunkHeaders(const std::string& image, const char* id = nullptr)
{
    std::vector<std::size_t> headers;
    for (std::size_t offset = 12; offset + 8 <= image.size();) {
        if (id == nullptr || image.compare(offset, 4, id) == 0)
            headers.push_back(offset);
        const std::uint32_t size = readBigEndian32(image, offset + 4);
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
        const std::vector<std::size_t> commons = findChunkHeaders(image, "COMM");
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
                overwrite(image, header + 4, bigEndian32(pickSize()));
                break;
            case 3:
                overwrite(image, header, pickChunkId());
                break;
            case 4:
                image.insert(pickOffset(image),
                             makeRandomBytes(static_cast<std::size_t>(1 + pick(64)), random32()));
                break;
            case 5:
                if (!commons.empty())
                    mutateCommon(image, pickFrom(commons) + 8);
                break;
            default:
                overwrite(image, 4, bigEndian32(pickSize()));
                break;
            }
        }
        return image;
    }

    std::string makeRandomFile()
    {
        const std::string prefixes[] = {"", "FORM",
                                        "FORM\x7F\xFF\xFF\xFF"
                                        "AIFF",
                                        "FORM\0\0\x01\0AIFCFVER"};
        return prefixes[pick(4)] + makeRandomBytes(static_cast<std::size_t>(pick(300)), random32());
    }

private:
    // Channels, frames, depth, the rate's exponent or mantissa, or the compression type.
    void mutateCommon(std::string& image, std::size_t content)
    {
        switch (pick(6)) {
        case 0:
            overwrite(image, content, bigEndian16(pickField()));
            break;
        case 1:
            overwrite(image, content + 2, bigEndian32(pickSize()));
            break;
        case 2:
            overwrite(image, content + 6, bigEndian16(pickField()));
            break;
        case 3:
            overwrite(image, content + 8, bigEndian16(static_cast<std::uint16_t>(0x4000 + pick(40) - 4)));
            break;
        case 4:
            overwrite(image, content + 10, bigEndian32(random32()));
            break;
        default:
            overwrite(image, content + 18, pickCompression());
            break;
        }
    }

    std::uint16_t pickField()
    {
        const std::uint16_t values[] = {0,  1,  2,    3,    7,      8,      12,     16,    24,
                                        32, 33, 1440, 1441, 0x7FFF, 0x8000, 0xFFF0, 0xFFFF};
        return pick(3) == 0 ? static_cast<std::uint16_t>(random32()) : values[pick(17)];
    }

    std::uint32_t pickSize()
    {
        const std::uint32_t sizes[] = {
            0, 1, 2, 3, 4, 17, 18, 19, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFF8, random32() % 2000, random32()};
        return sizes[pick(13)];
    }

    std::string pickChunkId()
    {
        const char* ids[] = {"COMM", "SSND", "FVER", "MARK", "ANNO", "FORM", "AIFF", "AIFC"};
        return pick(4) == 0 ? makeRandomBytes(4, random32()) : std::string(ids[pick(8)]);
    }

    std::string pickCompression()
    {
        const char* types[] = {"NONE", "twos", "sowt", "fl32", "FL32", "ima4"};
        return pick(4) == 0 ? makeRandomBytes(4, random32()) : std::string(types[pick(6)]);
    }
};

} // namespace

TEST(AiffFileReaderFuzz, MutatedAndRandomFilesAreRefusedOrReadWhole)
{
    const ScratchFolder scratch;
    const std::vector<std::string> seeds = makeSeedImages();
    const std::string path = scratch / "fuzz.aif";
    Mutator mutator(20240602);
    fuzzReader(
        path, [](const File& file) { return std::make_unique<AiffFileReader>(file); },
        makeAiffRefusalText(path), 6000,
        [&](int round) {
            const std::string& seed = seeds[static_cast<std::size_t>(round) % seeds.size()];
            return round % 8 == 7 ? mutator.makeRandomFile() : mutator.mutate(seed);
        });
}
