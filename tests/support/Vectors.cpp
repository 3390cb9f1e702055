#include "tests/support/Vectors.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace OvXmlLib16::test {

namespace {

constexpr std::string_view kBlanks = " \t", kLetters = "nrt\\\"", kMeanings = "\n\r\t\\\"";

class LineParser {
 public:
  LineParser(std::string_view line, const std::string& place) : m_rest(line), m_place(place) {}

  // cell *("|" cell) ["#" comment]
  std::vector<std::string> Cells() {
    std::vector<std::string> cells;
    do {
      SkipBlanks();
      cells.push_back(m_rest.starts_with('"') ? Quoted() : Plain());
      SkipBlanks();
      if (!m_rest.empty() && m_rest[0] != '|' && m_rest[0] != '#') Fail("text behind a cell");
    } while (!m_rest.empty() && Take(1) == "|");
    return cells;
  }

 private:
  std::string Plain() {
    const std::string_view cell = Take(std::min(m_rest.find_first_of("|#"), m_rest.size()));
    return std::string(cell.substr(0, cell.find_last_not_of(kBlanks) + 1));
  }

  std::string Quoted() {
    std::string cell;
    Take(1);
    for (char next; (next = Take(1)[0]) != '"';) next == '\\' ? cell += Escaped() : cell += next;
    return cell;
  }

  std::string Escaped() {
    const char letter = Take(1)[0];
    if (letter == 'x') return std::string(1, static_cast<char>(Hex(2)));
    if (letter == 'u') return ToUtf8(WString(1, static_cast<WChar>(Hex(4))));
    if (kLetters.find(letter) == std::string_view::npos) Fail("an unknown escape");
    return std::string(1, kMeanings[kLetters.find(letter)]);
  }

  int Hex(std::size_t digits) { return std::stoi(std::string(Take(digits)), nullptr, 16); }

  std::string_view Take(std::size_t length) {
    if (m_rest.size() < length) Fail("a quote or an escape that does not end");
    const std::string_view taken = m_rest.substr(0, length);
    m_rest.remove_prefix(length);
    return taken;
  }

  void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(kBlanks), m_rest.size())); }
  [[noreturn]] void Fail(const std::string& what) const { throw std::runtime_error(m_place + ": " + what); }

  std::string_view m_rest;
  const std::string& m_place;
};

}  // namespace

const std::string& VectorRow::operator[](std::string_view column) const {
  const auto found = m_cells.find(column);
  if (found == m_cells.end()) throw std::out_of_range(m_place + ": no column " + std::string(column));
  return found->second;
}

std::vector<VectorRow> ReadVectors(const std::string& file, std::string_view table) {
  std::ifstream in(OVXMLLIB_TEST_DATA "/" + file);
  std::vector<VectorRow> rows;
  std::vector<std::string> columns;
  const std::string heading = "[" + std::string(table) + "]";
  bool inTable = false;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.starts_with('[')) inTable = line == heading;
    if (!inTable || line.empty() || line[0] == '#' || line[0] == '[') continue;
    const std::string place = file + ":" + std::to_string(number);
    const std::vector<std::string> cells = LineParser(line, place).Cells();
    if (columns.empty()) {
      columns = cells;
      continue;
    }
    if (cells.size() != columns.size()) throw std::runtime_error(place + ": not as many cells as columns");
    std::map<std::string, std::string, std::less<>> row;
    for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = cells[i];
    rows.emplace_back(place, std::move(row));
  }
  if (rows.empty()) throw std::runtime_error(file + ": no cases in " + heading);
  return rows;
}

}  // namespace OvXmlLib16::test
