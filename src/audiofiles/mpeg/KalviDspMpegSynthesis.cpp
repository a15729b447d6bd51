#include "audiofiles/mpeg/KalviDspMpegSynthesis.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"

#include <algorithm>

namespace vlk {

namespace {

// One stage of the recursive fast DCT-II (the split into even and odd outputs with the factors
// 0.5 / cos(pi (2k + 1) / 2N)), for N = size at table row level.
template <int size> void fastDct(const float* in, float* out, int level) noexcept
{
    if constexpr (size == 1) {
        out[0] = in[0];
    } else {
        constexpr int half = size / 2;
        const float* factors = MpegDecoderTables::get().dct[level];
        float sums[half];
        float differences[half];
        for (int k = 0; k < half; ++k) {
            sums[k] = in[k] + in[size - 1 - k];
            differences[k] = (in[k] - in[size - 1 - k]) * factors[k];
        }
        float even[half];
        float odd[half];
        fastDct<half>(sums, even, level + 1);
        fastDct<half>(differences, odd, level + 1);
        for (int k = 0; k < half; ++k) {
            out[2 * k] = even[k];
            out[2 * k + 1] = odd[k] + (k + 1 < half ? odd[k + 1] : 0.0f);
        }
    }
}

} // namespace

// Flattened: the recursion's small stages cost more in calls and copies than in arithmetic.
[[gnu::flatten]] void MpegSynthesis::dct32(const float* in, float* out) noexcept
{
    fastDct<32>(in, out, 0);
}

void MpegSynthesis::reset() noexcept
{
    float* first = &history[0][0][0][0];
    std::fill(first, first + sizeof(history) / sizeof(float), 0.0f);
    offset = 1;
}

// The standard's matrixing gives V[i] = X[16 + i] for a DCT-II X of the subband samples; its symmetries
// (X[32] = 0, X[64 - m] = -X[m]) fill all 64 values from X[0..31].
void MpegSynthesis::synthesise(const float* bandSamples, int channel, float* output, std::int32_t& count) noexcept
{
    if (channel == 0)
        offset = (offset + 15) & 15;
    float x[32];
    dct32(bandSamples, x);
    float v[64];
    for (int i = 0; i < 16; ++i) {
        v[i] = x[16 + i];
        v[32 + i] = -x[16 - i];
        v[48 + i] = -x[i];
    }
    v[16] = 0.0f;
    for (int i = 17; i < 32; ++i)
        v[i] = -x[48 - i];

    // The newest vector has age 0 at this offset: read at an offset of the same parity it is at an even age.
    for (int parity = 0; parity < 2; ++parity) {
        const float* values = v + ((offset & 1) == parity ? 0 : 32);
        std::copy(values, values + 32, history[channel][parity][offset]);
        std::copy(values, values + 32, history[channel][parity][offset + 16]);
    }

    // All 32 outputs a tap at a time, each summing its taps from the newest vector to the oldest.
    const float* window = MpegDecoderTables::get().synthesisWindow;
    const float(*vectors)[32] = history[channel][offset & 1] + offset;
    float sums[32] = {};
    for (int age = 0; age < 16; ++age) {
        const float* taps = window + 32 * age;
        for (int j = 0; j < 32; ++j)
            sums[j] += taps[j] * vectors[age][j];
    }
    std::copy(sums, sums + 32, output + count);
    count += 32;
}

} // namespace vlk
