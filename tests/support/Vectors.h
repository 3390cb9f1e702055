// Tables of cases kept as data files: tests/data/**/*.vec.
//
//   # What CDecimal reads and prints.            a comment, to the end of its line
//   [parse]                                      opens a table
//   text    | prints                             names its columns
//   1.50    | 1.5                                a case; blanks around a cell do not count
//   " 1\n"  | 1                                  in double quotes they do, and \n \r \t \\ \" \xHH \uHHHH are escapes
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::test {

/// One case of a table.
class VectorRow {
 public:
  VectorRow(std::string place, std::map<std::string, std::string, std::less<>> cells)
      : m_place(std::move(place)), m_cells(std::move(cells)) {}

  /// The cell in UTF-8. Throws std::out_of_range, which names the place, when the table has no such column.
  const std::string& operator[](std::string_view column) const;
  WString Wide(std::string_view column) const { return ToWide((*this)[column]); }
  /// The cell as a decimal number. Throws std::invalid_argument.
  long long Number(std::string_view column) const { return std::stoll((*this)[column]); }

  /// "file:line", for SCOPED_TRACE.
  const std::string& Place() const noexcept { return m_place; }

 private:
  std::string m_place;
  std::map<std::string, std::string, std::less<>> m_cells;
};

/// The rows of one table of a file below tests/data. Throws std::runtime_error, which names file and line, when the
/// file cannot be read, has no such table or a row with another number of cells than columns, and when the table is
/// empty: a test over no cases would pass.
std::vector<VectorRow> ReadVectors(const std::string& file, std::string_view table);

}  // namespace OvXmlLib16::test
