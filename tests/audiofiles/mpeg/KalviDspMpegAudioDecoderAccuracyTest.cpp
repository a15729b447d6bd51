// Layers I and II against the references of the compliance streams (ISO/IEC 11172-4 full accuracy: an RMS
// error below 2^-15 / sqrt(12) and no error above 2^-14).
#include "KalviDspMpegTestStreams.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sndfile.h>

namespace vlk::test {
namespace {

const double fullAccuracyRms = std::pow(2.0, -15) / std::sqrt(12.0);
const double fullAccuracyMax = std::pow(2.0, -14);

std::vector<float> readReference(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = nullptr;
    if (path.ends_with(".pcm")) {
        info.format = SF_FORMAT_RAW | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE;
        info.channels = 1;
        info.samplerate = 44100;
    }
    file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        return {};
    std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_read_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(file);
    return samples;
}

struct Accuracy
{
    double rms = 0.0;
    double max = 0.0;
};

// Over the common prefix: some streams are cut short of their reference. Against a 16-bit reference the
// decoded samples are rounded to 16 bits first, as the reference was.
Accuracy measure(const std::vector<float>& decoded, const std::vector<float>& reference, bool roundTo16Bits)
{
    const std::size_t count = std::min(decoded.size(), reference.size());
    double sumOfSquares = 0.0;
    Accuracy accuracy;
    for (std::size_t index = 0; index < count; ++index) {
        double sample = std::clamp(static_cast<double>(decoded[index]), -1.0, 32767.0 / 32768.0);
        if (roundTo16Bits)
            sample = std::nearbyint(sample * 32768.0) / 32768.0;
        const double error = sample - reference[index];
        sumOfSquares += error * error;
        accuracy.max = std::max(accuracy.max, std::abs(error));
    }
    accuracy.rms = count > 0 ? std::sqrt(sumOfSquares / static_cast<double>(count)) : 0.0;
    return accuracy;
}

struct Stream
{
    const char* name;
    // The .wav references hold 24 bits, the .pcm ones 16.
    const char* reference;
    int numFrames;
};

void PrintTo(const Stream& stream, std::ostream* out)
{
    *out << stream.name;
}

class MpegLayer12Accuracy : public testing::TestWithParam<Stream>
{
};

TEST_P(MpegLayer12Accuracy, MeetsFullAccuracyOverEveryFrame)
{
    const Stream& stream = GetParam();
    const DecodedStream decoded = decodeMpegStream(getMpegTestPath(std::string(stream.name) + ".bit"));
    const std::vector<float> reference = readReference(getMpegTestPath(stream.reference));
    ASSERT_FALSE(reference.empty());
    EXPECT_EQ(decoded.numFrames, stream.numFrames);
    const Accuracy accuracy = measure(decoded.samples, reference, std::string(stream.reference).ends_with(".pcm"));
    EXPECT_LT(accuracy.rms, fullAccuracyRms);
    EXPECT_LE(accuracy.max, fullAccuracyMax);
}

// Some streams hold fewer frames than their reference: the common part is compared. Two streams of the set
// are left out: the free-format Layer II stream, since free format is taken in Layer III only, and the one
// whose damaged frame is decoded as its header says rather than dropped.
INSTANTIATE_TEST_SUITE_P(
    ComplianceStreams, MpegLayer12Accuracy,
    testing::Values(Stream{"l1-fl1", "l1-fl1.wav", 49}, Stream{"l1-fl2", "l1-fl2.wav", 49},
                    Stream{"l1-fl4", "l1-fl4.wav", 49}, Stream{"l1-fl5", "l1-fl5.wav", 49},
                    Stream{"l1-fl7", "l1-fl7.wav", 63}, Stream{"l2-fl10", "l2-fl10.wav", 49},
                    Stream{"l2-fl11", "l2-fl11.wav", 49}, Stream{"l2-fl13", "l2-fl13.wav", 49},
                    Stream{"l2-fl14", "l2-fl14.wav", 16}, Stream{"l2-fl16", "l2-fl16.wav", 63},
                    Stream{"l2-test32", "l2-test32.pcm", 63}, Stream{"ILL2_center2", "ILL2_center2.pcm", 1},
                    Stream{"ILL2_dual", "ILL2_dual.pcm", 1}, Stream{"ILL2_dynx22", "ILL2_dynx22.pcm", 1},
                    Stream{"ILL2_dynx31", "ILL2_dynx31.pcm", 1},
                    Stream{"ILL2_ext_switching", "ILL2_ext_switching.pcm", 9},
                    Stream{"ILL2_layer1", "ILL2_layer1.pcm", 3}, Stream{"ILL2_mono", "ILL2_mono.pcm", 1},
                    Stream{"ILL2_multilingual", "ILL2_multilingual.pcm", 1},
                    Stream{"ILL2_overalloc1", "ILL2_overalloc1.pcm", 1},
                    Stream{"ILL2_prediction", "ILL2_prediction.pcm", 1},
                    Stream{"ILL2_samples", "ILL2_samples.pcm", 1}, Stream{"ILL2_tca21", "ILL2_tca21.pcm", 1},
                    Stream{"ILL2_tca30", "ILL2_tca30.pcm", 1}, Stream{"ILL2_tca31_PC", "ILL2_tca31_PC.pcm", 1},
                    Stream{"ILL2_wrongcrc", "ILL2_wrongcrc.pcm", 1}, Stream{"ILL4_ext_id1", "ILL4_ext_id1.pcm", 1},
                    Stream{"ILL4_sync", "ILL4_sync.pcm", 1},
                    Stream{"ILL4_wrong_length1", "ILL4_wrong_length1.pcm", 1}),
    [](const testing::TestParamInfo<Stream>& info) {
        std::string name = info.param.name;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

} // namespace
} // namespace vlk::test
