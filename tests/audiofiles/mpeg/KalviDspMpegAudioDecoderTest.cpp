#include "KalviDspMpegTestStreams.h"

#include "files/KalviDspScratchFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace vlk::test {
namespace {

DecodedStream decodeBytes(const ScratchFolder& scratch, const std::string& bytes, bool decode = true)
{
    return decodeMpegStream(scratch.write("stream.mp2", bytes), decode);
}

TEST(MpegAudioDecoderScan, TenJunkBytesAreFoundAndFortyThousandAreNot)
{
    const ScratchFolder scratch;
    const std::string stream = readFileBytes(getMpegTestPath("l2-fl10.bit"));
    const DecodedStream plain = decodeBytes(scratch, stream);
    const DecodedStream behindJunk = decodeBytes(scratch, std::string(10, '\0') + stream);
    EXPECT_EQ(behindJunk.numFrames, plain.numFrames);
    EXPECT_EQ(behindJunk.samples, plain.samples);
    EXPECT_EQ(decodeBytes(scratch, std::string(40000, '\0') + stream).numFrames, 0);
}

// After the first frame the scan takes headers of the same layer only: the Layer I frames behind a Layer II
// stream are not decoded as frames.
TEST(MpegAudioDecoderScan, ALayerChangeIsRefusedAfterTheFirstFrame)
{
    const ScratchFolder scratch;
    const std::string layer2 = readFileBytes(getMpegTestPath("l2-fl10.bit"));
    const DecodedStream plain = decodeBytes(scratch, layer2);
    const DecodedStream joined = decodeBytes(scratch, layer2 + readFileBytes(getMpegTestPath("l1-fl1.bit")));
    ASSERT_GE(joined.samples.size(), plain.samples.size());
    EXPECT_EQ(std::vector<float>(joined.samples.begin(), joined.samples.begin() + plain.samples.size()),
              plain.samples);
    EXPECT_EQ(joined.numFrames, plain.numFrames);
}

// Walking without outputs consumes the same frames and indexes the same positions, and writes nothing.
TEST(MpegAudioDecoderWalk, NullOutputsWalkEveryFrameWithoutWriting)
{
    const std::string path = getMpegTestPath("l2-fl16.bit");
    const FileReader decodedFile{File(path)};
    MpegAudioDecoder decoding(decodedFile);
    const DecodedStream decoded = decodeMpegStream(decoding);
    const FileReader walkedFile{File(path)};
    MpegAudioDecoder walking(walkedFile);
    const DecodedStream walked = decodeMpegStream(walking, false);
    EXPECT_EQ(walked.numFrames, decoded.numFrames);
    EXPECT_TRUE(walked.samples.empty());
    EXPECT_EQ(walking.getFrameTable(), decoding.getFrameTable());
    EXPECT_EQ(walking.getFrameTable().size(), static_cast<std::size_t>((decoded.numFrames + 3) / 4));
}

// A tag frame is stepped over, never decoded: a stream of nothing but a tag has no frame, and its count is
// the tag's.
TEST(MpegAudioDecoderTags, AnInfoFrameIsCountedNeverDecoded)
{
    const FileReader tagOnly{File(getMpegTestPath("l3-nonstandard-vbrtag-only.bit"))};
    MpegAudioDecoder decoder(tagOnly);
    EXPECT_EQ(decodeMpegStream(decoder, false).numFrames, 0);
    EXPECT_EQ(decoder.getVbrFrames(), 316);

    const FileReader tagged{File(getMpegTestPath("l3-nonstandard-sin1k0db_lame_vbrtag.bit"))};
    MpegAudioDecoder taggedDecoder(tagged);
    EXPECT_EQ(decodeMpegStream(taggedDecoder, false).numFrames, 316);
    EXPECT_EQ(taggedDecoder.getVbrFrames(), 316);
}

// A free-format frame's size is measured once, as the distance to the next header of the same format; the
// last frame has none behind it and is not finished.
TEST(MpegAudioDecoderFreeFormat, FramesAreMeasuredByTheDistanceToTheNextHeader)
{
    EXPECT_EQ(decodeMpegStream(getMpegTestPath("l3-he_free.bit"), false).numFrames, 68);
}

TEST(MpegAudioDecoderReset, ResetDecodesTheSameFramesAgainFromTheStart)
{
    const FileReader file{File(getMpegTestPath("l1-fl7.bit"))};
    MpegAudioDecoder decoder(file);
    const DecodedStream first = decodeMpegStream(decoder);
    decoder.getStream().setPosition(0);
    decoder.reset();
    decoder.setFrameCounter(0);
    const DecodedStream second = decodeMpegStream(decoder);
    EXPECT_EQ(second.samples, first.samples);
}

// The samples that each frame of the stream gives, in order.
std::vector<std::int32_t> samplesPerFrame(const std::string& path, int maxFrames)
{
    const FileReader file{File(path)};
    MpegAudioDecoder decoder(file);
    std::vector<std::int32_t> counts;
    float left[MpegAudioDecoder::maxSamplesPerFrame];
    float right[MpegAudioDecoder::maxSamplesPerFrame];
    while (static_cast<int>(counts.size()) < maxFrames) {
        std::int32_t done = 0;
        const int result = decoder.decodeNextFrame(left, right, done);
        if (result < 0)
            break;
        if (result == 0)
            counts.push_back(done);
    }
    return counts;
}

// The stream starts inside a frame: its first frame's main data lie before the file and it gives nothing;
// the next one finds its reservoir in the first.
TEST(MpegAudioDecoderLayer3, AFrameWithoutItsReservoirGivesNothingAndTheNextPlays)
{
    EXPECT_EQ(samplesPerFrame(getMpegTestPath("l3-sin1k0db.bit"), 3), (std::vector<std::int32_t>{0, 1152, 1152}));
}

// A granule whose values take more bits than its part2_3_length ends its frame; the stream plays on.
TEST(MpegAudioDecoderLayer3, AGranuleThatOverrunsItsBitsEndsTheFrame)
{
    const ScratchFolder scratch;
    std::string stream = readFileBytes(getMpegTestPath("l3-si.bit"));
    // MPEG-1 mono side information: 18 bits before the first granule's 12-bit part2_3_length, bytes 6 and 7.
    stream[6] = static_cast<char>(stream[6] & 0xC0);
    stream[7] = static_cast<char>(stream[7] & 0x03);
    const std::vector<std::int32_t> counts = samplesPerFrame(scratch.write("overrun.mp3", stream), 1000);
    ASSERT_EQ(counts.size(), 118u);
    EXPECT_EQ(counts[0], 0);
    EXPECT_EQ(std::count(counts.begin() + 1, counts.end(), 1152), 117);
}

// A mono frame writes no right channel.
TEST(MpegAudioDecoderLayer3, AMonoStreamLeavesTheRightChannelAlone)
{
    const FileReader file{File(getMpegTestPath("l3-si.bit"))};
    MpegAudioDecoder decoder(file);
    float left[MpegAudioDecoder::maxSamplesPerFrame];
    float right[MpegAudioDecoder::maxSamplesPerFrame];
    std::fill(std::begin(right), std::end(right), 7.0f);
    for (int step = 0; step < 20; ++step) {
        std::int32_t done = 0;
        decoder.decodeNextFrame(left, right, done);
    }
    EXPECT_EQ(std::count(std::begin(right), std::end(right), 7.0f), MpegAudioDecoder::maxSamplesPerFrame);
}

} // namespace
} // namespace vlk::test
