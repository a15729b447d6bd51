// Every reader through the factory, on a file of the fuzzer's bytes: the first byte names the file's
// extension, for bytes whose header says nothing; the rest is the file. A file that opens is described and
// read: whole (as far as a bound), one channel, and at positions that the bytes choose, the end and
// beyond it included.
#include "KalviDspFuzzScratchFile.h"

#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "files/KalviDspFile.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

constexpr const char* extensions[] = {".wav", ".aif", ".mp3", ".bin"};
// Samples of all channels read whole at most, and in one read: enough to cross the readers' scratch blocks
// and the end of a short file, few enough to keep the executions many.
constexpr std::uint64_t largestWholeRead = 1 << 14;
constexpr std::uint64_t largestBlockSamples = 1 << 12;

std::uint64_t mix(std::uint64_t value)
{
    value ^= value >> 33;
    value *= 0xFF51AFD7ED558CCDull;
    value ^= value >> 33;
    return value;
}

void describe(const vlk::AudioFilesMetadata& metadata)
{
    const std::string text = metadata.getFormatDescription() + metadata.getChannelsDescription() +
                             metadata.getSampleRateDescription() + metadata.getBitDepthDescription() +
                             metadata.getDurationDescription();
    if (text.empty())
        std::abort();
}

// The raw readers never fail. The MPEG reader's length is an estimate, and a read past the stream's true
// end answers false, with zeros; the platform's services fail a read of a stream that turns undecodable.
void expectRead(const vlk::AudioFileReader& reader, bool result)
{
    const vlk::String& formatName = reader.getMetadata().formatName;
    if (!result && (formatName == "WAV File" || formatName == "AIFF File"))
        std::abort();
}

void read(vlk::AudioFileReader& reader, std::uint64_t seed)
{
    const std::uint32_t channels = reader.getNumChannels();
    if (channels == 0 || channels > vlk::AudioFileReader::maxNumChannels)
        std::abort();
    const std::uint64_t blockFrames = std::max<std::uint64_t>(1, largestBlockSamples / channels);
    vlk::AudioBuffer buffer(channels, blockFrames);
    buffer.setNumSamples(blockFrames);

    const std::uint64_t length = reader.getNumSamples();
    const std::uint64_t whole = std::min(length + 3, std::max<std::uint64_t>(largestWholeRead / channels, 2));
    for (std::uint64_t done = 0; done < whole; done += blockFrames)
        expectRead(reader, reader.readSamples(buffer, 0, std::min(blockFrames, whole - done), done));

    const std::uint64_t positions[] = {length,        length - 1, length + 1000, mix(seed) % (length + 1),
                                       mix(seed + 1), 1ull << 62};
    for (const std::uint64_t position : positions) {
        const std::uint64_t count = 1 + mix(seed ^ position) % blockFrames;
        expectRead(reader, reader.readSamples(buffer, blockFrames - count, count, position));
    }
    vlk::AudioBuffer single(1, blockFrames);
    single.setNumSamples(blockFrames);
    expectRead(reader,
               reader.readChannel(single, 0, 0, blockFrames, static_cast<std::uint32_t>(seed % channels), 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::string path =
        vlk::fuzz::writeScratchFile(data + 1, size - 1, extensions[data[0] % std::size(extensions)]);
    std::uint64_t seed = size;
    for (std::size_t index = 0; index < size; index += 61)
        seed = mix(seed + data[index]);
    try {
        const std::unique_ptr<vlk::AudioFileReader> reader = vlk::AudioFileReader::create(vlk::File(path));
        if (reader == nullptr)
            std::abort();
        describe(reader->getMetadata());
        read(*reader, seed);
    } catch (const vlk::Exception&) {
    }
    ::unlink(path.c_str());
    return 0;
}
