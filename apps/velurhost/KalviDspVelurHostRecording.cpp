#include "KalviDspVelurHostRecording.h"

namespace vlk::velurhost {

void Recording::write(const float* frames, std::size_t numFrames, int numChannels)
{
    if (!failure.empty())
        return;
    if (!writer.isOpen() && !writer.open(path, numChannels, sampleRate))
        failure = "cannot write " + path;
    else if (numChannels != writer.getNumChannels())
        failure = "the number of signal outlets changed during the recording";
    else if (!writer.write(frames, numFrames))
        failure = "cannot write " + path;
}

void Recording::close(int numChannels)
{
    if (failure.empty() && !writer.isOpen() && !writer.open(path, numChannels, sampleRate))
        failure = "cannot write " + path;
    if (!writer.close() && failure.empty())
        failure = "cannot write " + path;
}

} // namespace vlk::velurhost
