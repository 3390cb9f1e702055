// Computes every row that stands on standard input and compares; the argument is the least number of rows to come.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "ovxmllib/binding/OvException.h"
#include "tests/oracle/Operations.h"

namespace OvXmlLib16::test {
namespace {

std::string Unescaped(std::string_view cell) {
  std::string text;
  for (std::size_t i = 0; i < cell.size(); ++i) {
    if (cell[i] != '\\' || ++i == cell.size()) {
      text += cell[std::min(i, cell.size() - 1)];
    } else {
      text += cell[i] == 't' ? '\t' : cell[i] == 'n' ? '\n' : cell[i] == 'r' ? '\r' : cell[i];
    }
  }
  return text;
}

std::vector<std::string> CellsOf(std::string_view line) {
  std::vector<std::string> cells;
  for (;;) {
    const std::size_t tab = line.find('\t');
    cells.push_back(Unescaped(line.substr(0, tab)));
    if (tab == std::string_view::npos) return cells;
    line.remove_prefix(tab + 1);
  }
}

class Check {
 public:
  // True for the row by which the script says that it is through.
  bool Take(const std::string& line) {
    const std::vector<std::string> cells = CellsOf(line);
    if (cells.size() < 2) {
      Fail(line, "(no row)");
    } else if (cells.front() == "end") {
      return cells.back() == std::to_string(m_rows);
    } else {
      ++m_rows;
      const std::string actual = Compute(cells.front(), Operands(cells).subspan(1, cells.size() - 2));
      if (actual != cells.back()) Fail(line, actual);
    }
    return false;
  }

  std::size_t Rows() const { return m_rows; }
  std::size_t Failures() const { return m_failures; }

 private:
  static std::string Compute(const std::string& name, Operands operands) {
    static constexpr const OperationTable& (*kTables[])() = {NumberOperations, DateOperations};
    for (const auto& table : kTables) {
      const auto found = table().find(name);
      if (found == table().end()) continue;
      try {
        return found->second(operands);
      } catch (const COvException& exception) {
        return "! " + ToUtf8(exception.GetMessage());
      }
    }
    return "(no such operation)";
  }

  void Fail(const std::string& line, const std::string& actual) {
    constexpr std::size_t kShown = 20;
    if (++m_failures <= kShown) std::cerr << line << "\n  gives: " << actual << '\n';
  }

  std::size_t m_rows = 0;
  std::size_t m_failures = 0;
};

int Run(std::size_t leastRows) {
  Check check;
  bool isComplete = false;
  for (std::string line; std::getline(std::cin, line);) isComplete = check.Take(line);
  std::cout << check.Rows() << " rows, " << check.Failures() << " differ\n";
  if (!isComplete) std::cerr << "The rows broke off: the script failed.\n";
  if (check.Rows() < leastRows) std::cerr << "There should be " << leastRows << " rows at least.\n";
  return isComplete && check.Rows() >= leastRows && check.Failures() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace OvXmlLib16::test

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: oracle_check LEAST_ROWS < rows\n";
    return EXIT_FAILURE;
  }
  return OvXmlLib16::test::Run(std::strtoul(argv[1], nullptr, 10));
}
