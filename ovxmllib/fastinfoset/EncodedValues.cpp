#include "ovxmllib/fastinfoset/EncodedValues.h"

#include <bit>
#include <concepts>
#include <cstring>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/values/Base64.h"
#include "ovxmllib/values/Conversions.h"
#include "ovxmllib/values/PrimitiveText.h"

namespace OvXmlLib16::fastinfoset {

namespace {

using Octets = std::span<const unsigned char>;

[[noreturn]] void ThrowUnknown() { throw COvException(u"Unknown byte encoding."); }

// The numbers: how many octets, which primitive prints and parses them, and what is said of a broken one.
template <Algorithm kAlgorithm>
struct Number;
template <ItemType kPrimitive, class Unsigned>
struct NumberOf {
  static constexpr ItemType kType = kPrimitive;
  using Value = typename Primitive<kType>::Value;
  using Bits = Unsigned;
};
// clang-format off
template <> struct Number<kShort> : NumberOf<ItemType_i2, std::uint16_t> { static constexpr const WChar* kFailure = u"Invalid value for SHORT byte encoding."; };
template <> struct Number<kInt> : NumberOf<ItemType_i4, std::uint32_t> { static constexpr const WChar* kFailure = u"Invalid value for INT byte encoding."; };
template <> struct Number<kLong> : NumberOf<ItemType_i8, std::uint64_t> { static constexpr const WChar* kFailure = u"Invalid value for LONG byte encoding."; };
template <> struct Number<kFloat> : NumberOf<ItemType_r4, std::uint32_t> { static constexpr const WChar* kFailure = u"Invalid value for FLOAT byte encoding."; };
template <> struct Number<kDouble> : NumberOf<ItemType_r8, std::uint64_t> { static constexpr const WChar* kFailure = u"Invalid value for DOUBLE byte encoding."; };
// clang-format on

WStringView Trimmed(WStringView text) noexcept {
  while (!text.empty() && CWhitespaceUtils::IsWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && CWhitespaceUtils::IsWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

template <Algorithm kAlgorithm>
std::size_t EncodeNumber(WStringView text, unsigned char* out) {
  using Row = Number<kAlgorithm>;
  const auto bits = std::bit_cast<typename Row::Bits>(ParsePrimitive<Row::kType>(Trimmed(text)));
  for (std::size_t i = 0; i < sizeof bits; ++i) out[i] = static_cast<unsigned char>(bits >> 8 * (sizeof bits - 1 - i));
  return sizeof bits;
}

template <Algorithm kAlgorithm>
void DecodeNumbers(Octets octets, WString& text) {
  using Row = Number<kAlgorithm>;
  constexpr std::size_t kSize = sizeof(typename Row::Bits);
  if (octets.size() % kSize != 0) throw COvException(Row::kFailure);
  for (std::size_t at = 0; at < octets.size(); at += kSize) {
    if (at != 0) text += u' ';
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < kSize; ++i) bits = bits << 8 | octets[at + i];
    AppendPrimitive<Row::kType>(std::bit_cast<typename Row::Value>(static_cast<typename Row::Bits>(bits)), text);
  }
}

// Clause 10.7: the count of unused bits of the last octet in the four high bits of the first, then a bit a value.
constexpr unsigned char kTrue = 0x38, kFalse = 0x30;

void DecodeBooleans(Octets octets, WString& text) {
  const unsigned unused = octets.front() >> 4;
  if (unused > (octets.size() == 1 ? 3u : 7u)) throw COvException(u"Invalid value for BOOLEAN byte encoding.");
  for (std::size_t i = 0; i < octets.size(); ++i) {
    // Deliberate: a blank stands between octets and none between the values of one.
    if (i != 0) text += u' ';
    const unsigned lowest = i + 1 == octets.size() ? unused : 0;
    for (unsigned bit = i == 0 ? 4 : 8; bit-- > lowest;) {
      AppendPrimitive<ItemType_boolean>((octets[i] >> bit & 1) != 0, text);
    }
  }
}

std::size_t EncodeHex(WStringView text, unsigned char* out) {
  CBinaryData data;
  data.SetAsHexString(text);
  if (!data.IsEmpty()) std::memcpy(out, std::as_const(data).GetData(), data.GetLength());
  return data.GetLength();
}

void DecodeBase64(Octets octets, WString& text) {
  const std::size_t before = text.size();
  text.resize(before + CBase64::GetEncodedLength(octets.size()));
  CBase64().Encode(octets.data(), octets.size(), text.data() + before);
}

void DecodeUuids(Octets octets, WString& text) {
  constexpr std::size_t kUuid = 16;
  if (octets.size() % kUuid != 0) throw COvException(u"Invalid value for UUID byte encoding.");
  for (std::size_t at = 0; at < octets.size(); at += kUuid) {
    if (at != 0) text += u' ';
    text += CBinaryData::GetAsHexString(octets.data() + at, kUuid);
  }
}

std::size_t EncodeUtf8(WStringView text, unsigned char* out) {
  const unicode::Progress done = unicode::WritableToUtf8(text, out);
  if (done.read != text.size()) unicode::ThrowUnwritable(text, done.read);
  return done.written;
}

}  // namespace

std::size_t EncodeValue(std::uint32_t algorithm, WStringView text, unsigned char* out) {
  switch (algorithm) {
    case kHexadecimal:
    case kUuid:
      return EncodeHex(text, out);
    case kBase64:
      return CBase64().Decode(text, out);
    case kShort:
      return EncodeNumber<kShort>(text, out);
    case kInt:
      return EncodeNumber<kInt>(text, out);
    case kLong:
      return EncodeNumber<kLong>(text, out);
    case kBoolean:
      *out = ParsePrimitive<ItemType_boolean>(Trimmed(text)) ? kTrue : kFalse;
      return 1;
    case kFloat:
      return EncodeNumber<kFloat>(text, out);
    case kDouble:
      return EncodeNumber<kDouble>(text, out);
    case kCData:
      return EncodeUtf8(text, out);
    default:
      ThrowUnknown();
  }
}

void DecodeValues(std::uint32_t algorithm, std::span<const unsigned char> octets, WString& text) {
  if (octets.empty()) return;
  switch (algorithm) {
    case kHexadecimal:
      text += CBinaryData::GetAsHexString(octets.data(), octets.size());
      return;
    case kBase64:
      return DecodeBase64(octets, text);
    case kShort:
      return DecodeNumbers<kShort>(octets, text);
    case kInt:
      return DecodeNumbers<kInt>(octets, text);
    case kLong:
      return DecodeNumbers<kLong>(octets, text);
    case kBoolean:
      return DecodeBooleans(octets, text);
    case kFloat:
      return DecodeNumbers<kFloat>(octets, text);
    case kDouble:
      return DecodeNumbers<kDouble>(octets, text);
    case kUuid:
      return DecodeUuids(octets, text);
    default:
      ThrowUnknown();
  }
}

}  // namespace OvXmlLib16::fastinfoset
