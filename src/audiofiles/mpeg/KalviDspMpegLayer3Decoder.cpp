#include "audiofiles/mpeg/KalviDspMpegLayer3Decoder.h"

#include "audiofiles/mpeg/KalviDspMpegLayer3HuffmanLines.h"
#include "audiofiles/mpeg/KalviDspMpegLayer3Stereo.h"

#include <algorithm>
#include <cstring>

namespace vlk {

namespace {

constexpr int jointStereo = 1;
constexpr int numSlots = 18;
constexpr int numSubbands = 32;

} // namespace

void MpegLayer3Decoder::decodeFrame(const MpegFrameHeader& header, LayerThreeSideInfo& sideInfo,
                                    MpegBitReader& bits, MpegSynthesis& synthesis, float* left, float* right,
                                    std::int32_t& samplesDone) noexcept
{
    const bool ms = header.mode == jointStereo && (header.modeExtension & 2) != 0;
    const bool intensity = header.mode == jointStereo && (header.modeExtension & 1) != 0;
    const bool lsf = header.lsf != 0;
    const bool stereo = header.numChannels == 2;
    const int rate = header.sampleRateIndex;
    for (int granule = 0; granule < (lsf ? 1 : 2); ++granule) {
        GranuleInfo& leftInfo = sideInfo.granules[0][granule];
        GranuleInfo& rightInfo = sideInfo.granules[1][granule];
        if (!decodeChannel(header, leftInfo, 0, false, bits))
            return;
        if (stereo) {
            if (!decodeChannel(header, rightInfo, 1, intensity, bits))
                return;
            if (ms)
                applyMidSide(hybridIn[0], hybridIn[1]);
            if (intensity)
                applyIntensityStereo(rightInfo, scalefactors[1], lsf, ms, rate, hybridIn[0], hybridIn[1]);
            if (ms || intensity)
                leftInfo.maxSubband = rightInfo.maxSubband = std::max(leftInfo.maxSubband, rightInfo.maxSubband);
        }
        for (int channel = 0; channel < header.numChannels; ++channel) {
            const GranuleInfo& info = sideInfo.granules[channel][granule];
            MpegHybridFilter::reduceAliasing(hybridIn[channel], info);
            hybridFilter.transform(hybridIn[channel], info, channel, hybridOut[channel]);
        }
        for (int slot = 0; slot < numSlots; ++slot) {
            std::int32_t leftCount = samplesDone;
            synthesis.synthesise(hybridOut[0] + slot * numSubbands, 0, left, leftCount);
            if (stereo && right != nullptr) {
                std::int32_t rightCount = samplesDone;
                synthesis.synthesise(hybridOut[1] + slot * numSubbands, 1, right, rightCount);
            }
            samplesDone = leftCount;
        }
    }
}

bool MpegLayer3Decoder::decodeChannel(const MpegFrameHeader& header, GranuleInfo& granule, int channel,
                                      bool intensityRight, MpegBitReader& bits) noexcept
{
    const std::int32_t scalefactorBits = header.lsf != 0
                                             ? readMpeg2Scalefactors(bits, granule, intensityRight, scalefactors[channel])
                                             : readMpeg1Scalefactors(bits, granule, scalefactors[channel]);
    return decodeHuffmanLines(bits, granule, scalefactors[channel],
                              static_cast<std::int32_t>(granule.part2_3Length) - scalefactorBits,
                              header.sampleRateIndex, hybridIn[channel]);
}

void MpegLayer3Decoder::reset() noexcept
{
    hybridFilter.reset();
    std::memset(scalefactors, 0, sizeof(scalefactors));
}

} // namespace vlk
