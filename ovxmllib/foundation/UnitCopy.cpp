#include "ovxmllib/foundation/UnitCopy.h"

#include <cstddef>
#include <cstring>

namespace OvXmlLib16 {

// One or two loads and stores of fixed size, which may overlap, in place of a loop.
WChar* CopyUnits(WChar* out, WStringView text) noexcept {
  constexpr std::size_t kBlock = 8;
  constexpr std::size_t kHalf = kBlock / 2;
  const std::size_t length = text.size();
  const WChar* const from = text.data();
  const auto copy = [&](std::size_t at, std::size_t units) { std::memcpy(out + at, from + at, units * sizeof(WChar)); };
  if (length > 2 * kBlock) {
    copy(0, length);
  } else if (length >= kBlock) {
    copy(0, kBlock);
    copy(length - kBlock, kBlock);
  } else if (length >= kHalf) {
    copy(0, kHalf);
    copy(length - kHalf, kHalf);
  } else {
    for (std::size_t i = 0; i < length; ++i) out[i] = from[i];
  }
  return out + length;
}

}  // namespace OvXmlLib16
