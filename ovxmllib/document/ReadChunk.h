// The piece in which files are read when they are read in pieces.
#pragma once

#include <cstddef>

namespace OvXmlLib16 {

inline constexpr std::size_t kReadChunk = 0x20000;

/// Lets chunked reading use pieces of `bytes` from now on, so that a test can put a border at every position; 0 sets
/// kReadChunk again.
void SetReadChunkForTest(std::size_t bytes) noexcept;

}  // namespace OvXmlLib16
