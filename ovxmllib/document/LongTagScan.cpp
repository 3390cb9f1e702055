#include "ovxmllib/document/LongTagScan.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kShortestAttribute = 5;  // blank, name, equal sign and two quotes
// What is shorter costs the parser less than a millisecond.
constexpr std::size_t kWorthwhile = 64 * 1024;

}  // namespace

// The text as code units. A unit beyond ASCII reads as 0.
class LongTagScan::Units {
 public:
  Units(const unsigned char* text, std::size_t length, Form form) noexcept
      : m_text(text),
        m_width(form == Form::Bytes ? 1 : 2),
        m_low(form == Form::Utf16BigEndian ? 1 : 0),
        m_count(length / m_width) {}

  std::size_t Count() const noexcept { return m_count; }

  unsigned char operator[](std::size_t index) const noexcept {
    if (m_width == 1) return m_text[index];
    return m_text[2 * index + 1 - m_low] == 0 ? m_text[2 * index + m_low] : 0;
  }

  // The first `wanted` from `index` on, or Count.
  std::size_t Find(unsigned char wanted, std::size_t index) const noexcept {
    if (m_width == 1) return IndexOf(std::memchr(m_text + index, wanted, m_count - index), m_count);
    while (index < m_count && (*this)[index] != wanted) ++index;
    return index;
  }

  // The last '<' behind `index` and not behind `last`, or `index`.
  std::size_t FindLastMarkup(std::size_t index, std::size_t last) const noexcept {
    if (m_width == 1) return IndexOf(memrchr(m_text + index + 1, '<', last - index), index);
    while (last > index && (*this)[last] != '<') --last;
    return last;
  }

 private:
  std::size_t IndexOf(const void* found, std::size_t otherwise) const noexcept {
    if (found == nullptr) return otherwise;
    return static_cast<std::size_t>(static_cast<const unsigned char*>(found) - m_text);
  }

  const unsigned char* m_text;
  std::size_t m_width;
  std::size_t m_low;  // offset of the low byte of a UTF-16 code unit
  std::size_t m_count;
};

LongTagScan::LongTagScan(std::size_t maxAttributes) noexcept
    : m_maxAttributes(maxAttributes), m_shortest(std::max(kShortestAttribute * maxAttributes, kWorthwhile)) {}

void LongTagScan::SetFormOf(const unsigned char* start, std::size_t length) noexcept {
  if (length < 2) return;
  const std::string_view mark(reinterpret_cast<const char*>(start), 2);
  if (mark == "\xFF\xFE" || mark == std::string_view("<\0", 2)) m_form = Form::Utf16LittleEndian;
  if (mark == "\xFE\xFF" || mark == std::string_view("\0<", 2)) m_form = Form::Utf16BigEndian;
}

// A '<' cannot stand within a start tag (XML 1.0, production 10), so what has one in every stretch of the length of the
// shortest tag is passed over at one look a stretch.
std::size_t LongTagScan::Find(const unsigned char* text, std::size_t part, std::size_t length) const noexcept {
  const Units units(text, length, m_form);
  const std::size_t starts = part / Width();
  for (std::size_t at = 0; at < starts && units.Count() - at > m_shortest;) {
    const std::size_t next = units.FindLastMarkup(at, at + m_shortest);
    if (next != at) {
      at = next;
      continue;
    }
    const std::size_t end = EndOfAllowed(units, at);
    if (end != units.Count()) return (end + 1) * Width();
    at += m_shortest;
  }
  return part;
}

bool LongTagScan::BeginsWithLongTag(const unsigned char* text, std::size_t length) const noexcept {
  const Units units(text, length, m_form);
  return units.Count() != 0 && EndOfAllowed(units, 0) != units.Count();
}

// The opening quote of the first attribute that is too many, or Count.
std::size_t LongTagScan::EndOfAllowed(const Units& units, std::size_t start) const noexcept {
  const std::size_t count = units.Count();
  if (units[start] != '<' || start + 1 == count) return count;
  if (std::string_view("!?/").find(static_cast<char>(units[start + 1])) != std::string_view::npos) return count;
  std::size_t attributes = 0;
  for (std::size_t i = start + 1; i < count; ++i) {
    const unsigned char unit = units[i];
    if (unit == '<' || unit == '>') return count;
    if (unit != '"' && unit != '\'') continue;
    if (++attributes > m_maxAttributes) return i;
    i = units.Find(unit, i + 1);
  }
  return count;
}

}  // namespace OvXmlLib16
