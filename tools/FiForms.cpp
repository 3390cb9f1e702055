#include "tools/FiForms.h"

#include <algorithm>
#include <bit>
#include <charconv>

namespace ovxml::fi {

namespace {

constexpr std::uint64_t kMaxIndex = 1u << 20;
constexpr std::size_t kMostShown = 60;    // bytes of a text
constexpr std::size_t kMostDecoded = 64;  // octets of a value, a multiple of the size of each

// Numbers from `first` to `last`: what exceeds `first` stands in the bits of the first octet behind the marker, and in
// the octets that follow.
struct NumberRow {
  unsigned char marker, mask, valueMask, octets;
  std::uint64_t first, last;
};

// clang-format off
constexpr NumberRow kSecondBit[] = {
    {0x00, 0x40, 0x3F, 0, 1, 64}, {0x40, 0x60, 0x1F, 1, 65, 8256}, {0x60, 0x70, 0x0F, 2, 8257, kMaxIndex}};
constexpr NumberRow kOrZeroOnSecondBit[] = {
    {0x7F, 0x7F, 0x00, 0, 0, 0},
    {0x00, 0x40, 0x3F, 0, 1, 64}, {0x40, 0x60, 0x1F, 1, 65, 8256}, {0x60, 0x70, 0x0F, 2, 8257, kMaxIndex}};
constexpr NumberRow kThirdBit[] = {
    {0x00, 0x20, 0x1F, 0, 1, 32}, {0x20, 0x38, 0x07, 1, 33, 2080}, {0x28, 0x38, 0x07, 2, 2081, 526368},
    {0x30, 0x3F, 0x00, 3, 526369, kMaxIndex}};
constexpr NumberRow kFourthBit[] = {
    {0x00, 0x10, 0x0F, 0, 1, 16}, {0x10, 0x1C, 0x03, 1, 17, 1040}, {0x14, 0x1C, 0x03, 2, 1041, 263184},
    {0x18, 0x1F, 0x00, 3, 263185, kMaxIndex}};
constexpr NumberRow kLengthOnSecondBit[] = {
    {0x00, 0x40, 0x3F, 0, 1, 64}, {0x40, 0x7F, 0x00, 1, 65, 320}, {0x60, 0x7F, 0x00, 4, 321, UINT64_MAX}};
constexpr NumberRow kLengthOnFifthBit[] = {
    {0x00, 0x08, 0x07, 0, 1, 8}, {0x08, 0x0F, 0x00, 1, 9, 264}, {0x0C, 0x0F, 0x00, 4, 265, UINT64_MAX}};
constexpr NumberRow kLengthOnSeventhBit[] = {
    {0x00, 0x02, 0x01, 0, 1, 2}, {0x02, 0x03, 0x00, 1, 3, 258}, {0x03, 0x03, 0x00, 4, 259, UINT64_MAX}};
constexpr NumberRow kSequence[] = {
    {0x00, 0x80, 0x7F, 0, 1, 128}, {0x80, 0xF0, 0x0F, 2, 129, kMaxIndex}};
// clang-format on

struct FormRow {
  std::span<const NumberRow> rows;
  const char* fault;
};

// By NumberForm.
constexpr FormRow kForms[] = {
    {kSecondBit, "the bits are no index (C.25)"},
    {kOrZeroOnSecondBit, "the bits are no index (C.26)"},
    {kThirdBit, "the bits are no index (C.27)"},
    {kFourthBit, "the bits are no index (C.28)"},
    {kLengthOnSecondBit, "the bits are no length (C.22)"},
    {kLengthOnFifthBit, "the bits are no length (C.23)"},
    {kLengthOnSeventhBit, "the bits are no length (C.24)"},
    {kSequence, "the bits are no number of items (C.21)"},
};

unsigned At(Octets octets, std::size_t i) { return static_cast<unsigned char>(octets[i]); }

std::uint64_t BigEndian(Octets octets) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < octets.size(); ++i) value = value << 8 | At(octets, i);
  return value;
}

bool IsFirstOfPair(OvXmlLib16::WChar unit) { return (unit & 0xFC00) == 0xD800; }

std::string Utf8Of(OvXmlLib16::WStringView text) try {
  return OvXmlLib16::ToUtf8(text);
} catch (const OvXmlLib16::COvException&) {
  throw Fault("half of a character is missing (UTF-16)");
}

std::string Hexadecimal(Octets octets) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < octets.size(); ++i) (text += kDigits[At(octets, i) >> 4]) += kDigits[At(octets, i) & 15];
  return text;
}

std::string Base64(Octets octets) {
  const OvXmlLib16::CBinaryData data(reinterpret_cast<const unsigned char*>(octets.data()), octets.size());
  return OvXmlLib16::ToUtf8(data.GetAsBase64());
}

template <class Integer>
std::string Signed(Octets octets) {
  return std::to_string(static_cast<Integer>(BigEndian(octets)));
}

template <class Real, class Bits>
std::string RealOf(Octets octets) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, std::bit_cast<Real>(static_cast<Bits>(BigEndian(octets))));
  return {text, end.ptr};
}

// Four bits tell how many bits of the last octet are none (10.7).
std::string Booleans(Octets octets) {
  const std::size_t unused = At(octets, 0) >> 4;
  const std::size_t bits = octets.size() * 8;
  if (unused > 7 || 4 + unused > bits) throw Fault("there are no so many unused bits (10.7)");
  std::string text;
  for (std::size_t i = 4; i < bits - unused; ++i) {
    if (!text.empty()) text += ' ';
    text += (At(octets, i / 8) >> (7 - i % 8) & 1) != 0 ? "true" : "false";
  }
  return text;
}

std::string Uuid(Octets octets) {
  constexpr std::size_t kHyphens[] = {20, 16, 12, 8};
  std::string text = Hexadecimal(octets);
  for (const std::size_t place : kHyphens) text.insert(place, 1, '-');
  return text;
}

std::string Same(Octets octets) { return std::string(octets); }

// An encoding algorithm that the standard builds in (clause 10). With a size, values stand behind each other.
struct Algorithm {
  const char* name;
  std::size_t size;
  std::string (*decode)(Octets);
};

constexpr Algorithm kAlgorithms[] = {
    {"hexadecimal", 0, &Hexadecimal},
    {"base64", 0, &Base64},
    {"short", 2, &Signed<std::int16_t>},
    {"int", 4, &Signed<std::int32_t>},
    {"long", 8, &Signed<std::int64_t>},
    {"boolean", 0, &Booleans},
    {"float", 4, &RealOf<float, std::uint32_t>},
    {"double", 8, &RealOf<double, std::uint64_t>},
    {"uuid", 16, &Uuid},
    {"cdata", 0, &Same},
};

// Clause 9.
constexpr struct {
  const char* name;
  std::u16string_view characters;
} kAlphabets[] = {{"numeric", u"0123456789-+.e "}, {"date and time", u"0123456789-:TZ "}};

std::string DecodeValues(const Algorithm& algorithm, Octets octets) {
  if (algorithm.size == 0) return algorithm.decode(octets.substr(0, kMostDecoded));
  if (octets.size() % algorithm.size != 0) {
    throw Fault(std::string("the octets are no values of ") + std::to_string(algorithm.size) + " octets each");
  }
  std::string text;
  for (std::size_t at = 0; at < std::min(octets.size(), kMostDecoded); at += algorithm.size) {
    if (at != 0) text += ' ';
    text += algorithm.decode(octets.substr(at, algorithm.size));
  }
  return text;
}

std::string DecodeUtf16(Octets octets) {
  if (octets.size() % 2 != 0) throw Fault("half of a character is missing (UTF-16BE)");
  OvXmlLib16::WString text;
  for (std::size_t i = 0; i < std::min(octets.size(), kMostDecoded); i += 2) {
    text += static_cast<OvXmlLib16::WChar>(BigEndian(octets.substr(i, 2)));
  }
  if (octets.size() > kMostDecoded && IsFirstOfPair(text.back())) text.pop_back();
  return Utf8Of(text);
}

// Positions of the least width that leaves one number free; that one is padding (C.19, 8.2).
std::string DecodePositions(OvXmlLib16::WStringView alphabet, Octets octets) {
  const auto width = std::max<std::size_t>(2, static_cast<std::size_t>(std::bit_width(alphabet.size())));
  const std::uint64_t padding = (std::uint64_t{1} << width) - 1;
  OvXmlLib16::WString text;
  std::uint64_t bits = 0;
  std::size_t held = 0;
  for (std::size_t i = 0; i < std::min(octets.size(), kMostDecoded); ++i) {
    bits = bits << 8 | At(octets, i);
    for (held += 8; held >= width; held -= width) {
      const std::uint64_t position = bits >> (held - width) & padding;
      if (position == padding) return Utf8Of(text);
      if (position >= alphabet.size()) throw Fault("a position is outside of the alphabet");
      text += alphabet[position];
    }
  }
  return Utf8Of(text);
}

bool IsUtf8(std::string_view text) try {
  OvXmlLib16::ToWide(text);
  return true;
} catch (const OvXmlLib16::COvException&) {
  return false;
}

std::string ShownOf(char c, bool isUtf8) {
  if (c == '\n') return "\\n";
  if (c == '\t') return "\\t";
  const bool isAscii = static_cast<unsigned char>(c) < 0x80;
  const bool isPlain = isAscii ? c >= ' ' && c != '\x7F' : isUtf8;
  return {isPlain ? c : '?'};
}

std::string DecodeAlphabet(const StoredString& string, const Encodings& encodings) {
  if (string.index <= std::size(kAlphabets)) {
    return DecodePositions(kAlphabets[string.index - 1].characters, string.octets);
  }
  const std::size_t added = string.index - Encodings::kFirstAlphabet;
  const bool isKnown = string.index >= Encodings::kFirstAlphabet && added < encodings.alphabets.size();
  if (!isKnown) return Hexadecimal(string.octets.substr(0, kMostDecoded));
  return DecodePositions(encodings.alphabets[added], string.octets);
}

}  // namespace

OvXmlLib16::WString WideOf(Octets text) try {
  return OvXmlLib16::ToWide(text);
} catch (const OvXmlLib16::COvException&) {
  throw Fault("a text is no UTF-8");
}

Octets Cursor::Take(std::uint64_t length) {
  const std::size_t left = m_all.size() - m_at;
  if (length > left) {
    throw Fault("the document ends here; " + std::to_string(length - left) + " more octets belong to this item");
  }
  const Octets taken = m_all.substr(m_at, static_cast<std::size_t>(length));
  m_at += taken.size();
  return taken;
}

std::uint64_t ReadNumber(Cursor& in, NumberForm form, unsigned first) {
  const FormRow& found = kForms[static_cast<std::size_t>(form)];
  for (const NumberRow& row : found.rows) {
    if ((first & row.mask) != row.marker) continue;
    const std::uint64_t high = first & row.valueMask;
    const std::uint64_t number = row.first + (high << (8 * row.octets)) + BigEndian(in.Take(row.octets));
    if (number > row.last) break;
    return number;
  }
  throw Fault(found.fault);
}

std::string FormOf(const StoredString& string) {
  const std::string number = std::to_string(string.index);
  switch (string.characters) {
    case Characters::kUtf8:
      return "UTF-8";
    case Characters::kUtf16:
      return "UTF-16BE";
    case Characters::kAlphabet:
      if (string.index > std::size(kAlphabets)) return "alphabet " + number;
      return "alphabet " + number + ", " + kAlphabets[string.index - 1].name;
    default:
      if (string.index > std::size(kAlgorithms)) return "algorithm " + number;
      return "algorithm " + number + ", " + kAlgorithms[string.index - 1].name;
  }
}

namespace {

std::string DecodeStart(const StoredString& string, const Encodings& encodings) {
  switch (string.characters) {
    case Characters::kUtf8:
      return std::string(string.octets.substr(0, kMostDecoded));
    case Characters::kUtf16:
      return DecodeUtf16(string.octets);
    case Characters::kAlphabet:
      return DecodeAlphabet(string, encodings);
    default:
      if (string.index > std::size(kAlgorithms)) return Hexadecimal(string.octets.substr(0, kMostDecoded));
      return DecodeValues(kAlgorithms[string.index - 1], string.octets);
  }
}

}  // namespace

std::string Decode(const StoredString& string, const Encodings& encodings) {
  const std::string start = DecodeStart(string, encodings);
  return string.octets.size() > kMostDecoded ? start + "..." : start;
}

std::string Shown(std::string_view text) {
  std::size_t end = std::min(text.size(), kMostShown);
  while (end < text.size() && (At(text, end) & 0xC0) == 0x80) ++end;  // the rest of a character
  const std::string_view part = text.substr(0, end);
  const bool isUtf8 = IsUtf8(part);
  std::string shown = "\"";
  for (const char c : part) shown += ShownOf(c, isUtf8);
  return shown + (end < text.size() ? "...\"" : "\"");
}

}  // namespace ovxml::fi
