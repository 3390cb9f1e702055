// The escaping of JSON strings (RFC 8259, section 7), as documents of bound objects have it.
#pragma once

#include <cstddef>

#include "ovxmllib/foundation/PlainRun.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// How characters go out in a string, for MarkupRun and WriteEscaped: quotation mark, backslash and control characters
/// as escapes, but a line feed as `lineEnd`. U+0000, which no document can hold, and an unpaired surrogate throw
/// COvInvalidValueException; what stands before it may have been written.
struct JsonEscapeRules {
  WStringView lineEnd;

  /// \name What plainrun::PutEscaped asks
  /// \{
  template <class Units>
  Units FindOdd(const Units& units) const noexcept {
    using plainrun::Each;
    return (units < Each<Units>(0x20)) | (units == Each<Units>('"')) | (units == Each<Units>('\\'));
  }
  bool IsPlain(WChar c) const noexcept { return c >= 0x20 && c != u'"' && c != u'\\'; }
  WStringView Replace(WStringView text, std::size_t i) const;
  bool IsAllowed(WChar) const noexcept { return true; }
  [[noreturn]] void Refuse(WStringView text, std::size_t i) const;
  /// \}
};

}  // namespace OvXmlLib16
