#include "tests/support/Vectors.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::test {

namespace {

constexpr std::string_view kBlanks = " \t";

class LineParser {
 public:
  LineParser(std::string_view line, const std::string& place) : m_rest(line), m_place(place) {}

  // cell *("|" cell) ["#" comment]
  std::vector<std::string> Cells() {
    std::vector<std::string> cells;
    for (;;) {
      cells.push_back(Cell());
      if (m_rest.empty() || m_rest.front() == '#') return cells;
      m_rest.remove_prefix(1);
    }
  }

 private:
  std::string Cell() {
    SkipBlanks();
    std::string cell = m_rest.starts_with('"') ? Quoted() : Plain();
    SkipBlanks();
    if (!m_rest.empty() && m_rest.front() != '|' && m_rest.front() != '#') Fail("text behind a cell");
    return cell;
  }

  std::string Plain() {
    const std::string_view cell = m_rest.substr(0, m_rest.find_first_of("|#"));
    m_rest.remove_prefix(cell.size());
    return std::string(cell.substr(0, cell.find_last_not_of(kBlanks) + 1));
  }

  std::string Quoted() {
    std::string cell;
    m_rest.remove_prefix(1);
    while (!m_rest.empty() && m_rest.front() != '"') {
      const char next = Take();
      cell += next == '\\' ? Escaped() : std::string(1, next);
    }
    Take();
    return cell;
  }

  std::string Escaped() {
    switch (const char letter = Take()) {
      case 'n':
        return "\n";
      case 'r':
        return "\r";
      case 't':
        return "\t";
      case '\\':
      case '"':
        return std::string(1, letter);
      case 'x':
        return std::string(1, static_cast<char>(Hex(2)));
      case 'u':
        return ToUtf8(WString(1, static_cast<WChar>(Hex(4))));
      default:
        Fail("an unknown escape");
    }
  }

  int Hex(std::size_t digits) {
    if (m_rest.size() < digits) Fail("a short escape");
    const std::string number(m_rest.substr(0, digits));
    m_rest.remove_prefix(digits);
    return std::stoi(number, nullptr, 16);
  }

  char Take() {
    if (m_rest.empty()) Fail("a quote that does not end");
    const char taken = m_rest.front();
    m_rest.remove_prefix(1);
    return taken;
  }

  void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(kBlanks), m_rest.size())); }
  [[noreturn]] void Fail(const std::string& what) const { throw std::runtime_error(m_place + ": " + what); }

  std::string_view m_rest;
  const std::string& m_place;
};

VectorRow MakeRow(const std::string& place, const std::vector<std::string>& columns,
                  const std::vector<std::string>& cells) {
  if (cells.size() != columns.size()) throw std::runtime_error(place + ": not as many cells as columns");
  std::map<std::string, std::string, std::less<>> row;
  for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = cells[i];
  return {place, std::move(row)};
}

}  // namespace

const std::string& VectorRow::operator[](std::string_view column) const {
  const auto found = m_cells.find(column);
  if (found == m_cells.end()) throw std::out_of_range(m_place + ": no column " + std::string(column));
  return found->second;
}

std::vector<VectorRow> ReadVectors(const std::string& file, std::string_view table) {
  std::ifstream in(std::string(OVXMLLIB_TEST_DATA "/") + file);
  std::vector<VectorRow> rows;
  std::vector<std::string> columns;
  const std::string heading = "[" + std::string(table) + "]";
  bool inTable = false;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::string place = file + ":" + std::to_string(number);
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      inTable = line == heading;
    } else if (inTable && columns.empty()) {
      columns = LineParser(line, place).Cells();
    } else if (inTable) {
      rows.push_back(MakeRow(place, columns, LineParser(line, place).Cells()));
    }
  }
  if (rows.empty()) throw std::runtime_error(file + ": no cases in " + heading);
  return rows;
}

}  // namespace OvXmlLib16::test
