#pragma once

#include <string>
#include <vector>

namespace vlk::test {

// A slow sweep a channel, each its own (the second falls while the first rises), so that a delay, a lost or
// doubled frame and a swap of channels all show; low enough to pass an encoder's low-pass at 8 kHz. At most
// two channels.
std::vector<std::vector<float>> makeSweepSignal(std::uint32_t numChannels, int sampleRate, double seconds);

// The channels as a WAV file of libsndfile's format code (SF_FORMAT_WAV | SF_FORMAT_PCM_16, ...). Throws
// std::runtime_error when libsndfile cannot write it.
void writeWavFile(const std::string& path, const std::vector<std::vector<float>>& channels, int sampleRate,
                  int format);

} // namespace vlk::test
