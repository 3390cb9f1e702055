#include "ovxmllib/json/JsonEscape.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/UnitCopy.h"

namespace OvXmlLib16 {

namespace {

constexpr bool IsSpecial(WChar c) noexcept { return c < 0x20 || c == u'"' || c == u'\\'; }

using UnitBlock [[gnu::vector_size(16)]] = std::uint16_t;
constexpr std::size_t kBlock = sizeof(UnitBlock) / sizeof(WChar);

constexpr UnitBlock Each(std::uint16_t c) noexcept { return UnitBlock{c, c, c, c, c, c, c, c}; }

bool IsPlainBlock(const UnitBlock& units) noexcept {
  const auto found = (units < Each(0x20)) | (units == Each('"')) | (units == Each('\\'));
  const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(found);
  return (halves[0] | halves[1]) == 0;
}

// Copies eight units if they are plain.
bool CopyPlainBlock(WChar* out, const WChar* from) noexcept {
  UnitBlock units;
  std::memcpy(&units, from, sizeof units);
  if (!IsPlainBlock(units)) return false;
  std::memcpy(out, &units, sizeof units);
  return true;
}

// Copies the run that `text` begins with and that goes out as it is; returns its length.
std::size_t CopyRun(WChar* out, WStringView text) noexcept {
  const std::size_t length = text.size();
  const WChar* const from = text.data();
  std::size_t i = 0;
  while (length - i >= kBlock && CopyPlainBlock(out + i, from + i)) i += kBlock;
  // The end by one more step over the last units, which may go over some for the second time.
  if (length >= kBlock && length - i < kBlock && CopyPlainBlock(out + length - kBlock, from + length - kBlock)) {
    return length;
  }
  for (; i < length && !IsSpecial(from[i]); ++i) out[i] = from[i];
  return i;
}

// Room for an escape of one character.
struct Escape {
  WChar units[6];
  std::size_t length;
};

constexpr Escape Short(WChar letter) noexcept { return {{u'\\', letter}, 2}; }

// Decided: a carriage return, which was never to come here, is a control character like the others.
Escape EscapeOf(WChar c) noexcept {
  constexpr WStringView kDigits = u"0123456789ABCDEF";
  switch (c) {
    case u'"':
    case u'\\':
      return Short(c);
    case u'\b':
      return Short(u'b');
    case u'\f':
      return Short(u'f');
    case u'\t':
      return Short(u't');
    default:
      return {{u'\\', u'u', u'0', u'0', kDigits[c >> 4], kDigits[c & 0xF]}, 6};
  }
}

// The text that is looked at in one piece: less than a block of the stream's buffer.
constexpr std::size_t kAtOnce = 2048;

// Writes what is left of `text` from `at` on, where a run has ended.
void WriteRest(CTextStream& stream, WStringView text, std::size_t at, WStringView lineEnd) {
  while (at < text.size()) {
    const WStringView piece = text.substr(at, kAtOnce);
    WChar* const out = stream.Reserve(piece.size());
    const std::size_t copied = CopyRun(out, piece);
    stream.Commit(out + copied);
    at += copied;
    if (copied == piece.size()) continue;
    if (text[at] == 0) unicode::ThrowUnwritable(text, at);
    if (text[at] == u'\n') {
      // Deliberate: no escape; see docs/decisions.md.
      stream.Write(lineEnd);
    } else {
      const Escape escape = EscapeOf(text[at]);
      stream.Write(WStringView(escape.units, escape.length));
    }
    ++at;
  }
}

}  // namespace

void WriteJsonEscaped(CTextStream& stream, WStringView before, WStringView text, WStringView after,
                      WStringView lineEnd) {
  const WStringView piece = text.substr(0, kAtOnce);
  WChar* const start = CopyUnits(stream.Reserve(before.size() + piece.size() + after.size()), before);
  const std::size_t copied = CopyRun(start, piece);
  if (copied == text.size()) return stream.Commit(PutUnits(start + copied, after));
  stream.Commit(start + copied);
  WriteRest(stream, text, copied, lineEnd);
  stream.Write(after);
}

}  // namespace OvXmlLib16
