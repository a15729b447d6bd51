#pragma once

#include <cstdint>

namespace vlk {

// The polyphase synthesis filter bank of every layer: 32 subband samples in, 32 output samples out, per
// channel, with the history of the last 16 calls. Output is at full scale 1.0 and is not clipped.
class MpegSynthesis
{
public:
    // Writes 32 samples at output[count] and adds 32 to count. The history's offset steps on with channel
    // 0, and channel 1 uses it as it stands: the left channel goes first.
    void synthesise(const float* bandSamples, int channel, float* output, std::int32_t& count) noexcept;
    void reset() noexcept;

    // The fast DCT-II of 32 points that the synthesis starts with: out[m] = sum of in[k] cos(pi m (2k + 1)
    // / 64).
    static void dct32(const float* in, float* out) noexcept;

private:
    // Per channel, the last 16 matrixed vectors of 64 values; the newest at offset.
    float history[2][16][64] = {};
    std::int32_t offset = 1;
};

} // namespace vlk
