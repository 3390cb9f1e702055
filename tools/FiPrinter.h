// The lines of a listing of octets.
#pragma once

#include <string>

#include "tools/FiForms.h"

namespace ovxml::fi {

/// Prints octets that a cursor has gone over, with their meaning beside them.
class Printer {
 public:
  /// Neither is owned.
  Printer(const Cursor& in, std::ostream& out) : m_in(in), m_out(out) {}

  /// Prints the octets since the last line, eight to a row.
  void Line(const std::string& meaning);

  void Indent() { ++m_depth; }
  void Outdent() { --m_depth; }

 private:
  const Cursor& m_in;
  std::ostream& m_out;
  std::size_t m_printed = 0;
  std::size_t m_depth = 0;
};

}  // namespace ovxml::fi
