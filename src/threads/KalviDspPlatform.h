#pragma once

namespace vlk {

// The platform name that banner texts carry. It stays "Mac OS" on every platform: files written here must
// read the same as those written elsewhere.
constexpr const char* platformName = "Mac OS";

} // namespace vlk
