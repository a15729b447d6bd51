#pragma once

#include "audiofiles/KalviDspAudioFilesMetadata.h"
#include "text/KalviDspString.h"

namespace vlk {

// Root of the readers: the metadata record and the file kind a reader stands for.
class AudioFilesManager
{
public:
    AudioFilesManager() = default;
    AudioFilesManager(const AudioFilesManager&) = delete;
    AudioFilesManager& operator=(const AudioFilesManager&) = delete;
    virtual ~AudioFilesManager();

    // ".wav", ".aiff", ".mp3"; empty for files read through the platform.
    virtual String getFileExtension() const = 0;

protected:
    AudioFilesMetadata metadata;
};

} // namespace vlk
