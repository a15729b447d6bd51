#include "audiofiles/mpeg/KalviDspMpegFrameHeader.h"

#include <gtest/gtest.h>

namespace vlk::test {
namespace {

struct HeaderCase
{
    std::uint32_t word;
    int layer;
    int lsf;
    bool mpeg25;
    int sampleRateIndex;
    int numChannels;
    int frameSize;
};

// Sizes behind the four header bytes, from the formulas of each layer.
TEST(MpegFrameHeader, FieldsAndFrameSizes)
{
    const HeaderCase cases[] = {
        // MPEG-1 Layer III, 128 kbit/s, 44.1 kHz, no padding, stereo: 417 bytes in all.
        {0xFFFB9000, 3, 0, false, 0, 2, 413},
        // The same with padding, mono.
        {0xFFFB92C0, 3, 0, false, 0, 1, 414},
        // MPEG-1 Layer II, 192 kbit/s, 48 kHz: 576 bytes in all.
        {0xFFFDA400, 2, 0, false, 1, 2, 572},
        // MPEG-1 Layer I, 384 kbit/s, 32 kHz, padding: (144 + 1) slots of 4 bytes.
        {0xFFFFCA00, 1, 0, false, 2, 2, 576},
        // MPEG-2 Layer III, 64 kbit/s, 22.05 kHz: 208 bytes in all.
        {0xFFF38000, 3, 1, false, 3, 2, 204},
        // MPEG-2.5 Layer III, 32 kbit/s, 8 kHz, mono: 288 bytes in all.
        {0xFFE348C0, 3, 1, true, 8, 1, 284},
        // Layer III free format has size 0.
        {0xFFFB0000, 3, 0, false, 0, 2, 0},
    };
    for (const HeaderCase& c : cases) {
        MpegFrameHeader header;
        header.decode(c.word);
        EXPECT_EQ(header.layer, c.layer) << std::hex << c.word;
        EXPECT_EQ(header.lsf, c.lsf) << std::hex << c.word;
        EXPECT_EQ(header.mpeg25, c.mpeg25) << std::hex << c.word;
        EXPECT_EQ(header.sampleRateIndex, c.sampleRateIndex) << std::hex << c.word;
        EXPECT_EQ(header.numChannels, c.numChannels) << std::hex << c.word;
        EXPECT_EQ(header.frameSize, c.frameSize) << std::hex << c.word;
    }
}

TEST(MpegFrameHeader, Layer2AllocationTables)
{
    MpegFrameHeader header;
    // MPEG-2 always uses the table of the low sampling frequencies.
    header.decode(0xFFF5A000);
    header.selectLayer2AllocationTable();
    EXPECT_EQ(header.layer2AllocationTable, &mpeg::layer2AllocationTables[4]);
    EXPECT_EQ(header.layer2SubbandLimit, 30);
    // MPEG-1, 48 kHz, 192 kbit/s stereo (96 a channel): table 0, 27 subbands.
    header.decode(0xFFFDA400);
    header.selectLayer2AllocationTable();
    EXPECT_EQ(header.layer2SubbandLimit, 27);
    // MPEG-1, 44.1 kHz, 32 kbit/s mono: table 2, 8 subbands.
    header.decode(0xFFFD10C0);
    header.selectLayer2AllocationTable();
    EXPECT_EQ(header.layer2SubbandLimit, 8);
}

TEST(MpegFrameHeader, WordsThatCannotBeHeaders)
{
    EXPECT_TRUE(MpegFrameHeader::isPossibleHeader(0xFFFB9000));
    EXPECT_FALSE(MpegFrameHeader::isPossibleHeader(0xFFDB9000)) << "sync";
    EXPECT_FALSE(MpegFrameHeader::isPossibleHeader(0xFFF99000)) << "layer";
    EXPECT_FALSE(MpegFrameHeader::isPossibleHeader(0xFFFBF000)) << "bit rate";
    EXPECT_FALSE(MpegFrameHeader::isPossibleHeader(0xFFFB9C00)) << "sample rate";
    EXPECT_FALSE(MpegFrameHeader::isPossibleHeader(0xFFFB9002)) << "emphasis";
}

} // namespace
} // namespace vlk::test
