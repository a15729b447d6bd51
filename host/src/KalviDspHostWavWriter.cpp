#include "KalviDspHostWavWriter.h"

#include <vector>

namespace vlk::host {
namespace {

constexpr std::uint64_t headerSize = 58;
constexpr std::uint64_t largestData = 0xFFFFFFFFull - headerSize;

void put16(std::vector<unsigned char>& out, std::uint16_t value)
{
    out.push_back(static_cast<unsigned char>(value & 0xFF));
    out.push_back(static_cast<unsigned char>(value >> 8));
}

void put32(std::vector<unsigned char>& out, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<unsigned char>((value >> shift) & 0xFF));
}

void putTag(std::vector<unsigned char>& out, const char* tag)
{
    out.insert(out.end(), tag, tag + 4);
}

} // namespace

WavWriter::~WavWriter()
{
    close();
}

bool WavWriter::open(const std::string& path, int numChannels, double sampleRate)
{
    close();
    if (numChannels <= 0 || numChannels > 65535 || sampleRate <= 0)
        return false;
    file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        return false;
    channels = numChannels;
    rate = static_cast<std::uint32_t>(sampleRate + 0.5);
    framesWritten = 0;
    return writeHeader();
}

bool WavWriter::writeHeader()
{
    const std::uint64_t dataBytes = framesWritten * static_cast<std::uint64_t>(channels) * 4;
    std::vector<unsigned char> header;
    putTag(header, "RIFF");
    put32(header, static_cast<std::uint32_t>(headerSize - 8 + dataBytes));
    putTag(header, "WAVE");
    putTag(header, "fmt ");
    put32(header, 18);
    put16(header, 3);
    put16(header, static_cast<std::uint16_t>(channels));
    put32(header, rate);
    put32(header, rate * static_cast<std::uint32_t>(channels) * 4);
    put16(header, static_cast<std::uint16_t>(channels * 4));
    put16(header, 32);
    put16(header, 0);
    putTag(header, "fact");
    put32(header, 4);
    put32(header, static_cast<std::uint32_t>(framesWritten));
    putTag(header, "data");
    put32(header, static_cast<std::uint32_t>(dataBytes));
    return std::fseek(file, 0, SEEK_SET) == 0 &&
           std::fwrite(header.data(), 1, header.size(), file) == header.size();
}

bool WavWriter::write(const float* frames, std::size_t numFrames)
{
    if (file == nullptr)
        return false;
    const std::uint64_t frameBytes = static_cast<std::uint64_t>(channels) * 4;
    const std::uint64_t room = largestData / frameBytes - framesWritten;
    const std::size_t count = numFrames < room ? numFrames : static_cast<std::size_t>(room);
    // Samples are stored little-endian, which is the order of this machine's floats.
    if (std::fseek(file, 0, SEEK_END) != 0 || std::fwrite(frames, frameBytes, count, file) != count)
        return false;
    framesWritten += count;
    return count == numFrames;
}

bool WavWriter::close()
{
    if (file == nullptr)
        return true;
    const bool written = writeHeader();
    const bool closed = std::fclose(file) == 0;
    file = nullptr;
    return written && closed;
}

} // namespace vlk::host
