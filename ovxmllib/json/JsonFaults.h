// What can be wrong with JSON text, and how it is told.
#pragma once

#include <cstddef>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The faults of JSON text. Those of which the name ends in "Found" tell the character that was met.
enum class JsonFault {
  TooDeep,
  ValueFound,
  ArrayEnds,
  ArraySeparatorFound,
  ObjectEndsAtOnce,
  NameFound,
  ColonEnds,
  ColonFound,
  ObjectValueEnds,
  ObjectEnds,
  ObjectSeparatorFound,
  StringEnds,
  HexDigits,
  EscapeFound,
  NullEnds,
  Null,
  TrueEnds,
  True,
  FalseEnds,
  False,
  NumberEnds,
  DigitFound,
  Digit,
  ExponentEnds,
};

/// A place in a text, both numbers counted from 1; a column of 0 is ahead of the first character of a line. Columns
/// count code units.
struct JsonPlace {
  int line;
  int column;
};

/// The place of the last character of `text`, of which line feeds from `firstPlain` on count as characters of the line.
JsonPlace PlaceAtEnd(WStringView text, std::size_t firstPlain) noexcept;

/// Throws COvValidationException with the fault's message, the place, and the path that tells which member it was.
[[noreturn]] void ThrowJsonFault(JsonFault fault, WChar found, JsonPlace place, const WString& path);

}  // namespace OvXmlLib16
