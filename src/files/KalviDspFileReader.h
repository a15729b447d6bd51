#pragma once

#include "files/KalviDspFile.h"
#include "files/KalviDspInputStream.h"

#include <cstdint>

namespace vlk {

// An unbuffered stream over one file: each read is one system call. Used by one thread at a time.
class FileReader : public InputStream
{
public:
    // Throws when the file does not exist as a file or cannot be opened.
    explicit FileReader(const File& file);
    // The copy reads at its own position through a duplicate of the descriptor. The two share the
    // descriptor's offset, so the copy positions it before its first read; read through one of the pair
    // only, as the MPEG decoder does with its copy.
    FileReader(const FileReader& other);
    FileReader& operator=(const FileReader&) = delete;
    ~FileReader() override;

    // The size when the file was opened.
    std::int64_t getTotalLength() const noexcept override { return totalLength; }
    bool isExhausted() const noexcept override { return currentPosition >= totalLength; }
    std::int64_t read(void* destination, std::int64_t numBytes) override;
    std::int64_t getPosition() const noexcept override { return currentPosition; }
    // Clamps to the range 0 to the total length; always true.
    bool setPosition(std::int64_t position) noexcept override;

private:
    File file;
    std::int64_t totalLength = 0;
    std::int64_t currentPosition = 0;
    int fileHandle = 0;
    bool needToSeek = true;
};

} // namespace vlk
