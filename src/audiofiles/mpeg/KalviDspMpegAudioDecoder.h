#pragma once

#include "audiofiles/mpeg/KalviDspMpegFrameHeader.h"
#include "audiofiles/mpeg/KalviDspLayerThreeSideInfo.h"
#include "audiofiles/mpeg/KalviDspMpegLayer3Decoder.h"
#include "audiofiles/mpeg/KalviDspMpegSynthesis.h"
#include "audiofiles/mpeg/KalviDspVbrTag.h"
#include "files/KalviDspBufferedInputStream.h"
#include "files/KalviDspFileReader.h"

#include <cstdint>
#include <vector>

namespace vlk {

// Decodes MPEG-1, 2 and 2.5 audio, one frame a step, from its own copy of a file reader into two arrays of
// floats at full scale 1.0, unclipped. Finds frames by their headers, steps over junk between them, skips a
// Xing or Info frame, and notes the position of every fourth frame for seeking. CRCs are never checked.
// One thread at a time; all state is in the object but the frame table.
class MpegAudioDecoder
{
public:
    explicit MpegAudioDecoder(const FileReader& file);
    // The buffered stream refers to the decoder's own file.
    MpegAudioDecoder(const MpegAudioDecoder&) = delete;
    MpegAudioDecoder& operator=(const MpegAudioDecoder&) = delete;

    // 0: a frame's data were just consumed, and decoded when left is not null (samplesDone gives the
    // samples a channel); 1: a step that gave no samples; -1: no frame can be found. A frame takes two
    // calls, the first after a reset three: its tail is handled on the way to the next one. right may be
    // null for a mono stream.
    int decodeNextFrame(float* left, float* right, std::int32_t& samplesDone);
    // The state of a new decoder, but the stream's position, the frame table and the frame counter stay,
    // and the next frame is looked at for a tag again.
    void reset();

    const MpegFrameHeader& getHeader() const noexcept { return header; }
    // The frame count of the last tag found.
    std::int32_t getVbrFrames() const noexcept { return vbrFrames; }
    // The stream position of every fourth frame that a scan found.
    const std::vector<std::int64_t>& getFrameTable() const noexcept { return frameTable; }
    std::int32_t getFrameCounter() const noexcept { return frameCounter; }
    void setFrameCounter(std::int32_t frame) noexcept { frameCounter = frame; }
    // The stream that the decoder reads, at the position of the next byte it takes.
    InputStream& getStream() noexcept { return stream; }

    static constexpr std::int32_t maxSamplesPerFrame = 1152;

private:
    static constexpr std::int32_t roomInFront = 512;
    static constexpr std::int32_t frameAreaSize = 2880;
    static constexpr std::int32_t bufferSize = roomInFront + frameAreaSize + 512;
    static constexpr std::int32_t largestScan = 32768;

    std::int32_t scanForHeader(bool strict);
    bool matchesStream(std::uint32_t word, bool strict) const;
    void noteFramePosition(std::int64_t position);
    bool skipVbrTag();
    void absorbJunk(std::int32_t offset);
    void parseHeader();
    void parseSideInfo();
    void decodeFrameData(float* left, float* right, std::int32_t& samplesDone);
    void decodeLayerThreeFrame(float* left, float* right, std::int32_t& samplesDone);
    bool measureFreeFormatFrame();
    void readFrameTail();
    std::int32_t readIntoBuffer(std::int32_t at, std::int32_t numBytes);
    void skipStream(std::int64_t numBytes);
    std::uint8_t* currentBuffer() noexcept { return buffers[bufferIndex]; }

    MpegFrameHeader header;
    VbrTag vbrTag;
    FileReader file;
    // A frame is read in several pieces behind a look for its header: in blocks, they cost no system call.
    BufferedInputStream stream{file};
    std::int32_t vbrFrames = 0;
    std::int32_t frameCounter = 0;
    bool vbrTagFound = false;
    bool headerParsed = false;
    bool sideParsed = false;
    bool dataParsed = false;
    bool needToSync = true;
    bool isFreeFormat = false;
    bool wasFreeFormat = false;
    std::int32_t sideInfoSize = 0;
    std::int32_t dataSize = 0;
    std::int32_t currentFrameSize = 0;
    // -1: there is no previous frame.
    std::int32_t lastFrameSize = -1;
    std::int32_t lastFrameSizeNoPadding = 0;
    std::int32_t bufferIndex = 0;
    LayerThreeSideInfo sideInfo;
    // Frame data: room in front for the reservoir of Layer III, the frame, and a margin behind.
    std::uint8_t buffers[2][bufferSize] = {};
    // Where the next bytes of the current buffer go, and where the frame's bits begin.
    std::int32_t bitPointer = roomInFront;
    MpegLayer3Decoder layer3;
    MpegSynthesis synthesis;
    std::vector<std::int64_t> frameTable;
};

} // namespace vlk
