#include "audiofiles/mpeg/KalviDspMpegLayer12.h"

#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"

#include <algorithm>

namespace vlk {

namespace {

constexpr int numSubbands = 32;
constexpr int jointStereo = 1;

// The first subband whose samples both channels share.
int getJointStereoBound(const MpegFrameHeader& header, int limit)
{
    return header.mode == jointStereo ? std::min(4 * (header.modeExtension + 1), limit) : limit;
}

// Synthesises one set of 32 subband samples of every channel; the left channel goes first.
void synthesiseChannels(MpegSynthesis& synthesis, const float (&fraction)[2][numSubbands], int numChannels,
                        float* left, float* right, std::int32_t& samplesDone)
{
    std::int32_t leftCount = samplesDone;
    synthesis.synthesise(fraction[0], 0, left, leftCount);
    if (numChannels == 2 && right != nullptr) {
        std::int32_t rightCount = samplesDone;
        synthesis.synthesise(fraction[1], 1, right, rightCount);
    }
    samplesDone = leftCount;
}

// Layer I: allocation n (1 to 15) gives n + 1 bits a sample.
float requantiseLayer1(std::uint32_t code, int allocation, int scale)
{
    return (static_cast<float>(code) - static_cast<float>((1 << allocation) - 1)) *
           MpegDecoderTables::get().muls[allocation + 1][scale];
}

} // namespace

void decodeLayer1(const MpegFrameHeader& header, MpegBitReader& bits, MpegSynthesis& synthesis, float* left,
                  float* right, std::int32_t& samplesDone)
{
    const int channels = header.numChannels;
    const int bound = getJointStereoBound(header, numSubbands);
    int allocation[2][numSubbands] = {};
    int scale[2][numSubbands] = {};
    for (int band = 0; band < numSubbands; ++band) {
        if (band < bound) {
            for (int channel = 0; channel < channels; ++channel)
                allocation[channel][band] = static_cast<int>(bits.read(4));
        } else {
            allocation[0][band] = allocation[1][band] = static_cast<int>(bits.read(4));
        }
    }
    for (int band = 0; band < numSubbands; ++band)
        for (int channel = 0; channel < channels; ++channel)
            if (allocation[channel][band] != 0)
                scale[channel][band] = static_cast<int>(bits.read(6));

    for (int part = 0; part < 12; ++part) {
        float fraction[2][numSubbands] = {};
        for (int band = 0; band < numSubbands; ++band) {
            if (band < bound) {
                for (int channel = 0; channel < channels; ++channel)
                    if (const int n = allocation[channel][band]; n != 0)
                        fraction[channel][band] = requantiseLayer1(bits.read(n + 1), n, scale[channel][band]);
            } else if (const int n = allocation[0][band]; n != 0) {
                const std::uint32_t code = bits.read(n + 1);
                for (int channel = 0; channel < channels; ++channel)
                    fraction[channel][band] = requantiseLayer1(code, n, scale[channel][band]);
            }
        }
        synthesiseChannels(synthesis, fraction, channels, left, right, samplesDone);
    }
}

namespace {

struct Layer2Code
{
    // For each of the three samples, the muls row and the value that multiplies it (1 for grouped codes).
    std::uint8_t rows[3] = {0, 0, 0};
    float values[3] = {0.0f, 0.0f, 0.0f};
};

// Reads the codes of one subband's three samples: grouped codes pick a triple of muls rows, held at the
// all-zero triple past the last when damaged; plain codes are offset to be centred on zero. Steps that are
// neither give silence.
Layer2Code readLayer2Code(const mpeg::Layer2Quantisation& quantisation, MpegBitReader& bits)
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    Layer2Code code;
    const int codewordBits = std::min<int>(quantisation.codewordBits, 16);
    if (quantisation.grouped != 0) {
        const std::uint32_t word = bits.read(codewordBits);
        const std::uint8_t* triple = nullptr;
        if (quantisation.steps == 3)
            triple = tables.groups3[std::min<std::uint32_t>(word, 27)];
        else if (quantisation.steps == 5)
            triple = tables.groups5[std::min<std::uint32_t>(word, 125)];
        else if (quantisation.steps == 9)
            triple = tables.groups9[std::min<std::uint32_t>(word, 729)];
        if (triple != nullptr)
            for (int sample = 0; sample < 3; ++sample) {
                code.rows[sample] = triple[sample];
                code.values[sample] = 1.0f;
            }
        return code;
    }
    const float offset = static_cast<float>((1 << (codewordBits - 1)) - 1);
    for (int sample = 0; sample < 3; ++sample) {
        code.rows[sample] = static_cast<std::uint8_t>(codewordBits);
        code.values[sample] = static_cast<float>(bits.read(codewordBits)) - offset;
    }
    return code;
}

void applyScale(const Layer2Code& code, int scale, float* samples)
{
    const MpegDecoderTables& tables = MpegDecoderTables::get();
    for (int sample = 0; sample < 3; ++sample)
        samples[sample] = code.values[sample] * tables.muls[code.rows[sample]][std::min(scale, 63)];
}

} // namespace

void decodeLayer2(const MpegFrameHeader& header, MpegBitReader& bits, MpegSynthesis& synthesis, float* left,
                  float* right, std::int32_t& samplesDone)
{
    const mpeg::Layer2AllocationTable& table = *header.layer2AllocationTable;
    const int channels = header.numChannels;
    const int limit = std::min(header.layer2SubbandLimit, numSubbands);
    const int bound = getJointStereoBound(header, limit);
    int allocation[2][numSubbands] = {};
    for (int band = 0; band < limit; ++band) {
        const int width = table.allocationBits[band];
        if (band < bound) {
            for (int channel = 0; channel < channels; ++channel)
                allocation[channel][band] = static_cast<int>(bits.read(width));
        } else {
            allocation[0][band] = allocation[1][band] = static_cast<int>(bits.read(width));
        }
    }
    int selection[2][numSubbands] = {};
    for (int band = 0; band < limit; ++band)
        for (int channel = 0; channel < channels; ++channel)
            if (allocation[channel][band] != 0)
                selection[channel][band] = static_cast<int>(bits.read(2));
    int scale[2][numSubbands][3] = {};
    for (int band = 0; band < limit; ++band)
        for (int channel = 0; channel < channels; ++channel) {
            if (allocation[channel][band] == 0)
                continue;
            int* factors = scale[channel][band];
            switch (selection[channel][band]) {
            case 0:
                factors[0] = static_cast<int>(bits.read(6));
                factors[1] = static_cast<int>(bits.read(6));
                factors[2] = static_cast<int>(bits.read(6));
                break;
            case 1:
                factors[0] = factors[1] = static_cast<int>(bits.read(6));
                factors[2] = static_cast<int>(bits.read(6));
                break;
            case 2:
                factors[0] = factors[1] = factors[2] = static_cast<int>(bits.read(6));
                break;
            default:
                factors[0] = static_cast<int>(bits.read(6));
                factors[1] = factors[2] = static_cast<int>(bits.read(6));
                break;
            }
        }

    for (int part = 0; part < 12; ++part) {
        const int scalePart = part / 4;
        float fraction[3][2][numSubbands] = {};
        for (int band = 0; band < limit; ++band) {
            if (band < bound) {
                for (int channel = 0; channel < channels; ++channel) {
                    if (allocation[channel][band] == 0)
                        continue;
                    const Layer2Code code = readLayer2Code(table.codes[band][allocation[channel][band]], bits);
                    float samples[3];
                    applyScale(code, scale[channel][band][scalePart], samples);
                    for (int sample = 0; sample < 3; ++sample)
                        fraction[sample][channel][band] = samples[sample];
                }
            } else if (allocation[0][band] != 0) {
                const Layer2Code code = readLayer2Code(table.codes[band][allocation[0][band]], bits);
                for (int channel = 0; channel < channels; ++channel) {
                    float samples[3];
                    applyScale(code, scale[channel][band][scalePart], samples);
                    for (int sample = 0; sample < 3; ++sample)
                        fraction[sample][channel][band] = samples[sample];
                }
            }
        }
        for (int sample = 0; sample < 3; ++sample)
            synthesiseChannels(synthesis, fraction[sample], channels, left, right, samplesDone);
    }
}

} // namespace vlk
