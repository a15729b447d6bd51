#include "audiofiles/KalviDspFfmpegFixtures.h"

#include "audiofiles/KalviDspSweepSignal.h"
#include "files/KalviDspShellCommand.h"

#include <sndfile.h>

#include <fstream>
#include <stdexcept>

namespace vlk::test {

namespace {

constexpr std::uint32_t numChannels = 2;

void runFfmpeg(const std::string& arguments, const std::string& errorPath)
{
    runShellCommand("ffmpeg -nostdin -hide_banner -loglevel error -y " + arguments, errorPath,
                    "ffmpeg (the Debian package ffmpeg, which the tests need)");
}

Channels deinterleave(const std::vector<float>& interleaved)
{
    Channels channels(numChannels);
    for (std::size_t index = 0; index < interleaved.size(); ++index)
        channels[index % numChannels].push_back(interleaved[index]);
    return channels;
}

Channels readWithLibsndfile(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        throw std::runtime_error("libsndfile cannot read " + path);
    std::vector<float> interleaved(static_cast<std::size_t>(info.frames) * numChannels);
    sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);
    return deinterleave(interleaved);
}

Channels decodeWithFfmpeg(const std::string& path, const FfmpegFormat& format)
{
    const std::string rawPath = path + ".f32";
    const std::string decoder =
        *format.oracleDecoder != '\0' ? std::string("-c:a ") + format.oracleDecoder + " " : "";
    runFfmpeg(decoder + "-i " + shellQuoted(path) + " -f f32le -c:a pcm_f32le " + shellQuoted(rawPath),
              path + ".decode-errors.txt");
    std::ifstream raw(rawPath, std::ios::binary | std::ios::ate);
    std::vector<float> interleaved(static_cast<std::size_t>(raw.tellg()) / sizeof(float));
    raw.seekg(0);
    raw.read(reinterpret_cast<char*>(interleaved.data()),
             static_cast<std::streamsize>(interleaved.size() * sizeof(float)));
    return deinterleave(interleaved);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const FfmpegFormat& format)
{
    return stream << format.name;
}

const std::vector<FfmpegFormat>& getFfmpegFormats()
{
#ifdef VELUR_WITHOUT_FFMPEG
    static const std::vector<FfmpegFormat> formats;
#else
    static const std::vector<FfmpegFormat> formats{
        {"flac", ".flac", "-c:a flac", 44100, true, "", 0.0f},
        {"alac_m4a", ".m4a", "-c:a alac", 44100, true, "", 0.0f},
        {"alac_caf", ".caf", "-c:a alac", 48000, true, "", 0.0f},
        {"w64", ".w64", "-c:a pcm_s24le", 44100, true, "", 0.0f},
        {"vorbis", ".ogg", "-c:a libvorbis -q:a 4", 44100, false, "", 0.0f},
        {"opus", ".opus", "-c:a libopus -b:a 96k", 48000, false, "", 5e-3f},
        {"aac_m4a", ".m4a", "-c:a aac -b:a 128k", 44100, false, "", 1e-3f},
        {"mp2", ".mp2", "-c:a mp2 -b:a 192k", 32000, false, "mp2float", 0.0f},
    };
#endif
    return formats;
}

EncodedFile encodeWithFfmpeg(const std::string& folder, const std::string& name, const FfmpegFormat& format,
                             double seconds)
{
    const std::string sourcePath = folder + "/" + name + ".source.wav";
    writeWavFile(sourcePath, makeSweepSignal(numChannels, format.sampleRate, seconds), format.sampleRate,
                 SF_FORMAT_WAV | SF_FORMAT_PCM_24);
    EncodedFile file{folder + "/" + name + format.extension, {}};
    runFfmpeg("-i " + shellQuoted(sourcePath) + " " + format.encoderOptions + " " + shellQuoted(file.path),
              file.path + ".encode-errors.txt");
    file.oracle = format.isLossless ? readWithLibsndfile(sourcePath) : decodeWithFfmpeg(file.path, format);
    return file;
}

} // namespace vlk::test
