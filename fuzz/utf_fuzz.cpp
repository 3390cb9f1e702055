// Conversion between UTF-8 and UTF-16, and the text stream, against a naive converter that works code point by code
// point.
//
// Input: a byte that selects the encoding of the stream, a byte how often the text is written to it, two bytes where it
// is cut and flushed, then the data, taken as UTF-8 and as UTF-16 with the low byte first.

#include <string>
#include <string_view>

#include "fuzz/Input.h"
#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::fuzz {
namespace {

// What a reference conversion made of its input, and how far it came.
template <class Text>
struct Converted {
  Text text;
  std::size_t read = 0;
};

// By the bit distribution (Unicode Standard, table 3-6) alone: decodes whatever has the shape, then refuses surrogates,
// numbers above U+10FFFF and forms that are longer than need be.
Converted<WString> ReferenceToWide(Bytes bytes) {
  Converted<WString> result;
  while (result.read < bytes.size()) {
    const unsigned lead = bytes[result.read];
    const std::size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    if (length == 0 || length > bytes.size() - result.read) break;
    std::uint32_t point = length == 1 ? lead : lead & (0x7Fu >> length);
    bool hasShape = true;
    for (std::size_t i = 1; i < length; ++i) {
      hasShape = hasShape && bytes[result.read + i] >> 6 == 2;
      point = point << 6 | (bytes[result.read + i] & 0x3Fu);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (!hasShape || point < kLeast[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) break;
    if (point >= 0x10000) result.text += static_cast<WChar>(0xD7C0 + (point >> 10));
    result.text += static_cast<WChar>(point < 0x10000 ? point : 0xDC00 + (point & 0x3FF));
    result.read += length;
  }
  return result;
}

Converted<std::string> ReferenceToUtf8(WStringView text) {
  Converted<std::string> result;
  const auto put = [&](std::uint32_t byte) { result.text += static_cast<char>(byte); };
  while (result.read < text.size()) {
    std::uint32_t point = text[result.read];
    const std::uint32_t next = result.read + 1 < text.size() ? text[result.read + 1] : 0;
    if (point >= 0xD800 && point <= 0xDFFF) {
      if (point >= 0xDC00 || next < 0xDC00 || next > 0xDFFF) break;
      point = (point - 0xD800) * 0x400 + (next - 0xDC00) + 0x10000;
      ++result.read;
    }
    ++result.read;
    if (point < 0x80) {
      put(point);
      continue;
    }
    if (point >= 0x10000) put(0xF0 | point >> 18);
    if (point >= 0x10000) put(0x80 | (point >> 12 & 0x3F));
    if (point >= 0x800 && point < 0x10000) put(0xE0 | point >> 12);
    put(point >= 0x800 ? 0x80 | (point >> 6 & 0x3F) : 0xC0 | point >> 6);
    put(0x80 | (point & 0x3F));
  }
  return result;
}

// The conversion throws, naming `position`, exactly when the reference did not come to the end.
template <class Call>
void RequireFailure(bool complete, std::size_t position, const Call& call) {
  const auto failure = FailureOf<COvInvalidValueException>(call);
  Require(failure.has_value() != complete, "a conversion fails when the input is wrong, and only then");
  if (complete) return;
  const WString place = FormatString(u"at position %d", position);
  Require(failure->GetMessage().find(place) != WString::npos, "a failed conversion names the place");
}

WString LossyToWide(Bytes bytes) {
  WString result;
  while (true) {
    const auto part = ReferenceToWide(bytes);
    result += part.text;
    if (part.read == bytes.size()) return result;
    bytes = bytes.subspan(part.read + 1);
    result += u'\uFFFD';
  }
}

std::string LossyToUtf8(WStringView text) {
  std::string result;
  while (true) {
    const auto part = ReferenceToUtf8(text);
    result += part.text;
    if (part.read == text.size()) return result;
    text.remove_prefix(part.read + 1);
    result += "\xEF\xBF\xBD";
  }
}

void CheckFromUtf8(Bytes bytes) {
  const auto expected = ReferenceToWide(bytes);
  const bool complete = expected.read == bytes.size();

  WString wide, decoded;
  RequireFailure(complete, expected.read, [&] { wide = ToWide(CharactersOf(bytes)); });
  RequireFailure(complete, expected.read, [&] { decoded = DecodeUtf8(bytes.data(), bytes.size()); });
  if (complete) Require(wide == expected.text && decoded == expected.text, "UTF-8 decodes to the same text");

  const auto units = ExactRoom<WChar>(bytes.size());
  const unicode::Progress done = unicode::Utf8ToWide(bytes.data(), bytes.size(), units.get());
  Require(done.read == expected.read, "Utf8ToWide stops where the input is wrong");
  Require(WStringView(units.get(), done.written) == expected.text, "Utf8ToWide converts as far as it comes");
  Require(unicode::ToWideLossy(CharactersOf(bytes)) == LossyToWide(bytes), "ToWideLossy replaces what is wrong");

  const Bytes legal = bytes.first(expected.read);
  WString withoutCr = expected.text;
  std::erase(withoutCr, u'\r');
  const std::size_t written = unicode::Utf8ToWideDroppingCr(legal.data(), legal.size(), units.get());
  Require(WStringView(units.get(), written) == withoutCr, "Utf8ToWideDroppingCr drops U+000D and nothing else");
}

void CheckFromWide(WStringView text) {
  const auto expected = ReferenceToUtf8(text);
  const bool complete = expected.read == text.size();

  std::string utf8;
  CBinaryData encoded;
  RequireFailure(complete, expected.read, [&] { utf8 = ToUtf8(text); });
  RequireFailure(complete, expected.read, [&] { encoded = EncodeUtf8(text); });
  if (complete) {
    Require(utf8 == expected.text, "ToUtf8 encodes");
    Require(AreEqual(BytesOf(encoded), BytesOf(expected.text)), "EncodeUtf8 encodes");
  }

  const unicode::Progress measured = unicode::MeasureUtf8(text);
  Require(measured.read == expected.read && measured.written == expected.text.size(), "MeasureUtf8 measures");
  const auto bytes = ExactRoom<unsigned char>(text.size() * unicode::kMaxUtf8PerUnit);
  const unicode::Progress done = unicode::WideToUtf8(text, bytes.get());
  Require(done.read == expected.read, "WideToUtf8 stops at an unpaired surrogate");
  Require(AreEqual({bytes.get(), done.written}, BytesOf(expected.text)), "WideToUtf8 converts as far as it comes");

  Require(unicode::ToUtf8Lossy(text) == LossyToUtf8(text), "ToUtf8Lossy replaces what is wrong");

  const std::size_t writable = std::min(expected.read, text.find(u'\0'));
  Require(unicode::FindUnwritable(text) == writable, "FindUnwritable finds the first");
  const unicode::Progress stopped = unicode::WritableToUtf8(text, bytes.get());
  Require(stopped.read == writable, "WritableToUtf8 stops at U+0000");
  const auto sound = ReferenceToUtf8(text.substr(0, writable));
  Require(AreEqual({bytes.get(), stopped.written}, BytesOf(sound.text)), "WritableToUtf8 converts until there");
}

// Writes the text in pieces whose lengths, ways and flushes follow `pattern`.
void WriteInPieces(CTextStream& stream, WStringView text, unsigned pattern) {
  while (!text.empty()) {
    const WStringView piece = text.substr(0, 1 + pattern % 13);
    if (pattern % 3 == 0) {
      for (const WChar unit : piece) stream.Write(unit);
    } else if (pattern % 3 == 1) {
      WChar* const room = stream.Reserve(piece.size() + pattern % 5);
      stream.Commit(room + piece.copy(room, piece.size()));
    } else {
      stream.Write(piece);
    }
    text.remove_prefix(piece.size());
    if (pattern % 7 < 2) stream.Flush();
    pattern = pattern * 0x5DEECE6Du + 11;
  }
}

void CheckStream(const WString& text, XmlEncoding encoding, unsigned pattern) {
  const std::size_t sound = unicode::FindUnwritable(text);
  const bool complete = sound == text.size();
  CTextStream stream(encoding);
  stream.Write(u"left by another document");
  for (int round = 0; round < 2; ++round) {
    stream.Open();
    CBinaryData bytes;
    WString whole;
    RequireFailure(complete, sound, [&] {
      WriteInPieces(stream, text, pattern);
      if (encoding != XmlEncoding_None && round == 0) bytes = stream.GetBytes();
      whole = round == 0 ? stream.GetText() : WString(stream.GetString());
      if (encoding != XmlEncoding_None) bytes = stream.GetBytes();
    });
    if (!complete) continue;
    Require(whole == text, "a stream gives back the text");
    if (encoding == XmlEncoding_None) continue;
    const CBinaryData expected = encoding == XmlEncoding_UTF8 ? EncodeUtf8(text) : CBinaryData(text.c_str());
    Require(bytes == expected, "a stream that is flushed anywhere gives the bytes of the whole text");
  }
}

void Run(Input input) {
  const auto encoding = static_cast<XmlEncoding>(input.TakeByte() & 3);
  const unsigned repetitions = 1 + input.TakeByte() % 32;
  const unsigned pattern = input.TakePair();
  const Bytes bytes = input.TakeRest();
  const WString text = UnitsOf(bytes);
  CheckFromUtf8(bytes);
  CheckFromWide(ExactText(text).View());

  WString longText;
  for (unsigned i = 0; i < repetitions; ++i) longText += text;
  CheckStream(longText, encoding, pattern);
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
