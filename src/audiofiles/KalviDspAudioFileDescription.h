#pragma once

#include "text/KalviDspString.h"

namespace vlk {

class AudioFileReader;

// The reader's file as the player's info tells it: the path, then a line feed and its form in parentheses,
// "(2 channels, 44.1 kHz, 44100 samples, 1.00 sec, 16 bits, WAV File, 176.45 Ko)". Reads the file's size
// from disk at each call.
String describeAudioFile(const AudioFileReader& reader);

} // namespace vlk
