// Layer II decoding against libmpg123, on the same stream: a compliance stream of the test set repeated to
// about 30 seconds of stereo at 48 kHz.
#include "audiofiles/KalviDspAudioFileReader.h"
#include "containers/KalviDspAudioBuffer.h"
#include "threads/KalviDspLog.h"

#include <benchmark/benchmark.h>
#include <mpg123.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

constexpr int repetitions = 20;
constexpr std::uint64_t blockFrames = 4096;

class LongLayer2Stream
{
public:
    LongLayer2Stream()
    {
        char folderTemplate[] = "/tmp/velur-bench-XXXXXX";
        const char* made = ::mkdtemp(folderTemplate);
        if (made == nullptr)
            std::abort();
        folder = made;
        path = folder + "/long.mp3";
        std::ifstream source(std::string(VELUR_TESTDATA_DIR) + "/mpeg/l2-fl16.bit", std::ios::binary);
        std::ostringstream bytes;
        bytes << source.rdbuf();
        std::ofstream stream(path, std::ios::binary);
        for (int copy = 0; copy < repetitions; ++copy)
            stream << bytes.str();
    }
    ~LongLayer2Stream() { std::filesystem::remove_all(folder); }

    std::string folder;
    std::string path;
};

const std::string& getStreamPath()
{
    static const LongLayer2Stream stream;
    return stream.path;
}

// Through the factory and readSamples, as the buffering thread reads a file.
void MpegLayer2ReaderReadSamples(benchmark::State& state)
{
    const std::string& path = getStreamPath();
    std::int64_t frames = 0;
    for (auto _ : state) {
        const auto reader = vlk::AudioFileReader::create(vlk::File(path));
        vlk::AudioBuffer buffer(reader->getNumChannels(), blockFrames);
        buffer.setNumSamples(blockFrames);
        for (std::uint64_t position = 0; reader->readSamples(buffer, 0, blockFrames, position); position += blockFrames)
            frames += static_cast<std::int64_t>(blockFrames);
        benchmark::DoNotOptimize(buffer.getChannel(0)[0]);
    }
    state.SetItemsProcessed(frames);
}

// libmpg123's decoder to interleaved 32-bit floats, in blocks of the same size.
void MpegLayer2Mpg123ReadFloat(benchmark::State& state)
{
    const std::string& path = getStreamPath();
    std::vector<float> block(blockFrames * 2);
    std::int64_t frames = 0;
    for (auto _ : state) {
        mpg123_handle* handle = mpg123_new(nullptr, nullptr);
        mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT, 0.0);
        mpg123_open(handle, path.c_str());
        std::size_t done = 0;
        // The first read announces the stream's format, with samples or without.
        for (int result = MPG123_OK; result == MPG123_OK || result == MPG123_NEW_FORMAT;) {
            result = mpg123_read(handle, reinterpret_cast<unsigned char*>(block.data()),
                                 block.size() * sizeof(float), &done);
            frames += static_cast<std::int64_t>(done / (2 * sizeof(float)));
        }
        benchmark::DoNotOptimize(block[0]);
        mpg123_close(handle);
        mpg123_delete(handle);
    }
    state.SetItemsProcessed(frames);
}

} // namespace

BENCHMARK(MpegLayer2ReaderReadSamples)->Unit(benchmark::kMillisecond);
BENCHMARK(MpegLayer2Mpg123ReadFloat)->Unit(benchmark::kMillisecond);
