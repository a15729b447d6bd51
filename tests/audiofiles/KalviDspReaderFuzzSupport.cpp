#include "audiofiles/KalviDspReaderFuzzSupport.h"

#include "containers/KalviDspAudioBuffer.h"
#include "threads/KalviDspException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace vlk::test {

namespace {

// Channel counts that a format sign-extends reach billions; no buffer holds them, and the reads say so.
constexpr std::uint32_t largestBufferableChannelCount = 1 << 16;

// Every frame that can lie in a file of fileSize bytes and the stated end of a longer one, in blocks like the
// player's.
void readEverything(AudioFileReader& reader, std::uint64_t fileSize)
{
    const std::uint32_t numChannels = reader.getNumChannels();
    if (numChannels > largestBufferableChannelCount) {
        AudioBuffer narrow(1, 4);
        ASSERT_FALSE(reader.readSamples(narrow, 0, 4, 0));
        return;
    }
    const std::uint64_t blockFrames = std::clamp<std::uint64_t>(262144 / numChannels, 1, 4096);
    AudioBuffer buffer(numChannels, blockFrames);
    // A frame is at least a byte, so no more frames than bytes can hold samples; the rest reads as zeros.
    const std::uint64_t numFrames = std::min(reader.getNumSamples(), fileSize + 2 * blockFrames);
    for (std::uint64_t position = 0; position < numFrames; position += blockFrames) {
        ASSERT_TRUE(reader.readSamples(buffer, 0, std::min(blockFrames, numFrames - position), position));
    }
    if (reader.getNumSamples() > 2) {
        ASSERT_TRUE(reader.readSamples(buffer, 0, std::min<std::uint64_t>(blockFrames, 5),
                                       reader.getNumSamples() - 2));
    }
    // The markers are copies that the player hands out while it plays.
    for (std::size_t index = 0; index < reader.getMetadata().getNumMarkers(); ++index)
        reader.getMetadata().getMarker(index);
}

struct FuzzOutcome
{
    int opened = 0;
    int refused = 0;
};

void tryImage(const std::string& path, const std::string& image, const ReaderOpener& open,
              const std::string& refusalText, FuzzOutcome& outcome)
{
    ASSERT_TRUE(rewriteFile(path, image));
    std::unique_ptr<AudioFileReader> reader;
    try {
        const QuietStandardError quiet;
        reader = open(File(path));
    } catch (const Exception& exception) {
        ASSERT_EQ(exception.message, refusalText);
        ++outcome.refused;
        return;
    }
    ++outcome.opened;
    readEverything(*reader, image.size());
}

} // namespace

QuietStandardError::QuietStandardError()
{
    if (std::getenv("VELUR_FUZZ_VERBOSE") != nullptr)
        return;
    saved = ::dup(STDERR_FILENO);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDERR_FILENO);
    ::close(nowhere);
}

QuietStandardError::~QuietStandardError()
{
    if (saved < 0)
        return;
    ::dup2(saved, STDERR_FILENO);
    ::close(saved);
}

bool rewriteFile(const std::string& path, const std::string& bytes)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0644);
    if (file < 0)
        return false;
    const bool written = ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                         ::ftruncate(file, static_cast<off_t>(bytes.size())) == 0;
    ::close(file);
    return written;
}

int FuzzRandom::pick(int count)
{
    return static_cast<int>(random32() % static_cast<std::uint32_t>(count));
}

std::uint32_t FuzzRandom::random32()
{
    return static_cast<std::uint32_t>(generator());
}

std::size_t FuzzRandom::pickFrom(const std::vector<std::size_t>& offsets)
{
    return offsets[static_cast<std::size_t>(pick(static_cast<int>(offsets.size())))];
}

std::size_t FuzzRandom::pickOffset(const std::string& image)
{
    return random32() % image.size();
}

void overwrite(std::string& image, std::size_t offset, const std::string& bytes)
{
    if (offset < image.size())
        image.replace(offset, std::min(bytes.size(), image.size() - offset),
                      bytes.substr(0, image.size() - offset));
}

void fuzzReader(const std::string& path, const ReaderOpener& open, const std::string& refusalText,
                int numRounds, const std::function<std::string(int round)>& makeImage)
{
    FuzzOutcome outcome;
    for (int round = 0; round < numRounds; ++round) {
        tryImage(path, makeImage(round), open, refusalText, outcome);
        if (::testing::Test::HasFatalFailure()) {
            ADD_FAILURE() << "round " << round;
            return;
        }
    }
    EXPECT_GT(outcome.opened, 1000);
    EXPECT_GT(outcome.refused, 500);
}

} // namespace vlk::test
