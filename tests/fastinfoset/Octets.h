// Octets as they stand in tables of cases, and documents made of them.
#pragma once

#include <algorithm>
#include <string>

#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "ovxmllib/foundation/WideString.h"
#include "tests/support/Bytes.h"
#include "tests/support/Documents.h"

namespace OvXmlLib16::test {

/// "E0 00*3 'text'": pairs of digits, "*" and how often, or text in ASCII.
inline std::string OctetsOf(std::string_view cell) {
  std::string octets;
  for (std::size_t i = 0; i < cell.size();) {
    if (cell[i] == ' ') {
      ++i;
    } else if (cell[i] == '\'') {
      const std::size_t end = cell.find('\'', i + 1);
      octets += cell.substr(i + 1, end - i - 1);
      i = end + 1;
    } else if (cell[i] == '*') {
      const std::size_t end = std::min(cell.find(' ', i), cell.size());
      octets.append(std::stoul(std::string(cell.substr(i + 1, end - i - 1))) - 1, octets.back());
      i = end;
    } else {
      octets += static_cast<char>(std::stoi(std::string(cell.substr(i, 2)), nullptr, 16));
      i += 2;
    }
  }
  return octets;
}

/// The octets as in the tables, without text.
inline std::string HexOf(const CBinaryData& data) {
  const std::string digits = ToUtf8(data.GetAsHexString());
  std::string result;
  for (std::size_t i = 0; i < digits.size(); i += 2) result += (i == 0 ? "" : " ") + digits.substr(i, 2);
  return result;
}
inline std::string HexOf(const std::string& octets) { return HexOf(Data(octets)); }

}  // namespace OvXmlLib16::test
