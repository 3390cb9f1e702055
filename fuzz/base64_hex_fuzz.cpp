// Base64 and hexadecimal text, both ways, against a naive codec.
//
// Input: a byte that says how the rest becomes text (one byte or two a code unit) and how white space is strewn into
// what was encoded, then the data, taken as bytes to encode and as text to decode.

#include <string>

#include "fuzz/Input.h"
#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/values/Base64.h"

namespace OvXmlLib16::fuzz {
namespace {

constexpr WStringView kAlphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr WStringView kPassedOver = u"= \t\r\n";

// Bit by bit (RFC 4648, section 4).
WString ReferenceToBase64(Bytes bytes) {
  WString text;
  for (std::size_t bit = 0; bit < bytes.size() * 8; bit += 6) {
    unsigned value = 0;
    for (std::size_t i = bit; i < bit + 6; ++i) {
      value = value * 2 + (i / 8 < bytes.size() ? bytes[i / 8] >> (7 - i % 8) & 1u : 0u);
    }
    text += kAlphabet[value];
  }
  while (text.size() % 4 != 0) text += u'=';
  return text;
}

std::string ReferenceFromBase64(WStringView text) {
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const WChar unit : text) {
    const auto c = static_cast<WChar>(unit & 0x7F);
    if (kPassedOver.find(c) != WStringView::npos) continue;
    const std::size_t value = kAlphabet.find(c);
    if (value == WStringView::npos) return {};
    for (int i = 5; i >= 0; --i) {
      bits = bits * 2 + (value >> i & 1u);
      if (++count % 8 == 0) bytes += static_cast<char>(bits);
    }
  }
  return bytes;
}

WString ReferenceToHex(Bytes bytes) {
  WString text;
  for (const unsigned char byte : bytes) text += FormatString(u"%02X", unsigned{byte});
  return text;
}

int HexValue(WChar c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return c >= u'A' && c <= u'F' ? c - u'A' + 10 : -1;
}

// The bytes that `text` stands for, or the message of its refusal.
struct FromHex {
  std::string bytes;
  WString message;
};

FromHex ReferenceFromHex(WStringView text) {
  if (text.size() % 2 != 0) return {{}, u"Invalid length in hex string"};
  FromHex result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int value = HexValue(text[i]);
    if (value < 0) return {{}, FormatString(u"Invalid char in hex string [%c]", text[i])};
    if (i % 2 == 0) result.bytes += '\0';
    result.bytes.back() = static_cast<char>(result.bytes.back() * 16 + value);
  }
  return result;
}

bool Holds(const CBinaryData& data, const std::string& expected) { return AreEqual(BytesOf(data), BytesOf(expected)); }

WString Strewn(WStringView text, unsigned pattern) {
  WString result;
  for (const WChar c : text) {
    for (; pattern % 4 == 0; pattern = pattern * 0x5DEECE6Du + 11) result += kPassedOver[pattern / 4 % 5];
    pattern = pattern * 0x5DEECE6Du + 11;
    result += c;
  }
  return result;
}

void CheckBytes(Bytes bytes, unsigned pattern) {
  const CBinaryData data(bytes.data(), bytes.size());
  const WString base64 = data.GetAsBase64(), hex = data.GetAsHexString();
  Require(base64 == ReferenceToBase64(bytes), "bytes encode to base64");
  Require(hex == ReferenceToHex(bytes) && hex == CBinaryData::GetAsHexString(data.GetData(), data.GetLength()),
          "bytes encode to hexadecimal digits");

  CBinaryData back;
  back.SetAsBase64(base64);
  Require(back == data, "base64 gives back the bytes");
  back.SetAsBase64(Strewn(base64, pattern));
  Require(back == data, "white space and padding in base64 are passed over");
  back.SetAsHexString(hex);
  Require(back == data, "hexadecimal digits give back the bytes");
}

void CheckText(WStringView text) {
  const std::string expected = ReferenceFromBase64(text);
  CBinaryData data(u"before");
  const CBinaryData copy = data;
  data.SetAsBase64(text);
  Require(Holds(data, expected), "base64 decodes to the same bytes");
  const auto room = ExactRoom<unsigned char>(CBase64::GetDecodedRoom(text.size()));
  Require(CBase64().Decode(text, room.get()) == expected.size(), "CBase64 decodes within its room");

  const FromHex hex = ReferenceFromHex(text);
  data = copy;
  const auto failure = FailureOf([&] { data.SetAsHexString(text); });
  Require((failure ? failure->GetMessage() : WString()) == hex.message, "wrong hexadecimal text is refused");
  Require(Holds(data, failure ? std::string() : hex.bytes), "hexadecimal text decodes to the same bytes, or none");
  Require(copy == CBinaryData(u"before"), "a copy keeps its bytes");
}

void Run(Input input) {
  const unsigned options = input.TakeByte();
  const Bytes bytes = input.TakeRest();
  CheckBytes(bytes, options / 2);
  CheckText(ExactText(options % 2 == 0 ? WString(bytes.begin(), bytes.end()) : UnitsOf(bytes)).View());
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
