#include "ovxmllib/values/Base64.h"

#include <array>

namespace OvXmlLib16 {

namespace {

constexpr WStringView kAlphabet = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Values above 63 in the decoding table.
constexpr std::uint8_t kSkipped = 0x40;
constexpr std::uint8_t kInvalid = 0x80;

constexpr auto kValues = [] {
  std::array<std::uint8_t, 128> values{};
  values.fill(kInvalid);
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) values[kAlphabet[i]] = static_cast<std::uint8_t>(i);
  for (const WChar skipped : WStringView(u"= \t\r\n")) values[skipped] = kSkipped;
  return values;
}();

// Deliberate: a character above 127 reads as its low seven bits do, so that U+0141 passes for A.
constexpr std::uint8_t ValueOf(WChar c) noexcept { return kValues[c & 0x7F]; }

constexpr WChar Digit(std::uint32_t bits) noexcept { return kAlphabet[bits & 0x3F]; }

}  // namespace

void CBase64::Encode(const unsigned char* data, std::size_t length, WChar* out) noexcept {
  for (; length >= 3; length -= 3, data += 3, out += 4) {
    const std::uint32_t bits = (std::uint32_t{data[0]} << 16) | (std::uint32_t{data[1]} << 8) | data[2];
    out[0] = Digit(bits >> 18);
    out[1] = Digit(bits >> 12);
    out[2] = Digit(bits >> 6);
    out[3] = Digit(bits);
  }
  if (length == 0) return;
  const std::uint32_t bits = (std::uint32_t{data[0]} << 16) | (length == 2 ? std::uint32_t{data[1]} << 8 : 0);
  out[0] = Digit(bits >> 18);
  out[1] = Digit(bits >> 12);
  out[2] = length == 2 ? Digit(bits >> 6) : u'=';
  out[3] = u'=';
}

std::size_t CBase64::Decode(WStringView text, unsigned char* out) noexcept {
  unsigned char* const start = out;
  m_pInput = text.data();
  m_dwLength = text.size();
  m_dwStore = 0;
  m_nBits = 0;
  while (true) {
    if (m_nBits == 0) out = DecodeQuads(out);
    if (m_dwLength == 0) return static_cast<std::size_t>(out - start);
    if (!TakeNext()) return 0;  // Deliberate: one bad character makes the whole text count as no data.
    if (m_nBits < 8) continue;
    m_nBits -= 8;
    *out++ = static_cast<unsigned char>(m_dwStore >> m_nBits);
  }
}

// Decodes four characters at a time until something else than a digit is among the next four.
unsigned char* CBase64::DecodeQuads(unsigned char* out) noexcept {
  for (; m_dwLength >= 4; m_dwLength -= 4, m_pInput += 4, out += 3) {
    const std::uint32_t a = ValueOf(m_pInput[0]), b = ValueOf(m_pInput[1]);
    const std::uint32_t c = ValueOf(m_pInput[2]), d = ValueOf(m_pInput[3]);
    if (((a | b | c | d) & (kSkipped | kInvalid)) != 0) break;
    const std::uint32_t bits = (a << 18) | (b << 12) | (c << 6) | d;
    out[0] = static_cast<unsigned char>(bits >> 16);
    out[1] = static_cast<unsigned char>(bits >> 8);
    out[2] = static_cast<unsigned char>(bits);
  }
  return out;
}

// Moves one character's bits into the store; false at one that may not be there.
bool CBase64::TakeNext() noexcept {
  const std::uint8_t value = ValueOf(*m_pInput++);
  --m_dwLength;
  if (value == kSkipped) return true;
  if (value == kInvalid) return false;
  m_dwStore = (m_dwStore << 6) | value;
  m_nBits += 6;
  return true;
}

}  // namespace OvXmlLib16
