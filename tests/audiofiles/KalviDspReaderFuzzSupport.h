#pragma once

#include "audiofiles/KalviDspAudioFileReader.h"
#include "files/KalviDspFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace vlk::test {

// Helpers of the readers' fuzz tests, which build thousands of readers over one scratch file.

// Every refused file logs its exception report to standard error; thousands of them would bury the test's
// output, so they go nowhere while this lives. A sanitizer report from inside a constructor would go with
// them: the test then dies without one, and VELUR_FUZZ_VERBOSE=1 shows it.
class QuietStandardError
{
public:
    QuietStandardError();
    ~QuietStandardError();
    QuietStandardError(const QuietStandardError&) = delete;
    QuietStandardError& operator=(const QuietStandardError&) = delete;

private:
    int saved = -1;
};

// Writes bytes over the file at path in place. Truncating the file to nothing first, as a fresh write does,
// frees and takes back its disk block for every case, which on some file systems costs more than all the
// rest of a fuzz test. False when the file cannot be written.
bool rewriteFile(const std::string& path, const std::string& bytes);

// The choices of a mutator, from one seeded generator, so that a failing round comes back on every run.
class FuzzRandom
{
public:
    explicit FuzzRandom(std::uint32_t seed) : generator(seed) {}

    // 0 to count - 1.
    int pick(int count);
    std::uint32_t random32();
    std::size_t pickFrom(const std::vector<std::size_t>& offsets);
    // An offset inside image, which must not be empty.
    std::size_t pickOffset(const std::string& image);

private:
    std::mt19937 generator;
};

// Writes bytes over image from offset on, cut at its end; nothing when offset lies behind the end.
void overwrite(std::string& image, std::size_t offset, const std::string& bytes);

using ReaderOpener = std::function<std::unique_ptr<AudioFileReader>(const File&)>;

// Runs numRounds rounds over the one scratch file at path, each writing makeImage(round) and opening it. A
// refusal must carry refusalText; an opened file must read every frame that can lie in it and the stated end
// of a longer one, in blocks like the player's, and hand out its markers. Stops at the first fault, naming
// its round, and expects both roads to be taken often, or the mutations miss what they are for.
void fuzzReader(const std::string& path, const ReaderOpener& open, const std::string& refusalText,
                int numRounds, const std::function<std::string(int round)>& makeImage);

} // namespace vlk::test
