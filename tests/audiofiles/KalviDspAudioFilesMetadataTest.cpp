#include "audiofiles/KalviDspAudioFilesMetadata.h"

#include <gtest/gtest.h>

#include <memory>

using vlk::AudioFilesMetadata;

namespace {

std::string rateText(double sampleRate)
{
    AudioFilesMetadata metadata;
    metadata.sampleRate = sampleRate;
    return metadata.getSampleRateDescription();
}

AudioFilesMetadata::Marker makeMarker(std::uint32_t identifier, std::uint32_t position, const char* name)
{
    AudioFilesMetadata::Marker marker;
    marker.identifier = identifier;
    marker.position = position;
    marker.name = name;
    return marker;
}

} // namespace

TEST(AudioFilesMetadataDescription, SampleRatesOfTheListAreInKilohertz)
{
    EXPECT_EQ(rateText(8000), "8 kHz");
    EXPECT_EQ(rateText(22050), "22.05 kHz");
    EXPECT_EQ(rateText(384000), "384 kHz");
    // The rate is truncated before the lookup.
    EXPECT_EQ(rateText(44100.9), "44.1 kHz");
}

TEST(AudioFilesMetadataDescription, OtherSampleRatesAreInHertz)
{
    EXPECT_EQ(rateText(88200), "88200 Hz");
    EXPECT_EQ(rateText(11025), "11025 Hz");
    EXPECT_EQ(rateText(24000), "24000 Hz");
    EXPECT_EQ(rateText(176400), "176400 Hz");
    EXPECT_EQ(rateText(0), "0 Hz");
    // Beyond any table entry and any 32-bit integer: no truncation is attempted.
    EXPECT_TRUE(rateText(1e12).ends_with(" Hz"));
}

TEST(AudioFilesMetadataDescription, ChannelsBelowTwoAreSingular)
{
    AudioFilesMetadata metadata;
    EXPECT_EQ(metadata.getChannelsDescription(), "0 channel");
    metadata.numChannels = 1;
    EXPECT_EQ(metadata.getChannelsDescription(), "1 channel");
    metadata.numChannels = 2;
    EXPECT_EQ(metadata.getChannelsDescription(), "2 channels");
}

TEST(AudioFilesMetadataDescription, FormatCarriesTheWavFlags)
{
    AudioFilesMetadata metadata;
    EXPECT_EQ(metadata.getFormatDescription(), "unknown");
    metadata.formatName = "WAV File";
    EXPECT_EQ(metadata.getFormatDescription(), "WAV File");
    metadata.isBWF = true;
    EXPECT_EQ(metadata.getFormatDescription(), "WAV File (BWF)");
    metadata.isRF64 = true;
    EXPECT_EQ(metadata.getFormatDescription(), "WAV File (RF64 / BWF)");
    metadata.isBWF = false;
    EXPECT_EQ(metadata.getFormatDescription(), "WAV File (RF64)");
}

TEST(AudioFilesMetadataMarkers, RangeIncludesFromAndExcludesTo)
{
    AudioFilesMetadata metadata;
    metadata.addMarker(makeMarker(1, 100, "a"));
    EXPECT_TRUE(metadata.isMarkerInRange(0, 100, 101));
    EXPECT_FALSE(metadata.isMarkerInRange(0, 50, 100));
    EXPECT_FALSE(metadata.isMarkerInRange(0, 101, 200));
    EXPECT_TRUE(metadata.isMarkerInRange(0, 0, ~std::uint64_t{0}));
    EXPECT_FALSE(metadata.isMarkerInRange(1, 0, ~std::uint64_t{0}));
}

TEST(AudioFilesMetadataMarkers, KeptInTheOrderAdded)
{
    AudioFilesMetadata metadata;
    metadata.addMarker(makeMarker(7, 500, "late"));
    metadata.addMarker(makeMarker(3, 20, "early"));
    ASSERT_EQ(metadata.getNumMarkers(), 2u);
    EXPECT_EQ(metadata.getMarker(0).name, "late");
    EXPECT_EQ(metadata.getMarker(1).identifier, 3u);
    EXPECT_EQ(metadata.getMarker(1).position, 20u);
    EXPECT_EQ(metadata.getMarker(2).name, "");
}

TEST(AudioFilesMetadataMarkers, RecordOwnsItsCopies)
{
    AudioFilesMetadata::Marker marker = makeMarker(1, 10, "first");
    auto original = std::make_unique<AudioFilesMetadata>();
    original->addMarker(marker);
    marker.name = "changed";
    EXPECT_EQ(original->getMarker(0).name, "first");
    original->getMarker(0).name = "changed";
    EXPECT_EQ(original->getMarker(0).name, "first");

    AudioFilesMetadata copy(*original);
    AudioFilesMetadata assigned;
    assigned.addMarker(makeMarker(9, 90, "replaced"));
    assigned = *original;
    EXPECT_NE(copy.markers[0], original->markers[0]);
    original.reset();
    EXPECT_EQ(copy.getMarker(0).name, "first");
    ASSERT_EQ(assigned.getNumMarkers(), 1u);
    EXPECT_EQ(assigned.getMarker(0).position, 10u);
}
