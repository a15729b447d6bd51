#include "audiofiles/KalviDspAiffFileReader.h"

#include "audiofiles/KalviDspAiffFixtures.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

using namespace vlk;
using namespace vlk::test;

namespace {

std::string common()
{
    return makeAiffChunk("COMM", makeCommonContent(1, 4, 16, 44100));
}

std::string soundData()
{
    return makeAiffChunk("SSND", makeSoundDataContent(std::string(8, '\1')));
}

std::string version()
{
    return makeAiffChunk("FVER", makeVersionContent());
}

std::string markers(const std::vector<MarkerSpec>& specs)
{
    return makeAiffChunk("MARK", makeMarkerContent(specs));
}

// The markers as identifier, position and name, in the record's order.
std::vector<MarkerSpec> getMarkers(const AudioFileReader& reader)
{
    std::vector<MarkerSpec> found;
    const AudioFilesMetadata& metadata = reader.getMetadata();
    for (std::size_t index = 0; index < metadata.getNumMarkers(); ++index) {
        const AudioFilesMetadata::Marker marker = metadata.getMarker(index);
        found.push_back({static_cast<std::uint16_t>(marker.identifier), marker.position, marker.name});
    }
    return found;
}

// A stereo 16-bit file with cue points written by libsndfile, an independent writer of MARK chunks. Names of
// odd length only: for an even length that writer counts a terminating zero byte in the name.
std::string writeWithCues(const std::string& path, int endian, const std::vector<MarkerSpec>& cues)
{
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 2;
    info.format = SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | endian;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    auto points = std::make_unique<SF_CUES>();
    points->cue_count = static_cast<std::uint32_t>(cues.size());
    for (std::size_t index = 0; index < cues.size(); ++index) {
        SF_CUE_POINT& point = points->cue_points[index];
        point.indx = cues[index].identifier;
        point.position = cues[index].position;
        point.sample_offset = cues[index].position;
        cues[index].name.copy(point.name, sizeof(point.name) - 1);
    }
    sf_command(file, SFC_SET_CUE, points.get(), sizeof(SF_CUES));
    const std::vector<short> silence(2 * 1000);
    sf_writef_short(file, silence.data(), 1000);
    sf_close(file);
    return path;
}

} // namespace

// Not sorted: the player's scan goes through them in the file's order. Identifiers are sign-extended, and
// positions are not checked against the length.
TEST(AiffFileReaderMarkers, StoredOrderWithNames)
{
    const ScratchFolder scratch;
    const std::vector<MarkerSpec> specs{
        {3, 300, "third"}, {1, 100, "first"}, {2, 200, "a"}, {5, 0xFFFFFFFF, "far beyond"}, {0, 0, "x"}};
    const auto reader = openAiffImage(scratch, makeFormFile("AIFF", common() + soundData() + markers(specs)));
    EXPECT_EQ(getMarkers(*reader), specs);

    const auto negative =
        openAiffImage(scratch, makeFormFile("AIFF", common() + markers({{0xFFFE, 9, "n"}}) + soundData()));
    EXPECT_EQ(negative->getMetadata().getMarker(0).identifier, 0xFFFFFFFEu);
}

// A pad byte follows a name of even length, none one of odd length: a mistake shifts every marker behind.
TEST(AiffFileReaderMarkers, NamesOfEveryLengthParity)
{
    const ScratchFolder scratch;
    std::vector<MarkerSpec> specs;
    for (std::uint16_t length = 0; length < 8; ++length)
        specs.push_back({static_cast<std::uint16_t>(10 + length), 1000u * length,
                         std::string(length, static_cast<char>('a' + length))});
    std::string everyByte;
    for (int byte = 255; byte > 0; --byte)
        everyByte += static_cast<char>(byte);
    specs.push_back({99, 7, everyByte});
    specs.push_back({100, 8, std::string("\0z", 2)});
    const auto reader = openAiffImage(scratch, makeFormFile("AIFF", common() + markers(specs) + soundData()));
    EXPECT_EQ(getMarkers(*reader), specs);
}

TEST(AiffFileReaderMarkers, SecondMarkerChunkAddsToTheFirst)
{
    const ScratchFolder scratch;
    const auto reader =
        openAiffImage(scratch, makeFormFile("AIFF", markers({{1, 10, "a"}}) + common() + soundData() +
                                                        markers({{2, 20, "b"}})));
    EXPECT_EQ(getMarkers(*reader), (std::vector<MarkerSpec>{{1, 10, "a"}, {2, 20, "b"}}));
}

// Once COMM, SSND and FVER were met the walk stops at the next chunk: an AIFC file loses a MARK behind its
// samples, a plain AIFF file has no FVER and keeps it.
TEST(AiffFileReaderMarkers, VersionAheadStopsTheWalkBeforeLateMarkers)
{
    const ScratchFolder scratch;
    const std::string mark = markers({{1, 10, "late"}});
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFF", common() + soundData() + mark))
                  ->getMetadata()
                  .getNumMarkers(),
              1u);
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFC", version() + common() + soundData() + mark))
                  ->getMetadata()
                  .getNumMarkers(),
              0u);
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFF", version() + common() + soundData() + mark))
                  ->getMetadata()
                  .getNumMarkers(),
              0u);
    // Before SSND, or with FVER behind the MARK, the markers are read.
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFC", version() + common() + mark + soundData()))
                  ->getMetadata()
                  .getNumMarkers(),
              1u);
    EXPECT_EQ(openAiffImage(scratch, makeFormFile("AIFC", common() + soundData() + mark + version()))
                  ->getMetadata()
                  .getNumMarkers(),
              1u);
}

TEST(AiffFileReaderMarkers, CuePointsOfAnIndependentWriter)
{
    const ScratchFolder scratch;
    const std::vector<MarkerSpec> cues{{7, 900, "end"}, {1, 0, "start"}, {4, 450, "m"}};
    // Big-endian gives AIFF; little-endian gives AIFC "sowt", whose MARK that writer puts before SSND.
    for (const int endian : {SF_ENDIAN_BIG, SF_ENDIAN_LITTLE}) {
        const std::string path = writeWithCues(scratch / "cues.aif", endian, cues);
        const std::unique_ptr<AudioFileReader> reader = AudioFileReader::create(File(path));
        EXPECT_EQ(getMarkers(*reader), cues) << endian;
        EXPECT_EQ(reader->getNumSamples(), 1000u);
    }
}

// A MARK chunk's count is believed only as far as its records lie within the chunk: a count of 65535 in a
// chunk of two records gives two markers, and the chunks behind it are read as they stand.
TEST(AiffFileReaderMarkers, CountIsBoundedByTheChunksRecords)
{
    const ScratchFolder scratch;
    const std::vector<MarkerSpec> two{{1, 10, "a"}, {2, 20, "bc"}};
    std::string content = makeMarkerContent(two);
    content.replace(0, 2, bigEndian16(65535));
    const auto reader =
        openAiffImage(scratch, makeFormFile("AIFF", common() + makeAiffChunk("MARK", content) + soundData()));
    EXPECT_EQ(getMarkers(*reader), two);
    EXPECT_EQ(reader->getNumSamples(), 4u);

    // A record whose name runs past the chunk's end makes no marker; the pad byte of the last name may be
    // missing.
    std::string cut = makeMarkerContent({{1, 10, "a"}, {2, 20, "long name"}});
    cut.resize(cut.size() - 3);
    EXPECT_EQ(getMarkers(*openAiffImage(scratch, makeFormFile("AIFF", common() + soundData() +
                                                                          makeAiffChunk("MARK", cut)))),
              (std::vector<MarkerSpec>{{1, 10, "a"}}));
    std::string unpadded = makeMarkerContent({{1, 10, "ab"}});
    unpadded.pop_back();
    EXPECT_EQ(getMarkers(*openAiffImage(scratch, makeFormFile("AIFF", common() + soundData() +
                                                                          makeAiffChunk("MARK", unpadded)))),
              (std::vector<MarkerSpec>{{1, 10, "ab"}}));
}

// Markers of all MARK chunks together stop at the most that one chunk can state.
TEST(AiffFileReaderMarkers, AllChunksTogetherGiveAtMost65535Markers)
{
    const ScratchFolder scratch;
    const std::vector<MarkerSpec> many(30000, MarkerSpec{1, 5, ""});
    const std::string chunk = markers(many);
    const auto reader =
        openAiffImage(scratch, makeFormFile("AIFF", common() + soundData() + chunk + chunk + chunk));
    EXPECT_EQ(reader->getMetadata().getNumMarkers(), 65535u);
}
