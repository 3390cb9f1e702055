#include "ovxmllib/json/JsonEscape.h"

#include "ovxmllib/foundation/PlainRun.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/UnitCopy.h"

namespace OvXmlLib16 {

namespace {

constexpr bool IsSpecial(WChar c) noexcept { return c < 0x20 || c == u'"' || c == u'\\'; }

// True for eight units that go out as they are; those from U+8000 on are looked at one by one.
constexpr auto kIsPlain = [](const plainrun::Block& units) noexcept {
  using plainrun::Each;
  return plainrun::IsNone((units < Each(0x20)) | (units == Each('"')) | (units == Each('\\')));
};

// Copies the run that `text` begins with and that goes out as it is; returns its length.
std::size_t CopyRun(WChar* out, WStringView text) noexcept {
  std::size_t i = plainrun::CopyBlocks(out, text, kIsPlain);
  for (; i < text.size() && !IsSpecial(text[i]); ++i) out[i] = text[i];
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
