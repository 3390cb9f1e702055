#include "tools/FiPrinter.h"

#include <algorithm>
#include <ostream>

namespace ovxml::fi {

namespace {

constexpr std::size_t kOctetsPerRow = 8;
constexpr std::size_t kOffsetWidth = 8;
// What is nested deeper stands below what it is in, or a hostile document would print its depth squared.
constexpr std::size_t kDeepest = 40;

std::string Row(std::size_t offset, Octets octets) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::string number = std::to_string(offset);
  std::string row(kOffsetWidth - std::min(kOffsetWidth, number.size()), ' ');
  row += number + ' ';
  for (const char octet : octets) {
    const auto value = static_cast<unsigned char>(octet);
    ((row += ' ') += kDigits[value >> 4]) += kDigits[value & 15];
  }
  return row.append(3 * (kOctetsPerRow - octets.size()), ' ');
}

}  // namespace

void Printer::Line(const std::string& meaning) {
  const Octets octets = m_in.GetAll().substr(m_printed, m_in.GetOffset() - m_printed);
  if (octets.empty()) return;
  m_out << Row(m_printed, octets.substr(0, kOctetsPerRow)) << std::string(2 + 2 * std::min(m_depth, kDeepest), ' ')
        << meaning << '\n';
  for (std::size_t at = kOctetsPerRow; at < octets.size(); at += kOctetsPerRow) {
    m_out << Row(m_printed + at, octets.substr(at, kOctetsPerRow)) << '\n';
  }
  m_printed = m_in.GetOffset();
}

}  // namespace ovxml::fi
