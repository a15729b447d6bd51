#pragma once

#include "files/KalviDspFile.h"

#include <cstdint>

namespace vlk {

// Descriptors of files; 0 stands for none in the classes that hold one. Both openings throw "Couldnt open
// file" with the quoted path, and the failure is reported twice: once where it is found, once by the
// translation block around it.
int openForReading(const File& file);
// Creates the file when it does not exist; an existing one is opened at its end, so writing appends.
int openForWriting(const File& file);

// Writes all length bytes, going on after short writes and interruptions; the count that was written.
std::int64_t writeFully(int descriptor, const void* buffer, std::int64_t length) noexcept;

} // namespace vlk
