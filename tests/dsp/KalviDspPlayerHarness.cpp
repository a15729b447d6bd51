#include "dsp/KalviDspPlayerHarness.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstring>
#include <sndfile.h>
#include <stdexcept>

namespace vlk::test {

namespace {

constexpr float framesPerChannelStep = 1000000.0f;

// The container that the name's extension calls for, with the sample form and byte order of format.
int getFormatOfName(const std::string& name, int format)
{
    const std::size_t dot = name.rfind('.');
    std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    const int stated = format & SF_FORMAT_TYPEMASK;
    int container = 0;
    if (extension == ".aif" || extension == ".aiff")
        container = SF_FORMAT_AIFF;
    else if (extension == ".wav")
        // RF64 files keep the extension of the form they extend.
        container = stated == SF_FORMAT_RF64 ? SF_FORMAT_RF64 : SF_FORMAT_WAV;
    else
        throw std::invalid_argument("no container is known for the name " + name);
    if (stated != 0 && stated != container)
        throw std::invalid_argument("the format does not write the container that " + name + " calls for");
    return container | (format & ~SF_FORMAT_TYPEMASK);
}

// Writes the interleaved frames, then reads them back as floats: libsndfile is the oracle of the samples.
template <typename Sample, typename Writer>
SoundFile writeAndReadBack(const std::string& path, int format, int numChannels, std::int64_t numFrames,
                           int sampleRate, const std::vector<Sample>& interleaved, Writer writeFrames)
{
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = numChannels;
    info.format = format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error("libsndfile cannot write " + path + ": " + sf_strerror(nullptr));
    writeFrames(file, interleaved.data(), numFrames);
    sf_close(file);

    SF_INFO readInfo{};
    file = sf_open(path.c_str(), SFM_READ, &readInfo);
    if (file == nullptr)
        throw std::runtime_error("libsndfile cannot read " + path);
    // What libsndfile reads back is the file's length: 8-bit mono AIFF pads an odd count with a frame.
    numFrames = readInfo.frames;
    std::vector<float> readBack(static_cast<std::size_t>(numFrames * numChannels));
    sf_readf_float(file, readBack.data(), numFrames);
    sf_close(file);

    SoundFile sound{path, Channels(static_cast<std::size_t>(numChannels))};
    for (int channel = 0; channel < numChannels; ++channel) {
        sound.samples[channel].resize(static_cast<std::size_t>(numFrames));
        for (std::int64_t frame = 0; frame < numFrames; ++frame)
            sound.samples[channel][frame] = readBack[static_cast<std::size_t>(frame * numChannels + channel)];
    }
    return sound;
}

} // namespace

SoundFile writeNoiseFile(const ScratchFolder& folder, const std::string& name, int format, int numChannels,
                         std::int64_t numFrames, int sampleRate)
{
    std::vector<int> interleaved(static_cast<std::size_t>(numFrames * numChannels));
    std::uint32_t state = 0x9E3779B9u + static_cast<std::uint32_t>(numChannels);
    for (int& sample : interleaved) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        sample = static_cast<int>(state);
    }
    return writeAndReadBack(
        folder / name, getFormatOfName(name, format), numChannels, numFrames, sampleRate, interleaved,
        [](SNDFILE* file, const int* frames, std::int64_t count) { sf_writef_int(file, frames, count); });
}

SoundFile writeFrameNumberFile(const ScratchFolder& folder, const std::string& name, int numChannels,
                               std::int64_t numFrames, int sampleRate)
{
    std::vector<float> interleaved(static_cast<std::size_t>(numFrames * numChannels));
    for (std::int64_t frame = 0; frame < numFrames; ++frame)
        for (int channel = 0; channel < numChannels; ++channel)
            interleaved[static_cast<std::size_t>(frame * numChannels + channel)] =
                frameNumberSample(static_cast<std::uint64_t>(frame), static_cast<std::uint32_t>(channel));
    return writeAndReadBack(
        folder / name, getFormatOfName(name, SF_FORMAT_FLOAT), numChannels, numFrames, sampleRate,
        interleaved,
        [](SNDFILE* file, const float* frames, std::int64_t count) { sf_writef_float(file, frames, count); });
}

float frameNumberSample(std::uint64_t frame, std::uint32_t channel)
{
    return static_cast<float>(frame + 1) + framesPerChannelStep * static_cast<float>(channel);
}

std::int64_t findFirstDifference(const std::vector<float>& expected, const std::vector<float>& actual)
{
    const std::size_t common = std::min(expected.size(), actual.size());
    for (std::size_t index = 0; index < common; ++index)
        if (std::memcmp(&expected[index], &actual[index], sizeof(float)) != 0)
            return static_cast<std::int64_t>(index);
    if (expected.size() != actual.size())
        return static_cast<std::int64_t>(common);
    return -1;
}

RecordingListener::RecordingListener(AudioFilePlayer& player) : player(player)
{
    player.addListener(this);
}

RecordingListener::~RecordingListener()
{
    player.removeListener(this);
}

void RecordingListener::progressChanged(float percent)
{
    record({Kind::progress, percent, std::this_thread::get_id(), {}});
}

void RecordingListener::bufferingChanged(float percent)
{
    record({Kind::buffering, percent, std::this_thread::get_id(), {}});
}

void RecordingListener::endOfFile()
{
    record({Kind::endOfFile, 0.0f, std::this_thread::get_id(), {}});
}

void RecordingListener::markerReached(const AudioFilesMetadata::Marker& marker)
{
    record({Kind::marker, 0.0f, std::this_thread::get_id(), marker});
}

std::vector<RecordingListener::Call> RecordingListener::getCalls() const
{
    const std::lock_guard<std::mutex> guard(lock);
    return calls;
}

std::vector<RecordingListener::Call> RecordingListener::getCalls(Kind kind) const
{
    std::vector<Call> selected;
    for (const Call& call : getCalls())
        if (call.kind == kind)
            selected.push_back(call);
    return selected;
}

std::size_t RecordingListener::count(Kind kind) const
{
    return getCalls(kind).size();
}

std::size_t RecordingListener::countFromOtherThreads(Kind kind, std::thread::id first,
                                                     std::thread::id second) const
{
    std::size_t result = 0;
    for (const Call& call : getCalls(kind))
        if (call.thread != first && call.thread != second)
            ++result;
    return result;
}

void RecordingListener::clear()
{
    const std::lock_guard<std::mutex> guard(lock);
    calls.clear();
}

void RecordingListener::record(const Call& call)
{
    const std::lock_guard<std::mutex> guard(lock);
    calls.push_back(call);
}

PlayerHarness::PlayerHarness(AudioFilePlayer& player, std::uint32_t vectorSize, float sampleRate)
    : player(player), vectorSize(vectorSize),
      outputs(player.getNumOutlets(), std::vector<double>(vectorSize, 0.0))
{
    for (std::vector<double>& output : outputs)
        outputPointers.push_back(output.data());
    player.prepare(vectorSize, true, sampleRate);
    setConnections(std::vector<short>(player.getNumOutlets(), 1));
}

void PlayerHarness::setConnections(const std::vector<short>& outputCounts)
{
    player.setConnections(outputCounts.data());
}

// The events of the vector are told right after it, as a host's scheduler would.
void PlayerHarness::perform(long mute, long bypass)
{
    player.perform(outputPointers.data(), nullptr, vectorSize, 0, mute, bypass);
    if (deliversEvents)
        player.deliverQueuedEvents();
}

bool PlayerHarness::waitForRing()
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (player.isPlaying() && !isRingReady()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return true;
}

// A host whose disk keeps up finds a vector's frames in the ring; the end of a region without loop is
// padded, so that holds for its last vector too.
bool PlayerHarness::isRingReady() const
{
    return player.getNumChannelsInFile() == 0 || player.getNumSamplesInRing() >= vectorSize;
}

std::vector<float> PlayerHarness::getOutput(std::uint32_t channel) const
{
    return std::vector<float>(outputs[channel].begin(), outputs[channel].end());
}

float PlayerHarness::getSample(std::uint32_t channel, std::size_t index) const
{
    return static_cast<float>(outputs[channel][index]);
}

std::size_t PlayerHarness::playUntilStopped(Channels& audio, std::size_t maxVectors)
{
    std::size_t numVectors = 0;
    while (player.isPlaying() && numVectors < maxVectors) {
        if (!waitForRing())
            throw std::runtime_error("the ring stayed short of a vector");
        perform();
        appendVector(audio, nullptr);
        ++numVectors;
    }
    return numVectors;
}

void PlayerHarness::play(Channels& audio, std::size_t numVectors, std::vector<float>* positions)
{
    for (std::size_t vector = 0; vector < numVectors; ++vector) {
        if (!waitForRing())
            throw std::runtime_error("the ring stayed short of a vector");
        perform();
        appendVector(audio, positions);
    }
}

void PlayerHarness::appendVector(Channels& audio, std::vector<float>* positions) const
{
    const std::uint32_t numAudioOutputs = player.getNumOutlets() - 1;
    audio.resize(numAudioOutputs);
    for (std::uint32_t channel = 0; channel < numAudioOutputs; ++channel)
        for (double sample : outputs[channel])
            audio[channel].push_back(static_cast<float>(sample));
    if (positions != nullptr)
        for (double sample : outputs[numAudioOutputs])
            positions->push_back(static_cast<float>(sample));
}

} // namespace vlk::test
