#pragma once

#include "audiofiles/KalviDspReaderReads.h"

#include <ostream>
#include <string>

namespace vlk::test {

// Sound files that Debian's ffmpeg encodes while the tests run, from the sweep signal of the tests written
// as a 24-bit WAV file: that file is the oracle of the lossless formats, FFmpeg's own decode of the encoded
// file the oracle of the lossy ones. ffmpeg is a dependency of the tests; when it is missing they fail.

struct FfmpegFormat
{
    // "flac": what a test name takes.
    const char* name;
    const char* extension;
    // ffmpeg's output options.
    const char* encoderOptions;
    int sampleRate;
    bool isLossless;
    // The decoder that the oracle is decoded with: FFmpeg's tools pick the fixed-point one for MPEG audio,
    // the reader the floating-point one.
    const char* oracleDecoder;
    // How far a read after a seek may differ from the sequential read: a codec whose noise substitution
    // runs on a random state that a seek does not restore (AAC) gives other noise from there on, and Opus's
    // decoder converges on its state over the run-up, but not to the bit. A frame off differs by 0.05.
    float seekTolerance;
};

std::ostream& operator<<(std::ostream& stream, const FfmpegFormat& format);

// FLAC, ALAC in MP4 and in CAF, W64, Ogg Vorbis, Opus, AAC in MP4, MPEG Layer II; none in a build without
// FFmpeg.
const std::vector<FfmpegFormat>& getFfmpegFormats();

struct EncodedFile
{
    std::string path;
    // The 24-bit source as libsndfile reads it back, or FFmpeg's decode of the file.
    Channels oracle;
};

// Encodes seconds of stereo sweep at the format's rate as folder/name.extension. Throws std::runtime_error
// when ffmpeg fails.
EncodedFile encodeWithFfmpeg(const std::string& folder, const std::string& name, const FfmpegFormat& format,
                             double seconds);

} // namespace vlk::test
