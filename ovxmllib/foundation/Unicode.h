// Conversion between UTF-16 and UTF-8 (Unicode Standard, section 3.9, definitions D91 and D92), strict and without
// allocation: the one converter under encoders, streams, the parser binding and messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::unicode {

/// How far a conversion came. It is complete when `read` equals the length of the input; otherwise `read` is the
/// position of the first code unit or byte that could not be converted.
struct Progress {
  std::size_t read;
  std::size_t written;
};

/// The most UTF-8 bytes that one UTF-16 code unit can need.
inline constexpr std::size_t kMaxUtf8PerUnit = 3;

constexpr bool IsSurrogate(WChar unit) noexcept { return (unit & 0xF800) == 0xD800; }
constexpr bool IsHighSurrogate(WChar unit) noexcept { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLowSurrogate(WChar unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

/// Converts until the end of `text` or its first unpaired surrogate. `out` has room for kMaxUtf8PerUnit bytes a unit.
Progress WideToUtf8(WStringView text, unsigned char* out) noexcept;

/// The same for text that is to stand in a document: stops at the first U+0000 too, at no cost.
Progress WritableToUtf8(WStringView text, unsigned char* out) noexcept;

/// Converts until the end of the input or its first illegal or cut off sequence (overlong forms, surrogates and code
/// points above U+10FFFF are illegal). `out` has room for `length` code units.
Progress Utf8ToWide(const unsigned char* data, std::size_t length, WChar* out) noexcept;

/// Converts bytes that are known to be legal UTF-8, leaving out every U+000D. Returns the units written; `out` has room
/// for `length` units. Deliberate: input that is not legal is stopped at, not reported; the parser has checked it.
std::size_t Utf8ToWideDroppingCr(const unsigned char* data, std::size_t length, WChar* out) noexcept;

/// The length of the legal UTF-8 sequence that the `left` bytes at `data` begin with; 0 when there is none.
std::size_t SequenceLength(const unsigned char* data, std::size_t left) noexcept;

/// Writes a code point that is no surrogate, at most four bytes; returns their number.
std::size_t PointToUtf8(std::uint32_t point, unsigned char* out) noexcept;

/// The number of UTF-8 bytes of `text` up to its end or its first unpaired surrogate.
Progress MeasureUtf8(WStringView text) noexcept;

/// The number of UTF-16 code units that `length` bytes of legal UTF-8 stand for.
std::size_t CountUnits(const unsigned char* data, std::size_t length) noexcept;

/// The position of the first U+0000 or unpaired surrogate of `text`, or its length when it is sound.
std::size_t FindUnwritable(WStringView text) noexcept;

/// For messages about text that may be anything: what cannot be converted becomes U+FFFD.
std::string ToUtf8Lossy(WStringView text);

/// The counterpart for bytes that may be anything, as in file names.
WString ToWideLossy(std::string_view text);

/// Throws COvInvalidValueException for the code unit at `position` of `text`, which FindUnwritable or a conversion
/// stopped at. The message counts from the start of a longer text, of which `before` code units precede `text`.
[[noreturn]] void ThrowUnwritable(WStringView text, std::size_t position, std::size_t before = 0);

}  // namespace OvXmlLib16::unicode
