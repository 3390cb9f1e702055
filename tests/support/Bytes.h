// Bytes of tests, as the library takes and gives them.
#pragma once

#include <string>

#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16::test {

inline const unsigned char* Bytes(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

inline CBinaryData Data(std::string_view bytes) { return CBinaryData(Bytes(bytes), bytes.size()); }

inline std::string TextOf(const CBinaryData& data) { return {data.GetData(), data.GetData() + data.GetLength()}; }

/// Bytes of which no long run repeats.
inline std::string Noise(std::size_t length) {
  std::string bytes(length, '\0');
  std::uint32_t state = 1;
  for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  return bytes;
}

}  // namespace OvXmlLib16::test
