#include "KalviDspHostAudioDriver.h"

#include "KalviDspHostDeferQueue.h"
#include "KalviDspHostDspGraph.h"
#include "KalviDspHostScheduler.h"

#include "ext_systhread.h"

#include <chrono>

namespace vlk::host {
namespace {

thread_local bool onAudioThread = false;

} // namespace

AudioDriver& AudioDriver::instance()
{
    static AudioDriver driver;
    return driver;
}

bool AudioDriver::isAudioThread()
{
    return onAudioThread;
}

AudioDriver::~AudioDriver()
{
    shutdown();
}

void AudioDriver::setRecorder(Recorder newRecorder)
{
    recorder = std::move(newRecorder);
}

void AudioDriver::startRender(long numVectors)
{
    DspGraph::instance().prepare();
    numChannels = recorder ? DspGraph::instance().getNumOutputChannels() : 0;
    vectorsRendered.store(0, std::memory_order_release);
    rendering.store(true, std::memory_order_release);
    std::lock_guard<std::mutex> guard(lock);
    if (!thread.joinable()) {
        quit = false;
        thread = std::thread([this] { run(); });
    }
    requested = numVectors;
    wake.notify_all();
}

void AudioDriver::waitUntilRendered(const std::function<void()>& whileWaiting)
{
    while (isRendering()) {
        DeferQueue::instance().drain();
        drainRecording();
        if (whileWaiting)
            whileWaiting();
        DeferQueue::instance().waitForWork(std::chrono::milliseconds(20));
    }
    drainRecording();
}

void AudioDriver::render(long numVectors, const std::function<void()>& whileWaiting)
{
    startRender(numVectors);
    waitUntilRendered(whileWaiting);
}

void AudioDriver::shutdown()
{
    {
        std::lock_guard<std::mutex> guard(lock);
        quit = true;
        wake.notify_all();
    }
    if (thread.joinable())
        thread.join();
}

void AudioDriver::run()
{
    onAudioThread = true;
    std::vector<float> frames;
    for (;;) {
        long count = 0;
        {
            std::unique_lock<std::mutex> guard(lock);
            wake.wait(guard, [this] { return quit || requested > 0; });
            if (quit)
                return;
            count = requested;
            requested = 0;
        }
        frames.assign(static_cast<std::size_t>(numChannels * DspGraph::instance().getVectorSize()), 0.0f);
        const auto start = std::chrono::steady_clock::now();
        for (long i = 0; i < count; ++i)
            renderOne(i, start, frames);
        rendering.store(false, std::memory_order_release);
        DeferQueue::instance().wake();
    }
}

void AudioDriver::renderOne(long index, std::chrono::steady_clock::time_point start,
                            std::vector<float>& frames)
{
    DspGraph& graph = DspGraph::instance();
    if (speed > 0) {
        const double seconds = index * graph.getVectorSize() / graph.getSampleRate() / speed;
        std::this_thread::sleep_until(start + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                                  std::chrono::duration<double>(seconds)));
    }
    graph.renderVector(frames.empty() ? nullptr : frames.data());
    Scheduler::instance().advance(graph.getVectorSize() * 1000.0 / graph.getSampleRate());
    Scheduler::instance().runDueClocks();
    if (!frames.empty())
        pushFrames(frames.data(), frames.size());
    vectorsRendered.fetch_add(1, std::memory_order_acq_rel);
}

// The recorder is the one thing the audio thread waits for: when the main thread falls behind, the render
// slows down rather than losing frames.
void AudioDriver::pushFrames(const float* frames, std::size_t count)
{
    while (!ring.write(frames, count)) {
        DeferQueue::instance().wake();
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    if (ring.getNumReady() > ring.getFreeSpace())
        DeferQueue::instance().wake();
}

void AudioDriver::drainRecording()
{
    if (numChannels == 0)
        return;
    drained.resize(65536 - 65536 % static_cast<std::size_t>(numChannels));
    for (;;) {
        const std::size_t count = ring.read(drained.data(), drained.size());
        if (count == 0)
            return;
        recorder(drained.data(), count / static_cast<std::size_t>(numChannels), numChannels);
    }
}

} // namespace vlk::host

short systhread_isaudiothread(void)
{
    return vlk::host::AudioDriver::isAudioThread() ? 1 : 0;
}

