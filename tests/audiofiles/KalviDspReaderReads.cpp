#include "audiofiles/KalviDspReaderReads.h"

#include "containers/KalviDspAudioBuffer.h"

namespace vlk::test {

namespace {

void append(Channels& channels, const AudioBuffer& buffer, std::uint64_t numFrames)
{
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        const float* samples = buffer.getChannel(static_cast<std::uint32_t>(channel));
        channels[channel].insert(channels[channel].end(), samples, samples + numFrames);
    }
}

} // namespace

Channels readThroughReader(const std::string& path)
{
    const auto reader = AudioFileReader::create(File(path));
    return readAt(*reader, 0, reader->getNumSamples());
}

Channels readSequentially(AudioFileReader& reader, std::uint64_t blockFrames, std::uint64_t maxFrames)
{
    Channels channels(reader.getNumChannels());
    AudioBuffer buffer(reader.getNumChannels(), blockFrames);
    buffer.setNumSamples(blockFrames);
    bool more = true;
    for (std::uint64_t position = 0; more && position < maxFrames; position += blockFrames) {
        more = reader.readSamples(buffer, 0, blockFrames, position);
        append(channels, buffer, blockFrames);
    }
    return channels;
}

Channels readAt(AudioFileReader& reader, std::uint64_t position, std::uint64_t numFrames)
{
    AudioBuffer buffer(reader.getNumChannels(), numFrames);
    buffer.setNumSamples(numFrames);
    reader.readSamples(buffer, 0, numFrames, position);
    Channels channels(reader.getNumChannels());
    append(channels, buffer, numFrames);
    return channels;
}

Channels slice(const Channels& channels, std::uint64_t position, std::uint64_t numFrames)
{
    Channels slices;
    for (const std::vector<float>& channel : channels)
        slices.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(position),
                            channel.begin() + static_cast<std::ptrdiff_t>(position + numFrames));
    return slices;
}

} // namespace vlk::test
