#include "ovxmllib/document/XmlEscape.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/PlainRun.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/UnitCopy.h"

namespace OvXmlLib16 {

namespace {

// The control characters that XML does not have.
constexpr std::uint64_t kNeverAllowed =
    kEscapeTextLf.special & ((std::uint64_t{1} << 0x20) - 1) & ~(std::uint64_t{1} << u'\r');

bool IsSpecial(WChar c, std::uint64_t special) noexcept { return c < 0x40 && ((special >> c) & 1) != 0; }

[[noreturn]] void ThrowNotAllowed(WStringView text, std::size_t position) {
  const WChar c = text[position];
  if (c == 0 || unicode::IsSurrogate(c)) unicode::ThrowUnwritable(text, position);
  throw COvInvalidValueException(
      FormatString(u"The text holds the character U+%04X at position %d, which XML does not allow.", c, position));
}

// The units of the character at `i`, which is U+D800 or above; 0 if it is none that XML allows.
std::size_t UnitsOfHighCharacter(WStringView text, std::size_t i) noexcept {
  if (!unicode::IsSurrogate(text[i])) return text[i] < 0xFFFE ? 1 : 0;
  const bool isPair = unicode::IsHighSurrogate(text[i]) && i + 1 < text.size() && unicode::IsLowSurrogate(text[i + 1]);
  return isPair ? 2 : 0;
}

// True for eight units that go out as they are everywhere; those from U+8000 on are looked at one by one. One bit makes
// a quotation mark an ampersand, and one makes `<` a `>`.
constexpr auto kIsPlain = [](const plainrun::Block& units) noexcept {
  using plainrun::Each;
  return plainrun::IsNone((units < Each(0x20)) | ((units | Each('"' ^ '&')) == Each('&')) |
                          ((units | Each('<' ^ '>')) == Each('>')));
};

// Copies the run that `text` begins with and that goes out as it is; returns its length. It ends at a special character
// and at what is no character.
std::size_t CopyRun(WChar* out, WStringView text, std::uint64_t special) {
  const std::size_t length = text.size();
  const WChar* const from = text.data();
  std::size_t i = plainrun::CopyBlocks(out, text, kIsPlain);
  while (i < length && !IsSpecial(from[i], special)) {
    const std::size_t units = from[i] < 0xD800 ? 1 : UnitsOfHighCharacter(text, i);
    if (units == 0) break;
    for (const std::size_t end = i + units; i < end; ++i) out[i] = from[i];
  }
  return i;
}

// The text that is looked at in one piece: less than a block of the stream's buffer.
constexpr std::size_t kAtOnce = 2048;

// `wanted` units, or one more or less so that no pair of surrogates is cut.
std::size_t WholeCharacters(WStringView text, std::size_t wanted) noexcept {
  if (text.size() <= wanted) return text.size();
  return unicode::IsHighSurrogate(text[wanted - 1]) ? wanted - 1 : wanted;
}

WStringView Replacement(WStringView text, std::size_t i, const EscapeRules& rules) {
  switch (text[i]) {
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'"':
      return u"&quot;";
    case u'\n':
      return rules.lineFeed;
    case u'\r':
      return {};
    default:
      ThrowNotAllowed(text, i);
  }
}

// Writes what is left of `text` from `at` on, where a run has ended.
void WriteRest(CTextStream& stream, WStringView text, std::size_t at, const EscapeRules& rules) {
  while (at < text.size()) {
    const WStringView left = text.substr(at);
    const WStringView piece = left.substr(0, WholeCharacters(left, kAtOnce));
    WChar* const out = stream.Reserve(piece.size());
    const std::size_t copied = CopyRun(out, piece, rules.special);
    stream.Commit(out + copied);
    at += copied;
    if (copied != piece.size()) stream.Write(Replacement(text, at++, rules));
  }
}

}  // namespace

void WriteEscaped(CTextStream& stream, WStringView before, WStringView text, WStringView after,
                  const EscapeRules& rules) {
  const WStringView piece(text.data(), WholeCharacters(text, kAtOnce));
  WChar* const start = PutUnits(stream.Reserve(before.size() + piece.size() + after.size()), before);
  const std::size_t copied = CopyRun(start, piece, rules.special);
  if (copied == text.size()) return stream.Commit(PutUnits(start + copied, after));
  stream.Commit(start + copied);
  WriteRest(stream, text, copied, rules);
  stream.Write(after);
}

std::size_t CopyUnescaped(WChar* out, WStringView text, const EscapeRules& rules) {
  return CopyRun(out, text, rules.special);
}

void CheckCharacters(WStringView text) {
  for (std::size_t i = 0; i < text.size();) {
    const bool isNever = IsSpecial(text[i], kNeverAllowed);
    const std::size_t units = isNever ? 0 : text[i] < 0xD800 ? 1 : UnitsOfHighCharacter(text, i);
    if (units == 0) ThrowNotAllowed(text, i);
    i += units;
  }
}

}  // namespace OvXmlLib16
