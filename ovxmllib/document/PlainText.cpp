#include "ovxmllib/document/PlainText.h"

#include <algorithm>

#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::plaintext {

namespace {

constexpr Referred kNoReference{nullptr, {}, 0};

struct NamedCharacter {
  std::string_view text;
  char character;
};

constexpr std::array<NamedCharacter, 5> kNamed{{
    {"&lt;", '<'},
    {"&gt;", '>'},
    {"&amp;", '&'},
    {"&apos;", '\''},
    {"&quot;", '"'},
}};

constexpr bool IsAllowed(std::uint32_t point) noexcept {
  if (point < 0x20) return point == '\t' || point == '\n' || point == '\r';
  return point < 0xD800 || (point >= 0xE000 && point < 0xFFFE) || (point >= 0x10000 && point < 0x110000);
}

int DigitOf(char c, bool isHex) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (!isHex) return -1;
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// charref = "&#" 1*digit ";" / "&#x" 1*hexdigit ";"
Referred ReadNumber(Position at, Position end) noexcept {
  const bool isHex = at != end && *at == 'x';
  if (isHex) ++at;
  std::uint32_t point = 0;
  const Position first = at;
  for (int digit; at != end && (digit = DigitOf(*at, isHex)) >= 0; ++at) {
    if (point >= 0x110000) return kNoReference;
    point = point * (isHex ? 16 : 10) + static_cast<std::uint32_t>(digit);
  }
  if (at == first || at == end || *at != ';' || !IsAllowed(point)) return kNoReference;
  Referred referred{at + 1, {}, 0};
  referred.length = unicode::PointToUtf8(point, reinterpret_cast<unsigned char*>(referred.bytes.data()));
  return referred;
}

}  // namespace

Position SkipHighCharacters(Position at, Position end) noexcept {
  while (at != end && !IsAscii(*at)) {
    const auto left = static_cast<std::size_t>(end - at);
    const std::size_t length = unicode::SequenceLength(reinterpret_cast<const unsigned char*>(at), left);
    if (length == 0) return nullptr;
    // U+FFFE and U+FFFF.
    if (length == 3 && (std::string_view(at, 3) == "\xEF\xBF\xBE" || std::string_view(at, 3) == "\xEF\xBF\xBF")) {
      return nullptr;
    }
    at += length;
  }
  return at;
}

Referred ReadReference(Position at, Position end) noexcept {
  const std::string_view text(at, static_cast<std::size_t>(end - at));
  if (text.starts_with("&#")) return ReadNumber(at + 2, end);
  const auto named = std::find_if(kNamed.begin(), kNamed.end(),
                                  [&](const NamedCharacter& candidate) { return text.starts_with(candidate.text); });
  if (named == kNamed.end()) return kNoReference;
  return {at + named->text.size(), {named->character}, 1};
}

}  // namespace OvXmlLib16::plaintext
