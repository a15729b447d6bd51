#include "audiofiles/mpeg/KalviDspVbrTag.h"

#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <cstring>

namespace vlk {

namespace {

std::int32_t bigEndian32(const std::uint8_t* bytes)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(bytes[0]) << 24 |
                                     static_cast<std::uint32_t>(bytes[1]) << 16 |
                                     static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3]);
}

constexpr std::int32_t framesFlag = 1;
constexpr std::int32_t bytesFlag = 2;
constexpr std::int32_t tocFlag = 4;
constexpr std::int32_t qualityFlag = 8;

} // namespace

std::optional<VbrTag> VbrTag::parse(const std::uint8_t (&bytes)[bytesToParse])
{
    if ((bytes[1] & 6) != 2)
        return std::nullopt;
    const bool mpeg1 = (bytes[1] & 8) != 0;
    const bool mpeg25 = (bytes[1] >> 4) == 0xE;
    const bool stereo = bytes[3] < 192;
    const int rateField = (bytes[2] >> 2) & 3;
    if (rateField == 3)
        return std::nullopt;
    VbrTag tag;
    tag.sampleRate = mpeg::sampleRates[rateField + (mpeg1 ? 0 : mpeg25 ? 6 : 3)];

    const std::uint8_t* field = bytes + (mpeg1 ? (stereo ? 36 : 21) : (stereo ? 21 : 13));
    if (std::memcmp(field, "Xing", 4) != 0 && std::memcmp(field, "Info", 4) != 0)
        return std::nullopt;
    field += 4;
    tag.flags = bigEndian32(field);
    field += 4;
    if ((tag.flags & framesFlag) != 0) {
        tag.frames = bigEndian32(field);
        field += 4;
    }
    if ((tag.flags & bytesFlag) != 0) {
        tag.bytes = bigEndian32(field);
        field += 4;
    }
    if ((tag.flags & tocFlag) != 0) {
        std::memcpy(tag.toc, field, sizeof(tag.toc));
        field += sizeof(tag.toc);
    }
    if ((tag.flags & qualityFlag) != 0)
        tag.quality = bigEndian32(field);
    const std::int32_t bitRate = mpeg::bitRates[mpeg1 ? 0 : 1][2][bytes[2] >> 4];
    tag.headerSize = bitRate * (mpeg1 ? 144000 : 72000) / tag.sampleRate;
    return tag;
}

} // namespace vlk
