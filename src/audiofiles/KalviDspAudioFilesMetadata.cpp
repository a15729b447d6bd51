#include "audiofiles/KalviDspAudioFilesMetadata.h"

#include "text/KalviDspDisplayText.h"
#include "text/KalviDspStringHelper.h"

#include <memory>

namespace vlk {

namespace {

// The rates named in kHz. The list is kept as it stands: 11025, 24000, 88200 and 176400 are told in Hz.
const char* getKnownSampleRateText(double sampleRate)
{
    // Checked before the truncation, which is undefined for values no 64-bit integer holds (NaN included).
    if (!(sampleRate >= 0.0 && sampleRate < 1e9))
        return nullptr;
    switch (static_cast<std::int64_t>(sampleRate)) {
    case 8000:
        return "8 kHz";
    case 16000:
        return "16 kHz";
    case 22050:
        return "22.05 kHz";
    case 32000:
        return "32 kHz";
    case 44100:
        return "44.1 kHz";
    case 48000:
        return "48 kHz";
    case 96000:
        return "96 kHz";
    case 192000:
        return "192 kHz";
    case 384000:
        return "384 kHz";
    default:
        return nullptr;
    }
}

} // namespace

AudioFilesMetadata::AudioFilesMetadata(const AudioFilesMetadata& other)
{
    *this = other;
}

AudioFilesMetadata& AudioFilesMetadata::operator=(const AudioFilesMetadata& other)
{
    if (this == &other)
        return *this;
    deleteMarkers();
    sampleRate = other.sampleRate;
    bitsPerSample = other.bitsPerSample;
    numSamples = other.numSamples;
    numChannels = other.numChannels;
    isFloatingPoint = other.isFloatingPoint;
    formatName = other.formatName;
    isRF64 = other.isRF64;
    isBWF = other.isBWF;
    for (const Marker* marker : other.markers)
        addMarker(*marker);
    return *this;
}

AudioFilesMetadata::~AudioFilesMetadata()
{
    deleteMarkers();
}

void AudioFilesMetadata::deleteMarkers()
{
    for (Marker* marker : markers)
        delete marker;
    markers.clear();
}

std::size_t AudioFilesMetadata::getNumMarkers() const
{
    return markers.size();
}

void AudioFilesMetadata::addMarker(const Marker& marker)
{
    auto copy = std::make_unique<Marker>(marker);
    markers.push_back(copy.get());
    copy.release();
}

AudioFilesMetadata::Marker AudioFilesMetadata::getMarker(std::size_t index) const
{
    return index < markers.size() ? *markers[index] : Marker();
}

bool AudioFilesMetadata::isMarkerInRange(std::size_t index, std::uint64_t from, std::uint64_t to) const
{
    if (index >= markers.size())
        return false;
    const std::uint64_t position = markers[index]->position;
    return from <= position && position < to;
}

String AudioFilesMetadata::getFormatDescription() const
{
    if (isRF64 && isBWF)
        return formatName + " (RF64 / BWF)";
    if (isRF64)
        return formatName + " (RF64)";
    if (isBWF)
        return formatName + " (BWF)";
    return formatName;
}

String AudioFilesMetadata::getChannelsDescription() const
{
    return toString(numChannels) + (numChannels < 2 ? " channel" : " channels");
}

String AudioFilesMetadata::getSampleRateDescription() const
{
    if (const char* text = getKnownSampleRateText(sampleRate))
        return text;
    return doubleToString(sampleRate, 0) + " Hz";
}

String AudioFilesMetadata::getBitDepthDescription() const
{
    return toString(bitsPerSample) + " bits";
}

String AudioFilesMetadata::getDurationDescription() const
{
    return getTimeText(numSamples, sampleRate);
}

} // namespace vlk
