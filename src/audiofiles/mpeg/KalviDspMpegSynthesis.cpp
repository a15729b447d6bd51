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

void MpegSynthesis::dct32(const float* in, float* out) noexcept
{
    fastDct<32>(in, out, 0);
}

void MpegSynthesis::reset() noexcept
{
    for (auto& channel : history)
        for (auto& vector : channel)
            std::fill(std::begin(vector), std::end(vector), 0.0f);
    offset = 1;
}

// The standard's matrixing gives V[i] = X[16 + i] for a DCT-II X of the subband samples; its symmetries
// (X[32] = 0, X[64 - m] = -X[m]) fill all 64 values from X[0..31]. Each output sample then sums 16 window
// taps over the last 16 vectors: the first half of the even-aged ones, the second half of the odd-aged.
void MpegSynthesis::synthesise(const float* bandSamples, int channel, float* output, std::int32_t& count) noexcept
{
    if (channel == 0)
        offset = (offset + 15) & 15;
    float x[32];
    dct32(bandSamples, x);
    float* v = history[channel][offset];
    for (int i = 0; i < 16; ++i) {
        v[i] = x[16 + i];
        v[32 + i] = -x[16 - i];
        v[48 + i] = -x[i];
    }
    v[16] = 0.0f;
    for (int i = 17; i < 32; ++i)
        v[i] = -x[48 - i];

    const float* window = MpegDecoderTables::get().synthesisWindow;
    float* samples = output + count;
    for (int j = 0; j < 32; ++j) {
        float sum = 0.0f;
        for (int n = 0; n < 8; ++n) {
            sum += window[j + 64 * n] * history[channel][(offset + 2 * n) & 15][j];
            sum += window[j + 64 * n + 32] * history[channel][(offset + 2 * n + 1) & 15][32 + j];
        }
        samples[j] = sum;
    }
    count += 32;
}

} // namespace vlk
