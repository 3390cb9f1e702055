#include "ovxmllib/json/JsonEscape.h"

#include <array>

#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

using HexEscape = std::array<WChar, 6>;

// Of the control characters. Decided: a carriage return, which was never to come here, is one like the others.
constexpr std::array<HexEscape, 0x20> kHexEscapes = [] {
  constexpr WStringView kDigits = u"0123456789ABCDEF";
  std::array<HexEscape, 0x20> escapes{};
  for (std::size_t c = 0; c < escapes.size(); ++c) {
    escapes[c] = {u'\\', u'u', u'0', u'0', kDigits[c >> 4], kDigits[c & 0xF]};
  }
  return escapes;
}();

}  // namespace

void JsonEscapeRules::Refuse(WStringView text, std::size_t i) const { unicode::ThrowUnwritable(text, i); }

WStringView JsonEscapeRules::Replace(WStringView text, std::size_t i) const {
  switch (text[i]) {
    case u'"':
      return u"\\\"";
    case u'\\':
      return u"\\\\";
    case u'\b':
      return u"\\b";
    case u'\f':
      return u"\\f";
    case u'\t':
      return u"\\t";
    case u'\n':
      // Deliberate: no escape; see docs/decisions.md.
      return lineEnd;
    case 0:
      Refuse(text, i);
    default:
      return {kHexEscapes[text[i]].data(), kHexEscapes[text[i]].size()};
  }
}

}  // namespace OvXmlLib16
