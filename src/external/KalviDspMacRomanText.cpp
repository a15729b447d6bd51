#include "external/KalviDspMacRomanText.h"

#include <iconv.h>
#include <vector>

namespace vlk {

std::optional<String> macRomanToUtf8(const String& text, std::size_t maxBytes)
{
    if (maxBytes == 0)
        return std::nullopt;
    iconv_t converter = iconv_open("UTF-8", "MACINTOSH");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    std::vector<char> input(text.begin(), text.end());
    std::vector<char> output(maxBytes - 1);
    char* in = input.data();
    std::size_t inLeft = input.size();
    char* out = output.data();
    std::size_t outLeft = output.size();
    const std::size_t result = iconv(converter, &in, &inLeft, &out, &outLeft);
    iconv_close(converter);
    if (result == static_cast<std::size_t>(-1) || inLeft != 0)
        return std::nullopt;
    return String(output.data(), static_cast<std::size_t>(out - output.data()));
}

} // namespace vlk
