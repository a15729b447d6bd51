#pragma once

#include "KalviDspHostSampleRing.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vlk::host {

// The audio thread: renders the DSP chain vector by vector when asked, paced like a driver's callbacks at
// speed times real time (speed 0: as fast as it can), and hands the frames to an optional recorder.
// Between renders the audio clock stands still.
class AudioDriver
{
public:
    // Receives recorded frames on the main thread: interleaved, numChannels per frame.
    using Recorder = std::function<void(const float* frames, std::size_t numFrames, int numChannels)>;

    static AudioDriver& instance();
    static bool isAudioThread();

    ~AudioDriver();

    void setSpeed(double newSpeed) { speed = newSpeed; }
    void setRecorder(Recorder newRecorder);

    // Main thread: starts rendering numVectors vectors, when the last render is done; returns at once.
    void startRender(long numVectors);
    bool isRendering() const { return rendering.load(std::memory_order_acquire); }
    long getNumVectorsRendered() const { return vectorsRendered.load(std::memory_order_acquire); }
    // Main thread: until the render is done, runs deferred calls, hands recorded frames to the recorder and
    // calls whileWaiting; then hands over the last frames.
    void waitUntilRendered(const std::function<void()>& whileWaiting = {});
    // Both of the above.
    void render(long numVectors, const std::function<void()>& whileWaiting = {});
    // Ends the audio thread; the next render starts it again.
    void shutdown();

private:
    void run();
    void renderOne(long index, std::chrono::steady_clock::time_point start, std::vector<float>& frames);
    void pushFrames(const float* frames, std::size_t count);
    void drainRecording();

    double speed = 1;
    Recorder recorder;
    int numChannels = 0;
    std::thread thread;
    // Guards requested and quit.
    std::mutex lock;
    std::condition_variable wake;
    long requested = 0;
    bool quit = false;
    std::atomic<bool> rendering{false};
    std::atomic<long> vectorsRendered{0};
    SampleRing ring{1 << 20};
    std::vector<float> drained;
};

} // namespace vlk::host
