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
    // Each output sample j sums 16 window taps D[j + 32a] over the last 16 matrixed vectors V, a being the
    // age: value j of a vector at an even age, value 32 + j at an odd one. A vector's parity alternates as it
    // ages, so each is stored twice, once for each parity of the offset at which it is read, and each ring is
    // doubled, so that the 16 vectors an output needs follow each other: [channel][offset parity][slot][j].
    float history[2][2][32][32] = {};
    std::int32_t offset = 1;
};

} // namespace vlk
