#include "dsp/KalviDspAudioFilePlayer.h"
#include "dsp/KalviDspPlayerHarness.h"
#include "threads/KalviDspException.h"

#include <gtest/gtest.h>

// Only AIFF files carry markers to the player, and the player opens files through the reader factory alone:
// these cases run once the AIFF reader takes the file, and are skipped before.

namespace vlk::test {

namespace {

using Kind = RecordingListener::Kind;

std::string bigEndian(std::uint32_t value, int numBytes)
{
    std::string bytes;
    for (int index = numBytes - 1; index >= 0; --index)
        bytes.push_back(static_cast<char>((value >> (8 * index)) & 0xFF));
    return bytes;
}

std::string chunk(const std::string& id, const std::string& content)
{
    return id + bigEndian(static_cast<std::uint32_t>(content.size()), 4) + content;
}

struct MarkerSpec
{
    std::uint16_t identifier;
    std::uint32_t position;
    std::string name;
};

// A plain AIFF file of silent 16-bit mono frames at 44100 Hz, with a MARK chunk before the samples. A name of
// even length is followed by a pad byte.
std::string makeAiffWithMarkers(std::uint32_t numFrames, const std::vector<MarkerSpec>& markers)
{
    const std::string rate44100 = std::string("\x40\x0E\xAC\x44", 4) + std::string(6, '\0');
    const std::string common = bigEndian(1, 2) + bigEndian(numFrames, 4) + bigEndian(16, 2) + rate44100;
    std::string marks = bigEndian(static_cast<std::uint32_t>(markers.size()), 2);
    for (const MarkerSpec& marker : markers) {
        marks += bigEndian(marker.identifier, 2) + bigEndian(marker.position, 4);
        marks += static_cast<char>(marker.name.size()) + marker.name;
        if (marker.name.size() % 2 == 0)
            marks += '\0';
    }
    const std::string sound = bigEndian(0, 4) + bigEndian(0, 4) + std::string(numFrames * 2, '\0');
    const std::string form = "AIFF" + chunk("COMM", common) + chunk("MARK", marks) + chunk("SSND", sound);
    return chunk("FORM", form);
}

class AudioFilePlayerMarkers : public testing::Test
{
protected:
    void SetUp() override
    {
        const std::string bytes = makeAiffWithMarkers(
            20000, {{4, 0, "start"}, {1, 1000, "one"}, {2, 5000, "second"}, {3, 19900, "near end"}});
        try {
            player.open(String(folder.write("markers.aiff", bytes)));
        } catch (const Exception& exception) {
            GTEST_SKIP() << "no reader takes AIFF files yet: " << exception.message;
        }
    }

    // The markers told during each of the next vectors.
    std::vector<std::vector<std::uint32_t>> playAndCollect(std::size_t numVectors)
    {
        std::vector<std::vector<std::uint32_t>> perVector;
        for (std::size_t vector = 0; vector < numVectors; ++vector) {
            listener.clear();
            Channels audio;
            harness.play(audio, 1);
            perVector.emplace_back();
            for (const RecordingListener::Call& call : listener.getCalls(Kind::marker))
                perVector.back().push_back(call.marker.identifier);
        }
        return perVector;
    }

    ScratchFolder folder;
    AudioFilePlayer player{1, 192000};
    RecordingListener listener{player};
    PlayerHarness harness{player, 512};
};

} // namespace

TEST_F(AudioFilePlayerMarkers, AreToldInTheVectorThatPlaysThemOnTheAudioThread)
{
    player.rewind();
    const std::vector<std::vector<std::uint32_t>> told = playAndCollect(12);
    EXPECT_EQ(told[0], std::vector<std::uint32_t>{4});
    EXPECT_EQ(told[1], std::vector<std::uint32_t>{1});
    EXPECT_EQ(told[9], std::vector<std::uint32_t>{2});
    std::size_t total = 0;
    for (const auto& vector : told)
        total += vector.size();
    EXPECT_EQ(total, 3u);

    player.rewind();
    listener.clear();
    Channels audio;
    harness.play(audio, 2);
    const std::vector<RecordingListener::Call> calls = listener.getCalls(Kind::marker);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].marker.name, "one");
    EXPECT_EQ(calls[1].marker.position, 1000u);
    EXPECT_EQ(calls[1].thread, std::this_thread::get_id());
}

// The spans of the last vectors overlap, and the end's vector scans the last span once more.
TEST_F(AudioFilePlayerMarkers, MarkerNearTheEndIsToldThreeTimes)
{
    player.seek(440.0f);
    Channels audio;
    listener.clear();
    harness.playUntilStopped(audio, 100);
    std::size_t nearEnd = 0;
    for (const RecordingListener::Call& call : listener.getCalls(Kind::marker))
        nearEnd += call.marker.identifier == 3 ? 1 : 0;
    EXPECT_EQ(nearEnd, 3u);
}

TEST_F(AudioFilePlayerMarkers, AreNotToldWhileThePositionOutputIsUnconnected)
{
    harness.setConnections({1, 0});
    player.rewind();
    Channels audio;
    harness.play(audio, 12);
    EXPECT_EQ(listener.count(Kind::marker), 0u);
}

TEST_F(AudioFilePlayerMarkers, LoopTellsThemAtEveryPass)
{
    player.setLoop(true);
    player.seek(0.01f, 30.0f);
    Channels audio;
    harness.play(audio, 20);
    // The region holds frames 0 to 1322 (0.01 ms is no frame, and not 0 either): marker 1 at each of its
    // passes while the position follows it.
    EXPECT_GE(listener.count(Kind::marker), 4u);
}

} // namespace vlk::test
