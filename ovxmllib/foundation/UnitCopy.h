// Copying of short text.
#pragma once

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Copies `text` to `out`, where it does not lie already, and returns the end. Names and values of a few units, which
/// most texts are, cost a fraction of what memcpy takes.
WChar* CopyUnits(WChar* out, WStringView text) noexcept;

/// The same for one or two units.
inline WChar* PutUnits(WChar* out, WStringView text) noexcept {
  for (const WChar unit : text) *out++ = unit;
  return out;
}

}  // namespace OvXmlLib16
