#include "audiofiles/KalviDspAudioFilesManager.h"

namespace vlk {

AudioFilesManager::~AudioFilesManager() = default;

} // namespace vlk
