#include "ovxmllib/foundation/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WidenAscii.h"

namespace OvXmlLib16::unicode {

namespace {

constexpr std::uint64_t EachUnit(std::uint64_t unit) noexcept { return unit * 0x0001000100010001u; }

bool IsAsciiBlock(const unsigned char* data) noexcept { return IsAscii(LoadWord<std::uint64_t>(data)); }

// Whether U+0000 is a character like any other or stops a conversion.
enum class Nul { Converts, Stops };

// Not 0 when one of four units is 0: only below or at such a unit does the decrement set a top bit that was clear.
constexpr std::uint64_t ZeroUnits(std::uint64_t units) noexcept {
  return (units - EachUnit(1)) & ~units & EachUnit(0x8000);
}

constexpr std::uint64_t SurrogateUnits(std::uint64_t units) noexcept {
  return ZeroUnits((units & EachUnit(0xF800)) ^ EachUnit(0xD800));
}

bool HasSurrogate(const WChar* block) noexcept {
  std::uint64_t halves[2];
  std::memcpy(halves, block, sizeof halves);
  return (SurrogateUnits(halves[0]) | SurrogateUnits(halves[1])) != 0;
}

bool HasNulOrSurrogate(const WChar* block) noexcept {
  std::uint64_t halves[2];
  std::memcpy(halves, block, sizeof halves);
  return (ZeroUnits(halves[0]) | ZeroUnits(halves[1])) != 0 || HasSurrogate(block);
}

// The UTF-8 bytes of eight units of which none is a surrogate.
std::size_t MeasureBlock(const WChar* text) noexcept {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < kStride; ++i) bytes += 1u + (text[i] >= 0x80) + (text[i] >= 0x800);
  return bytes;
}

constexpr std::size_t kWideStride = 16;
using NarrowedBlock [[gnu::vector_size(kWideStride)]] = unsigned char;
using WideBlock [[gnu::vector_size(2 * kWideStride)]] = std::uint16_t;

// Narrows sixteen units if all are ASCII; U+0000, whose decrement borrows, is none of them where it stops.
template <Nul kNul>
bool NarrowAsciiBlock(const WChar* text, unsigned char* out) noexcept {
  WideBlock units;
  std::memcpy(&units, text, sizeof units);
  WideBlock high = units;
  if constexpr (kNul == Nul::Stops) high |= units - 1;
  std::uint64_t words[4];
  std::memcpy(words, &high, sizeof words);
  if (((words[0] | words[1] | words[2] | words[3]) & EachUnit(0xFF80)) != 0) return false;
  const NarrowedBlock bytes = __builtin_convertvector(units, NarrowedBlock);
  std::memcpy(out, &bytes, sizeof bytes);
  return true;
}

unsigned char Continuation(std::uint32_t bits) noexcept { return static_cast<unsigned char>(0x80 | (bits & 0x3F)); }

// Writes one code point above U+007F; returns the position behind it.
unsigned char* PutUtf8(std::uint32_t point, unsigned char* out) noexcept {
  if (point < 0x800) {
    *out++ = static_cast<unsigned char>(0xC0 | (point >> 6));
  } else {
    if (point < 0x10000) {
      *out++ = static_cast<unsigned char>(0xE0 | (point >> 12));
    } else {
      *out++ = static_cast<unsigned char>(0xF0 | (point >> 18));
      *out++ = Continuation(point >> 12);
    }
    *out++ = Continuation(point >> 6);
  }
  *out++ = Continuation(point);
  return out;
}

struct Decoded {
  std::uint32_t point;
  std::size_t units;  // 0: not convertible
};

Decoded DecodePoint(WStringView text, std::size_t i) noexcept {
  const WChar unit = text[i];
  if (!IsSurrogate(unit)) return {unit, 1};
  if (!IsHighSurrogate(unit) || i + 1 == text.size() || !IsLowSurrogate(text[i + 1])) return {0, 0};
  return {0x10000u + ((unit & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu), 2};
}

// The rows of table 3-7 of the Unicode Standard: what a lead byte promises and what its second byte may be.
struct Lead {
  std::size_t length;  // 0: no lead byte
  unsigned char secondFrom, secondTo;
  std::uint32_t bits;
};

Lead ClassifyLead(unsigned char byte) noexcept {
  if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, 0xBF, byte & 0x1Fu};
  if (byte == 0xE0) return {3, 0xA0, 0xBF, 0};
  if (byte == 0xED) return {3, 0x80, 0x9F, 0xD};
  if (byte >= 0xE1 && byte <= 0xEF) return {3, 0x80, 0xBF, byte & 0x0Fu};
  if (byte == 0xF0) return {4, 0x90, 0xBF, 0};
  if (byte == 0xF4) return {4, 0x80, 0x8F, 4};
  if (byte >= 0xF1 && byte <= 0xF3) return {4, 0x80, 0xBF, byte & 0x07u};
  return {0, 0, 0, 0};
}

Decoded DecodeSequence(const unsigned char* data, std::size_t left) noexcept {
  const Lead lead = ClassifyLead(data[0]);
  if (lead.length == 0 || lead.length > left) return {0, 0};
  if (data[1] < lead.secondFrom || data[1] > lead.secondTo) return {0, 0};
  std::uint32_t point = (lead.bits << 6) | (data[1] & 0x3Fu);
  for (std::size_t i = 2; i < lead.length; ++i) {
    if ((data[i] & 0xC0) != 0x80) return {0, 0};
    point = (point << 6) | (data[i] & 0x3Fu);
  }
  return {point, lead.length};
}

// Whether a character of two bytes begins here, as most do in Latin, Greek, Cyrillic, Hebrew and Arabic text.
bool IsPair(const unsigned char* data, std::size_t left) noexcept {
  return left >= 2 && data[0] >= 0xC2 && data[0] <= 0xDF && (data[1] & 0xC0) == 0x80;
}

WChar* PutWide(std::uint32_t point, WChar* out) noexcept {
  if (point < 0x10000) {
    *out++ = static_cast<WChar>(point);
    return out;
  }
  *out++ = static_cast<WChar>(0xD800 + ((point - 0x10000) >> 10));
  *out++ = static_cast<WChar>(0xDC00 + (point & 0x3FF));
  return out;
}

template <Nul kNul>
Progress ConvertToUtf8(WStringView text, unsigned char* out) noexcept {
  unsigned char* const start = out;
  const auto written = [&] { return static_cast<std::size_t>(out - start); };
  std::size_t i = 0;
  while (i < text.size()) {
    for (; text.size() - i >= kWideStride && NarrowAsciiBlock<kNul>(text.data() + i, out); i += kWideStride) {
      out += kWideStride;
    }
    for (; i < text.size() && text[i] < 0x80; ++i) {
      if (kNul == Nul::Stops && text[i] == 0) return {i, written()};
      *out++ = static_cast<unsigned char>(text[i]);
    }
    for (; i < text.size() && text[i] >= 0x80;) {
      const Decoded decoded = DecodePoint(text, i);
      if (decoded.units == 0) return {i, written()};
      out = PutUtf8(decoded.point, out);
      i += decoded.units;
    }
  }
  return {i, written()};
}

// Lossy conversion goes by pieces: making room for all that is left after each fault would take quadratic time.
constexpr std::size_t kLossyPiece = 512;

// Any text; kept out of line, so that the short plain texts of most elements do not pay for its registers.
[[gnu::noinline]] std::size_t ConvertDroppingCr(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  WChar* const start = out;
  std::size_t i = 0;
  while (i < length) {
    for (; length - i >= kStride && IsAsciiWithoutCr(LoadWord<std::uint64_t>(data + i)); i += kStride, out += kStride) {
      WidenBlock(data + i, out);
    }
    for (; i < length && data[i] < 0x80; ++i) {
      *out = data[i];
      out += data[i] != '\r';
    }
    for (; i < length && data[i] >= 0x80;) {
      const Decoded decoded = DecodeSequence(data + i, length - i);
      if (decoded.units == 0) return static_cast<std::size_t>(out - start);
      out = PutWide(decoded.point, out);
      i += decoded.units;
    }
  }
  return static_cast<std::size_t>(out - start);
}

}  // namespace

Progress WideToUtf8(WStringView text, unsigned char* out) noexcept { return ConvertToUtf8<Nul::Converts>(text, out); }

Progress WritableToUtf8(WStringView text, unsigned char* out) noexcept { return ConvertToUtf8<Nul::Stops>(text, out); }

Progress Utf8ToWide(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  WChar* const start = out;
  const auto written = [&] { return static_cast<std::size_t>(out - start); };
  std::size_t i = 0;
  while (i < length) {
    for (; length - i >= kStride && IsAsciiBlock(data + i); i += kStride, out += kStride) WidenBlock(data + i, out);
    for (; i < length && data[i] < 0x80; ++i) *out++ = data[i];
    for (; i < length && data[i] >= 0x80;) {
      if (IsPair(data + i, length - i)) {
        *out++ = static_cast<WChar>((data[i] & 0x1F) << 6 | (data[i + 1] & 0x3F));
        i += 2;
        continue;
      }
      const Decoded decoded = DecodeSequence(data + i, length - i);
      if (decoded.units == 0) return {i, written()};
      out = PutWide(decoded.point, out);
      i += decoded.units;
    }
  }
  return {i, written()};
}

std::size_t Utf8ToWideDroppingCr(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  return WidenIf<IsAsciiWithoutCr>(data, length, out) ? length : ConvertDroppingCr(data, length, out);
}

std::size_t SequenceLength(const unsigned char* data, std::size_t left) noexcept {
  if (data[0] < 0x80) return 1;
  return DecodeSequence(data, left).units;
}

std::size_t PointToUtf8(std::uint32_t point, unsigned char* out) noexcept {
  if (point >= 0x80) return static_cast<std::size_t>(PutUtf8(point, out) - out);
  *out = static_cast<unsigned char>(point);
  return 1;
}

Progress MeasureUtf8(WStringView text) noexcept {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < text.size();) {
    for (; text.size() - i >= kStride && !HasSurrogate(text.data() + i); i += kStride) {
      bytes += MeasureBlock(text.data() + i);
    }
    if (i == text.size()) break;
    const Decoded decoded = DecodePoint(text, i);
    if (decoded.units == 0) return {i, bytes};
    bytes += decoded.point < 0x80 ? 1u : decoded.point < 0x800 ? 2u : decoded.point < 0x10000 ? 3u : 4u;
    i += decoded.units;
  }
  return {text.size(), bytes};
}

std::size_t CountUnits(const unsigned char* data, std::size_t length) noexcept {
  std::size_t units = 0;
  for (std::size_t i = 0; i < length; ++i) units += 0u + ((data[i] & 0xC0) != 0x80) + (data[i] >= 0xF0);
  return units;
}

std::size_t FindUnwritable(WStringView text) noexcept {
  for (std::size_t i = 0; i < text.size();) {
    while (text.size() - i >= kStride && !HasNulOrSurrogate(text.data() + i)) i += kStride;
    if (i == text.size()) break;
    const Decoded decoded = DecodePoint(text, i);
    if (decoded.units == 0 || decoded.point == 0) return i;
    i += decoded.units;
  }
  return text.size();
}

std::string ToUtf8Lossy(WStringView text) {
  std::string result;
  while (!text.empty()) {
    const WStringView piece = text.substr(0, kLossyPiece);
    const std::size_t before = result.size();
    result.resize(before + piece.size() * kMaxUtf8PerUnit);
    const Progress done = WideToUtf8(piece, reinterpret_cast<unsigned char*>(result.data()) + before);
    result.resize(before + done.written);
    text.remove_prefix(done.read);
    // What a piece has cut in two is whole in the next.
    if (text.empty() || done.read == piece.size() || DecodePoint(text, 0).units != 0) continue;
    result += "\xEF\xBF\xBD";
    text.remove_prefix(1);
  }
  return result;
}

WString ToWideLossy(std::string_view text) {
  WString result;
  while (!text.empty()) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t length = std::min(text.size(), kLossyPiece);
    const std::size_t before = result.size();
    result.resize(before + length);
    const Progress done = Utf8ToWide(bytes, length, result.data() + before);
    result.resize(before + done.written);
    text.remove_prefix(done.read);
    if (done.read == length || DecodeSequence(bytes + done.read, text.size()).units != 0) continue;
    result += u'\uFFFD';
    text.remove_prefix(1);
  }
  return result;
}

void ThrowUnwritable(WStringView text, std::size_t position, std::size_t before) {
  if (text[position] == 0) {
    throw COvInvalidValueException(FormatString(
        u"The text holds the character U+0000 at position %d, which no document can hold.", before + position));
  }
  throw COvInvalidValueException(
      FormatString(u"The text holds the unpaired surrogate U+%04X at position %d.", text[position], before + position));
}

}  // namespace OvXmlLib16::unicode
