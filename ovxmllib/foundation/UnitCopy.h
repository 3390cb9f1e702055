// Copying of short text.
#pragma once

#include <cstddef>
#include <cstring>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Copies `text` to `out`, where it does not lie already, and returns the end. Names and values of a few units, which
/// most texts are, cost a fraction of what memcpy takes.
WChar* CopyUnits(WChar* out, WStringView text) noexcept;

/// The same for text with room around it: what is read and written goes on to kRoomySlack units at least, so that most
/// lengths cost no decision.
constexpr std::size_t kRoomySlack = 16;
inline WChar* CopyRoomy(WChar* out, WStringView text) noexcept {
  std::memcpy(out, text.data(), kRoomySlack * sizeof(WChar));
  if (text.size() > kRoomySlack) std::memcpy(out, text.data(), text.size() * sizeof(WChar));
  return out + text.size();
}

/// The same for one or two units.
inline WChar* PutUnits(WChar* out, WStringView text) noexcept {
  for (const WChar unit : text) *out++ = unit;
  return out;
}

}  // namespace OvXmlLib16
