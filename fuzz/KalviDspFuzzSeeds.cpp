// Writes the seed corpus of every fuzz target: small sound files of each layout the readers take, and chunk
// contents for the parsers, each a valid start from which the fuzzer mutates.
//
//     velur_fuzz_seeds FOLDER    writes FOLDER/TARGET/NAME for every target
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::string littleEndian(std::uint64_t value, int numBytes)
{
    std::string bytes;
    for (int index = 0; index < numBytes; ++index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFF);
    return bytes;
}

std::string bigEndian(std::uint64_t value, int numBytes)
{
    std::string bytes;
    for (int index = numBytes - 1; index >= 0; --index)
        bytes += static_cast<char>((value >> (8 * index)) & 0xFF);
    return bytes;
}

std::string ramp(std::size_t numBytes)
{
    std::string bytes;
    for (std::size_t index = 0; index < numBytes; ++index)
        bytes += static_cast<char>(index * 37);
    return bytes;
}

std::string riffChunk(const std::string& id, const std::string& content)
{
    return id + littleEndian(content.size(), 4) + content + (content.size() % 2 != 0 ? std::string(1, '\0') : "");
}

std::string format(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t bits)
{
    const std::uint32_t frameBytes = channels * bits / 8;
    return littleEndian(tag, 2) + littleEndian(channels, 2) + littleEndian(rate, 4) +
           littleEndian(rate * frameBytes, 4) + littleEndian(frameBytes, 2) + littleEndian(bits, 2);
}

std::string extensibleFormat(std::uint16_t channels, std::uint16_t bits, std::uint8_t subformat)
{
    const std::string guidTail("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
    return format(0xFFFE, channels, 48000, bits) + littleEndian(22, 2) + littleEndian(bits, 2) +
           littleEndian(3, 4) + littleEndian(subformat, 2) + guidTail;
}

std::string riffFile(const std::string& chunks)
{
    return "RIFF" + littleEndian(4 + chunks.size(), 4) + "WAVE" + chunks;
}

std::string rf64File(const std::string& format, const std::string& data)
{
    const std::string chunks = riffChunk("fmt ", format) + "data" + littleEndian(0xFFFFFFFF, 4) + data;
    const std::string ds64 = littleEndian(4 + 36 + chunks.size(), 8) + littleEndian(data.size(), 8) +
                             littleEndian(0, 8) + littleEndian(0, 4);
    return "RF64" + littleEndian(0xFFFFFFFF, 4) + "WAVE" + riffChunk("ds64", ds64) + chunks;
}

std::string bextContent(const std::string& history)
{
    return "A take" + std::string(250, '\0') + std::string(32 + 32, 'o') + "2024-01-02" + "03:04:05" +
           littleEndian(48000, 4) + littleEndian(0, 4) + littleEndian(2, 2) + ramp(64) + std::string(190, '\0') +
           history;
}

std::string chnaContent(int numRecords)
{
    std::string content = littleEndian(numRecords, 2) + littleEndian(numRecords, 2);
    for (int record = 0; record < numRecords; ++record)
        content += littleEndian(record + 1, 2) + "ATU_0000000" + std::to_string(record + 1) +
                   "AT_00031001_0" + std::to_string(record + 1) + "AP_00010002" + std::string(1, '\0');
    return content;
}

std::string aiffChunk(const std::string& id, const std::string& content)
{
    return id + bigEndian(content.size(), 4) + content + (content.size() % 2 != 0 ? std::string(1, '\0') : "");
}

// 44100 and 48000 Hz as 80-bit extended floats.
const std::string rate44100("\x40\x0E\xAC\x44\0\0\0\0\0\0", 10);
const std::string rate48000("\x40\x0E\xBB\x80\0\0\0\0\0\0", 10);

std::string common(std::uint16_t channels, std::uint32_t frames, std::uint16_t bits)
{
    return bigEndian(channels, 2) + bigEndian(frames, 4) + bigEndian(bits, 2) + rate44100;
}

std::string markerContent()
{
    return bigEndian(3, 2) + bigEndian(1, 2) + bigEndian(0, 4) + std::string(1, 5) + "start" + bigEndian(2, 2) +
           bigEndian(100, 4) + std::string(1, 2) + "ab" + std::string(1, '\0') + bigEndian(3, 2) +
           bigEndian(7, 4) + std::string(1, 0) + std::string(1, '\0');
}

std::string soundData(const std::string& samples)
{
    return bigEndian(0, 4) + bigEndian(0, 4) + samples;
}

std::string formFile(const std::string& type, const std::string& chunks)
{
    return "FORM" + bigEndian(4 + chunks.size(), 4) + type + chunks;
}

std::string aifcCommon(std::uint16_t channels, std::uint32_t frames, std::uint16_t bits, const std::string& type)
{
    return common(channels, frames, bits) + type + std::string(1, 4) + "name" + std::string(1, '\0');
}

std::string version()
{
    return aiffChunk("FVER", bigEndian(0xA2805140, 4));
}

// Frames of one header and a payload of the size that header gives, repeated.
std::string mpegFrames(std::uint32_t header, std::size_t payload, int count)
{
    std::string frames;
    for (int frame = 0; frame < count; ++frame)
        frames += bigEndian(header, 4) + ramp(payload);
    return frames;
}

// A Layer III frame of 44.1 kHz and 128 kbit/s holding an Info tag of every field.
std::string infoFrame()
{
    std::string frame = bigEndian(0xFFFB9000, 4) + std::string(32, '\0') + "Info" + bigEndian(15, 4) +
                        bigEndian(2, 4) + bigEndian(1254, 4) + ramp(100) + bigEndian(57, 4);
    return frame + std::string(417 - frame.size(), '\0');
}

std::vector<std::pair<std::string, std::string>> mpegSeeds()
{
    const std::string layer2 = mpegFrames(0xFFFDA400, 572, 3);
    return {
        {"layer1", mpegFrames(0xFFFFCA00, 576, 3)},
        {"layer2", layer2},
        {"layer2-mono-crc", mpegFrames(0xFFFC10C0, 100, 3)},
        {"layer2-lsf", mpegFrames(0xFFF5A000, 622, 2)},
        {"layer3-tagged", infoFrame() + mpegFrames(0xFFFB9000, 413, 2)},
        {"layer3-free-format", mpegFrames(0xFFFB0000, 300, 3)},
        {"layer3-joint-stereo", mpegFrames(0xFFFB9070, 413, 3)},
        {"layer3-lsf-joint-stereo", mpegFrames(0xFFF38070, 204, 3)},
        {"layer3-mpeg25-mono", mpegFrames(0xFFE328C0, 140, 3)},
        {"id3-then-layer2", "ID3\4" + std::string(2, '\0') + bigEndian(20, 4) + std::string(20, 'x') + layer2},
        {"junk-then-layer2", std::string(10, '\0') + layer2},
    };
}

// The first byte of a factory seed names the extension: 0 ".wav", 1 ".aif", 2 ".mp3", 3 ".bin".
std::vector<std::pair<std::string, std::string>> factorySeeds()
{
    const std::string wav(1, '\0');
    const std::string aif(1, '\1');
    std::vector<std::pair<std::string, std::string>> seeds{
        {"pcm16-stereo.wav", wav + riffFile(riffChunk("fmt ", format(1, 2, 44100, 16)) +
                                            riffChunk("LIST", "INFOx") + riffChunk("data", ramp(64)))},
        {"pcm8-mono.wav", wav + riffFile(riffChunk("fmt ", format(1, 1, 8000, 8)) + riffChunk("data", ramp(33)))},
        {"pcm24-3ch.wav", wav + riffFile(riffChunk("fmt ", format(1, 3, 96000, 24)) + riffChunk("data", ramp(90)))},
        {"float32.wav", wav + riffFile(riffChunk("fmt ", format(3, 2, 48000, 32)) + riffChunk("data", ramp(64)))},
        {"extensible-pcm.wav",
         wav + riffFile(riffChunk("fmt ", extensibleFormat(4, 16, 1)) + riffChunk("data", ramp(64)))},
        {"extensible-float.wav",
         wav + riffFile(riffChunk("fmt ", extensibleFormat(2, 32, 3)) + riffChunk("data", ramp(64)))},
        {"broadcast.wav", wav + riffFile(riffChunk("bext", bextContent("A=PCM\r\n")) +
                                         riffChunk("fmt ", format(1, 2, 48000, 16)) +
                                         riffChunk("chna", chnaContent(2)) + riffChunk("axml", "<ebu/>") +
                                         riffChunk("data", ramp(32)))},
        {"rf64.wav", wav + rf64File(format(1, 2, 48000, 16), ramp(48))},
        {"pcm16.aif", aif + formFile("AIFF", aiffChunk("COMM", common(2, 16, 16)) +
                                                 aiffChunk("MARK", markerContent()) +
                                                 aiffChunk("SSND", soundData(ramp(64))))},
        {"pcm24.aif", aif + formFile("AIFF", aiffChunk("COMM", common(1, 10, 24)) +
                                                 aiffChunk("SSND", soundData(ramp(30))))},
        {"sowt.aif", aif + formFile("AIFC", version() + aiffChunk("COMM", aifcCommon(2, 8, 16, "sowt")) +
                                                aiffChunk("SSND", soundData(ramp(32))))},
        {"fl32.aif", aif + formFile("AIFC", version() + aiffChunk("COMM", aifcCommon(1, 8, 32, "fl32")) +
                                                aiffChunk("MARK", markerContent()) +
                                                aiffChunk("SSND", soundData(ramp(32))))},
        {"foreign.bin", std::string(1, '\3') + "OggS" + ramp(40)},
    };
    for (const auto& [name, bytes] : mpegSeeds())
        seeds.push_back({name + ".mp3", std::string(1, '\2') + bytes});
    return seeds;
}

void writeSeeds(const std::filesystem::path& folder, const std::vector<std::pair<std::string, std::string>>& seeds)
{
    std::filesystem::create_directories(folder);
    for (const auto& [name, bytes] : seeds)
        std::ofstream(folder / name, std::ios::binary) << bytes;
}

std::string sized(const std::string& content)
{
    return littleEndian(content.size(), 4) + content;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: velur_fuzz_seeds FOLDER\n";
        return 2;
    }
    const std::filesystem::path root(argv[1]);
    writeSeeds(root / "reader_factory", factorySeeds());
    writeSeeds(root / "mpeg_decoder", mpegSeeds());
    writeSeeds(root / "aiff_marker_chunk",
               {{"three", sized(markerContent())}, {"lying-count", littleEndian(12, 4) + bigEndian(65535, 2) +
                                                                       markerContent().substr(2)}});
    writeSeeds(root / "wav_chna_parser", {{"two", sized(chnaContent(2))}, {"none", sized(chnaContent(0))}});
    writeSeeds(root / "wav_bext_record",
               {{"history", sized(bextContent("A=PCM,F=48000\r\n"))}, {"empty", littleEndian(0, 4)}});
    writeSeeds(root / "aiff_sample_rate", {{"44100", rate44100}, {"48000", rate48000}});
    return 0;
}
