#pragma once

#include <cstdint>
#include <string>

namespace vlk::fuzz {

// Writes the fuzzer's bytes to a file named "input" with the extension given, in a folder of this process
// (in memory where the machine has one), and gives its path. The same path at every call: the targets
// remove the file after each execution.
std::string writeScratchFile(const std::uint8_t* bytes, std::size_t size, const char* extension);

} // namespace vlk::fuzz
