#pragma once

#include <cstdint>
#include <optional>

namespace vlk {

// What a Xing or Info tag in the first frame of a stream holds.
struct VbrTag
{
    std::uint8_t toc[100] = {};
    std::int32_t sampleRate = 0;
    std::int32_t flags = 0;
    std::int32_t frames = 0;
    std::int32_t bytes = 0;
    // -1 when absent.
    std::int32_t quality = -1;
    // Bytes of the tag's frame, header included.
    std::int32_t headerSize = 0;

    // Bytes read at a frame's first header byte.
    static constexpr int bytesToParse = 194;

    // The tag of a Layer III frame that carries one; nothing for any other bytes. A frame of the reserved
    // rate carries none here: its size would divide by 0.
    static std::optional<VbrTag> parse(const std::uint8_t (&bytes)[bytesToParse]);
};

} // namespace vlk
