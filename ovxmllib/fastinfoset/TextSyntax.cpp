#include "ovxmllib/fastinfoset/TextSyntax.h"

#include <algorithm>
#include <cstdint>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlEscape.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::fastinfoset {

namespace {

struct Range {
  std::uint32_t first, last;
};

// Productions 4 and 4a of XML 1.0, fifth edition; the colon is seen to by the caller.
constexpr Range kStart[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
                            {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
                            {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kFurther[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t kCount>
bool IsIn(const Range (&ranges)[kCount], std::uint32_t point) noexcept {
  return std::any_of(ranges, ranges + kCount,
                     [point](const Range& range) { return point >= range.first && point <= range.last; });
}

// The code point at `i`; an unpaired surrogate stands for itself and is in no range.
std::uint32_t PointAt(WStringView text, std::size_t i) noexcept {
  const WChar unit = text[i];
  if (!unicode::IsHighSurrogate(unit) || i + 1 == text.size() || !unicode::IsLowSurrogate(text[i + 1])) return unit;
  return 0x10000u + ((unit & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu);
}

}  // namespace

bool IsName(WStringView text, bool allowsColons) noexcept {
  if (text.empty()) return false;
  for (std::size_t i = 0; i < text.size();) {
    const std::uint32_t point = PointAt(text, i);
    const bool isAllowed = IsIn(kStart, point) || (i != 0 && IsIn(kFurther, point)) || (allowsColons && point == ':');
    if (!isAllowed) return false;
    i += point < 0x10000 ? 1 : 2;
  }
  return true;
}

void CheckAllowed(WStringView text) {
  try {
    CheckCharacters(text);
  } catch (const COvException& exception) {
    throw COvException(u"Failed to parse FastInfoset. A text holds a character that XML does not allow.", exception);
  }
}

}  // namespace OvXmlLib16::fastinfoset
