// The whiteSpace facet: how a text value is normalised before it is parsed or checked.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Applies the facet `whiteSpace` (XML Schema Part 2, section 4.3.6) to text values. White space is what XML 1.0 calls
/// so: U+0009, U+000A, U+000D and U+0020. Stateless; may be used on any thread.
class OVXMLLIB_API CWhitespaceUtils {
 public:
  /// The rules, with the numbers by which generated metadata passes them.
  enum WhitespaceRule : std::int32_t {
    WhitespaceRule_None = 0,      ///< the value stays unchanged
    WhitespaceRule_Preserve = 1,  ///< line ends become LF
    WhitespaceRule_Replace = 2,   ///< each white space character becomes a space
    WhitespaceRule_Collapse = 3,  ///< runs of white space become one space, and the ends are trimmed
  };

  /// `value` by the given rule. Throws COvException "Unknown WhitespaceRule" for a number that is none of them.
  static WString ApplyRule(WhitespaceRule rule, WStringView value);
  /// The same without a copy where the rule leaves `value` or a part of it as it is, which is most often: the result
  /// lies in `value` or in `scratch`, whose memory is used again.
  static WStringView ApplyRule(WhitespaceRule rule, WStringView value, WString& scratch) {
    return MayChange(rule, value) ? ApplyChange(rule, value, scratch) : value;
  }

  /// Makes LF of each CR LF pair and of each lone CR; all else stays.
  static WString Preserve(WStringView value);
  /// The same for `length` code units at `value`, which need not be terminated; null is allowed where `length` is 0.
  static WString Preserve(const WChar* value, std::size_t length) { return Preserve(WStringView(value, length)); }

  /// Makes one space of each tab, LF and CR, and one, not two, of a CR LF pair. Trims nothing.
  static WString Replace(WStringView value);

  /// Makes one space of each run of white space, and nothing of one at either end.
  static WString Collapse(WStringView value);

  /// True for U+0009, U+000A, U+000D and U+0020, and no other.
  static constexpr bool IsWhiteSpace(WChar c) noexcept { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; }

 private:
  // False when the rule surely leaves the value as it is, which is seen at a glance.
  static bool MayChange(WhitespaceRule rule, WStringView value) noexcept;
  static WStringView ApplyChange(WhitespaceRule rule, WStringView value, WString& scratch);
};

}  // namespace OvXmlLib16
