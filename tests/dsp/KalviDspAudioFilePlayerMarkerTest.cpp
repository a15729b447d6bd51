#include "audiofiles/KalviDspAiffFixtures.h"
#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"

#include <gtest/gtest.h>
#include <thread>

// Only AIFF files carry markers to the player, which opens files through the reader factory alone.

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;
using Told = std::vector<std::vector<std::uint32_t>>;

constexpr std::uint32_t numFrames = 20000;

// Stored out of the order of their positions where two share a vector, and one on a vector's first frame.
const std::vector<MarkerSpec> markers{{4, 0, "start"},           {1, 1000, "one"},    {7, 1024, "boundary"},
                                      {6, 5100, "stored first"}, {2, 5000, "second"}, {3, 19900, "near end"}};

std::string makeCommonChunk()
{
    return makeAiffChunk("COMM", makeCommonContent(1, numFrames, 16, 44100));
}

std::string makeMarkerChunk()
{
    return makeAiffChunk("MARK", makeMarkerContent(markers));
}

// Silent 16-bit mono frames.
std::string makeSoundChunk()
{
    return makeAiffChunk("SSND", makeSoundDataContent(std::string(numFrames * 2, '\0')));
}

class AudioFilePlayerMarkers : public testing::Test
{
protected:
    void SetUp() override
    {
        open(makeFormFile("AIFF", makeCommonChunk() + makeMarkerChunk() + makeSoundChunk()));
    }

    void open(const std::string& bytes)
    {
        ASSERT_NO_THROW(
            player.open(String(folder.write("markers" + std::to_string(++numFiles) + ".aif", bytes))));
    }

    // The identifiers told during each of the next vectors, until the player stops or maxVectors have run.
    Told playAndCollect(std::size_t maxVectors)
    {
        Told told;
        while (player.isPlaying() && told.size() < maxVectors) {
            listener.clear();
            Channels audio;
            harness.play(audio, 1);
            told.emplace_back();
            for (const RecordingListener::Call& call : listener.getCalls(Kind::marker))
                told.back().push_back(call.marker.identifier);
        }
        return told;
    }

    ScratchFolder folder;
    int numFiles = 0;
    AudioFilePlayer player{1, 192000};
    RecordingListener listener{player};
    PlayerHarness harness{player, 512};
};

} // namespace

TEST_F(AudioFilePlayerMarkers, AreToldInStoredOrderInTheVectorWhoseSpanHoldsThem)
{
    player.rewind();
    Told expected(12);
    expected[0] = {4};
    expected[1] = {1};
    expected[2] = {7};
    expected[9] = {6, 2};
    EXPECT_EQ(playAndCollect(12), expected);
}

TEST_F(AudioFilePlayerMarkers, CarryTheFileFieldsAndComeOnTheAudioThread)
{
    player.rewind();
    Channels audio;
    harness.play(audio, 10);
    const std::vector<RecordingListener::Call> calls = listener.getCalls(Kind::marker);
    ASSERT_EQ(calls.size(), 5u);
    for (std::size_t index = 0; index < calls.size(); ++index) {
        EXPECT_EQ(calls[index].marker.identifier, markers[index].identifier) << index;
        EXPECT_EQ(calls[index].marker.position, markers[index].position) << index;
        EXPECT_EQ(calls[index].marker.name, markers[index].name) << index;
        EXPECT_EQ(calls[index].thread, std::this_thread::get_id()) << index;
    }
}

// The spans of the last vectors overlap, since each begins one vector before its end, and the vector that
// tells the end scans the last span once more.
TEST_F(AudioFilePlayerMarkers, MarkerNearTheEndIsToldInEachOfTheLastVectorsAndAtTheEnd)
{
    // 440 ms is frame 19404: a region of 596 frames, two vectors and the end's.
    player.seek(440.0f);
    EXPECT_EQ(playAndCollect(100), (Told{{3}, {3}, {3}}));
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
}

TEST_F(AudioFilePlayerMarkers, AreNotToldWhileThePositionOutputIsUnconnected)
{
    harness.setConnections({1, 0});
    player.rewind();
    Channels audio;
    harness.playUntilStopped(audio, 100);
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
    EXPECT_EQ(listener.count(Kind::marker), 0u);

    harness.setConnections({1, 1});
    player.rewind();
    EXPECT_EQ(playAndCollect(1), (Told{{4}}));
}

TEST_F(AudioFilePlayerMarkers, LoopTellsThemAtEveryPass)
{
    player.setLoop(true);
    // Frames 0 to 1322: 0.01 ms is no frame, yet not 0, so the region starts without a rewind. Each pass
    // takes three vectors, the position flat at the region's start behind the wrap.
    player.seek(0.01f, 30.0f);
    Told expected;
    for (int pass = 0; pass < 6; ++pass)
        expected.insert(expected.end(), {{4}, {1}, {7}});
    expected.insert(expected.end(), {{4}, {1}});
    EXPECT_EQ(playAndCollect(20), expected);
}

// A MARK behind COMM and SSND is read in a plain AIFF file, while in an AIFC file, which has FVER, the walk
// ends before it.
TEST_F(AudioFilePlayerMarkers, AifcWithVersionBeforeAMarkBehindItsSoundHasNone)
{
    open(makeFormFile("AIFF", makeCommonChunk() + makeSoundChunk() + makeMarkerChunk()));
    player.rewind();
    Channels audio;
    harness.playUntilStopped(audio, 100);
    // The one near the end three times.
    EXPECT_EQ(listener.count(Kind::marker), 8u);

    open(makeFormFile("AIFC",
                      makeAiffChunk("FVER", makeVersionContent()) +
                          makeAiffChunk("COMM", makeAifcCommonContent(1, numFrames, 16, 44100, "NONE")) +
                          makeSoundChunk() + makeMarkerChunk()));
    player.rewind();
    listener.clear();
    harness.playUntilStopped(audio, 100);
    EXPECT_EQ(listener.count(Kind::endOfFile), 1u);
    EXPECT_EQ(listener.count(Kind::marker), 0u);
}

} // namespace vlk::test

namespace vlk::test {

// 65535 markers, one every 16 frames (identifiers below 32768, which are not sign-extended): each vector is told the 32 of its own span and no other, so the work of
// a vector follows the markers it plays, not the file's; the audio thread looks them up by a binary search.
TEST_F(AudioFilePlayerMarkers, AFileOf65535MarkersIsToldAsManyPerVectorAsItsSpanHolds)
{
    constexpr std::uint32_t spacing = 16;
    constexpr std::uint32_t count = 65535;
    std::vector<MarkerSpec> many;
    for (std::uint32_t index = 0; index < count; ++index)
        many.push_back({static_cast<std::uint16_t>(index % 32768), index * spacing, ""});
    const std::uint32_t frames = count * spacing;
    open(makeFormFile("AIFF", makeAiffChunk("COMM", makeCommonContent(1, frames, 16, 44100)) +
                                  makeAiffChunk("MARK", makeMarkerContent(many)) +
                                  makeAiffChunk("SSND", makeSoundDataContent(std::string(frames * 2, '\0')))));
    player.rewind();
    const Told told = playAndCollect(frames / 512);
    ASSERT_EQ(told.size(), frames / 512);
    std::uint32_t next = 0;
    for (const std::vector<std::uint32_t>& vector : told) {
        ASSERT_EQ(vector.size(), 512 / spacing);
        for (const std::uint32_t identifier : vector)
            EXPECT_EQ(identifier, next++ % 32768);
    }
}

} // namespace vlk::test
