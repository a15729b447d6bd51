#include "dsp/KalviDspAudioFilePlayerBufferingThread.h"

#include "threads/KalviDspException.h"
#include "threads/KalviDspLog.h"

#include <cxxabi.h>
#include <exception>

// Nothing on this thread's path is noexcept between run and a blocking call: a cancel of stopThread unwinds
// through it.

namespace vlk {

namespace {

constexpr int idleWaitMilliseconds = 1000;
constexpr int chunkWaitMilliseconds = 100;
constexpr float fullEnoughPercent = 97.0f;

} // namespace

AudioFilePlayer::BufferingThread::BufferingThread(AudioFilePlayer& player)
    : Thread("vlk::AudioFilePlayer::BufferingThread"), player(&player)
{
}

AudioFilePlayer::BufferingThread::~BufferingThread()
{
    player = nullptr;
    stopThread(100);
}

void AudioFilePlayer::BufferingThread::run()
{
    while (!threadShouldExit())
        readWhileRingHasRoom();
}

// Returns to run's exit test after a long wait, and at once when the thread must exit.
void AudioFilePlayer::BufferingThread::readWhileRingHasRoom()
{
    for (;;) {
        AudioFilePlayer* const current = player;
        if (current == nullptr || current->getBufferingPercentage() >= fullEnoughPercent) {
            wait(idleWaitMilliseconds);
            return;
        }
        if (threadShouldExit())
            return;
        // An exception that left run would end the process: a failed pass is reported, and the next one
        // tries again.
        try {
            current->readSamplesFromDisk();
        } catch (abi::__forced_unwind&) {
            throw;
        } catch (const Exception&) {
            // It wrote its report when it was built.
        } catch (const std::exception& exception) {
            logMessage("AudioFilePlayer::BufferingThread : " + String(exception.what()));
        } catch (...) {
            logMessage("AudioFilePlayer::BufferingThread : unknown exception");
        }
        if (threadShouldExit())
            return;
        wait(chunkWaitMilliseconds);
    }
}

} // namespace vlk
