#include "audiofiles/KalviDspWavFileReader.h"

#include "audiofiles/KalviDspWavFixtures.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace vlk;
using namespace vlk::test;
using namespace std::string_literals;

namespace {

std::string monoFormat()
{
    return makeChunk("fmt ", makeFormatContent(1, 1, 44100, 16));
}

std::string monoData()
{
    return makeChunk("data", littleEndian16(100) + littleEndian16(200));
}

// The value of key, or a marker text when the table has no such key.
std::string valueOf(const StringPairArray& table, const std::string& key)
{
    for (std::size_t index = 0; index < table.keys.size(); ++index)
        if (table.keys[index] == key)
            return table.values[index];
    return "<absent>";
}

BextContent makeSampleBext()
{
    BextContent bext;
    bext.description = "Take5";
    bext.originator = "Desk A";
    bext.originatorReference = "REF-0042";
    bext.originationDate = "2021-06-30";
    bext.originationTime = "12:34:56";
    bext.timeReferenceLow = 0;
    bext.timeReferenceHigh = 1;
    bext.version = 2;
    for (int byte = 0; byte < 64; ++byte)
        bext.umid += static_cast<char>(byte * 4);
    bext.codingHistory = "A=PCM,F=44100,W=16,M=mono\r\n";
    return bext;
}

} // namespace

TEST(WavFileReaderBext, FieldsBecomeTheTextTableInOrder)
{
    const ScratchFolder scratch;
    const auto reader = openWavImage(
        scratch,
        makeRiffFile(monoFormat() + makeChunk("bext", makeBextContent(makeSampleBext())) + monoData()));
    EXPECT_TRUE(reader->getMetadata().isBWF);
    EXPECT_EQ(reader->getMetadata().getFormatDescription(), "WAV File (BWF)");
    EXPECT_EQ(reader->getNumSamples(), 2u);

    const StringPairArray& fields = reader->getBextFields();
    EXPECT_TRUE(fields.ignoreCase);
    const Vector<String> keys{"bwav description",      "bwav originator",       "bwav originator ref",
                              "bwav origination date", "bwav origination time", "bwav time reference",
                              "bwav smpte umid",       "bwav bwf version",      "bwav coding history"};
    EXPECT_EQ(fields.keys, keys);
    // Fixed fields keep their whole width, zero bytes included.
    EXPECT_EQ(valueOf(fields, "bwav description"), "Take5" + std::string(251, '\0'));
    EXPECT_EQ(valueOf(fields, "bwav originator"), "Desk A" + std::string(26, '\0'));
    EXPECT_EQ(valueOf(fields, "bwav originator ref"), "REF-0042" + std::string(24, '\0'));
    EXPECT_EQ(valueOf(fields, "bwav origination date"), "2021-06-30");
    EXPECT_EQ(valueOf(fields, "bwav origination time"), "12:34:56");
    // High word 1, low word 0: 2 to the power 32.
    EXPECT_EQ(valueOf(fields, "bwav time reference"), "4294967296");
    std::string umidDigits;
    for (int byte = 0; byte < 64; ++byte)
        umidDigits += std::to_string(byte * 4);
    EXPECT_EQ(valueOf(fields, "bwav smpte umid"), umidDigits);
    EXPECT_EQ(valueOf(fields, "bwav bwf version"), "2");
    EXPECT_EQ(valueOf(fields, "bwav coding history"), "A=PCM,F=44100,W=16,M=mono\r\n");
}

TEST(WavFileReaderBext, ZeroUmidAndTimeReferenceWords)
{
    const ScratchFolder scratch;
    BextContent bext;
    bext.timeReferenceLow = 0xFFFFFFFF;
    bext.timeReferenceHigh = 0;
    const auto reader =
        openWavImage(scratch, makeRiffFile(monoFormat() + makeChunk("bext", makeBextContent(bext))));
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav smpte umid"), std::string(64, '0'));
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav time reference"), "4294967295");
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav coding history"), "");
}

TEST(WavFileReaderBext, SecondChunkReplacesTheFirstTable)
{
    const ScratchFolder scratch;
    BextContent second;
    second.description = "second";
    const auto reader = openWavImage(
        scratch, makeRiffFile(makeChunk("bext", makeBextContent(makeSampleBext())) + monoFormat() +
                              makeChunk("bext", makeBextContent(second)) + monoData()));
    EXPECT_EQ(reader->getBextFields().keys.size(), 9u);
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav description"), "second" + std::string(250, '\0'));
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav coding history"), "");
    EXPECT_EQ(reader->getNumSamples(), 2u);
}

TEST(WavFileReaderBext, ChunkCutByTheEndOfTheFileStillMakesABwf)
{
    const ScratchFolder scratch;
    const std::string bext = makeBextContent(makeSampleBext());
    // The header claims the whole chunk; the file ends inside the description.
    const auto reader =
        openWavImage(scratch, makeRiffFile(monoFormat() + monoData() +
                                           makeChunkWithSize("bext", static_cast<std::uint32_t>(bext.size()),
                                                             bext.substr(0, 100))));
    EXPECT_TRUE(reader->getMetadata().isBWF);
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav description"), std::string(256, '\0'));
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav time reference"), "0");
    EXPECT_EQ(valueOf(reader->getBextFields(), "bwav coding history"), "");
    EXPECT_EQ(reader->getNumSamples(), 2u);
}

// Empty bext chunks by the hundred thousand, each read past its end as the fixed fields ask: every one is
// walked, and the format and samples behind them are found.
TEST(WavFileReaderBext, HundredThousandEmptyChunksAreWalked)
{
    const ScratchFolder scratch;
    std::string chunks;
    for (int index = 0; index < 100000; ++index)
        chunks += makeChunk("bext", "");
    const auto reader = openWavImage(scratch, makeRiffFile(chunks + monoFormat() + monoData()));
    EXPECT_TRUE(reader->getMetadata().isBWF);
    EXPECT_EQ(reader->getNumSamples(), 2u);
}

TEST(WavFileReaderBext, Rf64WithBextIsDescribedWithBothFlags)
{
    const ScratchFolder scratch;
    const auto reader = openWavImage(
        scratch, makeRf64File(monoFormat() + makeChunk("bext", makeBextContent({})) + monoData(), 4));
    EXPECT_EQ(reader->getMetadata().getFormatDescription(), "WAV File (RF64 / BWF)");
}

TEST(WavFileReaderChna, RecordsFromTheChunkSizeNotTheCounters)
{
    const ScratchFolder scratch;
    // The counters claim 7 tracks and 5 identifiers; the chunk holds two records.
    const std::string content = littleEndian16(7) + littleEndian16(5) +
                                makeChnaTrackRecord(1, "ATU_00000001", "AT_00010001_01", "AP_00010002") +
                                makeChnaTrackRecord(2, "ATU_00000002", "", "AP_0001");
    const auto reader =
        openWavImage(scratch, makeRiffFile(monoFormat() + makeChunk("chna", content) + monoData()));
    const ChnaChunk& chna = reader->getChnaChunk();
    EXPECT_EQ(chna.numTracks, 7u);
    EXPECT_EQ(chna.numUids, 5u);
    EXPECT_EQ(chna.trackIndices, (Vector<unsigned short>{1, 2}));
    EXPECT_EQ(chna.audioTrackUids, (Vector<String>{"ATU_00000001", "ATU_00000002"}));
    // An identifier of zero bytes only is empty; any other keeps its field's width.
    EXPECT_EQ(chna.audioTrackFormatIdRefs, (Vector<String>{"AT_00010001_01", ""}));
    EXPECT_EQ(chna.audioPackFormatIdRefs, (Vector<String>{"AP_00010002", "AP_0001\0\0\0\0"s}));
    EXPECT_EQ(reader->getNumSamples(), 2u);
}

TEST(WavFileReaderChna, ChunkBelowOneRecordGivesTheCountersOnly)
{
    const ScratchFolder scratch;
    const std::string content =
        littleEndian16(1) + littleEndian16(1) +
        makeChnaTrackRecord(1, "ATU_00000001", "AT_00010001_01", "AP_00010002").substr(0, 39);
    const auto reader =
        openWavImage(scratch, makeRiffFile(monoFormat() + makeChunk("chna", content) + monoData()));
    EXPECT_EQ(reader->getChnaChunk().numTracks, 1u);
    EXPECT_TRUE(reader->getChnaChunk().trackIndices.empty());
    EXPECT_TRUE(reader->getChnaChunk().audioTrackUids.empty());
    EXPECT_EQ(reader->getNumSamples(), 2u);
}

TEST(WavFileReaderChna, SizeBeyondTheFileMakesNoRecordsBehindItsEnd)
{
    const ScratchFolder scratch;
    const std::string content = littleEndian16(1) + littleEndian16(1) +
                                makeChnaTrackRecord(3, "ATU_00000003", "AT_00010003_01", "AP_00010003");
    const auto reader = openWavImage(
        scratch, makeRiffFile(monoFormat() + monoData() + makeChunkWithSize("chna", 0xFFFFFFF0u, content)));
    EXPECT_EQ(reader->getChnaChunk().trackIndices, (Vector<unsigned short>{3}));
}

TEST(WavFileReaderAxml, TextIsKeptWholeAndCutAtTheEndOfTheFile)
{
    const ScratchFolder scratch;
    const std::string xml = "<ebuCoreMain><coreMetadata/></ebuCoreMain>\n";
    // An odd size: the pad byte is skipped and the data behind it found.
    const auto reader =
        openWavImage(scratch, makeRiffFile(monoFormat() + makeChunk("axml", xml + "x") + monoData()));
    EXPECT_EQ(reader->getAxmlText(), xml + "x");
    EXPECT_EQ(reader->getNumSamples(), 2u);

    const auto cut = openWavImage(
        scratch, makeRiffFile(monoFormat() + monoData() + makeChunkWithSize("axml", 0x7FFFFFFF, xml)));
    EXPECT_EQ(cut->getAxmlText(), xml);

    const auto later = openWavImage(scratch, makeRiffFile(monoFormat() + makeChunk("axml", "first") +
                                                          makeChunk("axml", "second") + monoData()));
    EXPECT_EQ(later->getAxmlText(), "second");
}

TEST(WavFileReaderMarkers, CueChunkGivesNoMarkers)
{
    const ScratchFolder scratch;
    // One cue point at frame 1, and a label for it in a LIST chunk.
    const std::string cue = littleEndian32(1) + littleEndian32(1) + littleEndian32(0) + "data" +
                            littleEndian32(0) + littleEndian32(0) + littleEndian32(1);
    const std::string label = "adtl" + makeChunk("labl", littleEndian32(1) + "verse"s + '\0');
    const auto reader = openWavImage(
        scratch, makeRiffFile(monoFormat() + makeChunk("cue ", cue) + makeChunk("LIST", label) + monoData()));
    EXPECT_EQ(reader->getMetadata().getNumMarkers(), 0u);
    EXPECT_EQ(reader->getNumSamples(), 2u);
}
