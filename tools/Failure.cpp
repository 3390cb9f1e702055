#include "tools/Failure.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "tools/Limits.h"

namespace ovxml {

namespace {

using OvXmlLib16::COvException;

// The library's exceptions have no type for the kind of failure. Its messages are part of its interface.
constexpr std::string_view kReadFailures[] = {"Failed to open the file", "Failed to get the size of the file",
                                              "Failed to read the contents of the file"};
constexpr std::string_view kWriteFailure = "Failed to write data to the file";
// What cannot be set: the guards against entities and default values that multiply a document.
constexpr std::string_view kFixedLimits[] = {"limit on input amplification factor", "more than a hundredfold",
                                             "The document declares more than"};

bool IsReadFailure(std::string_view message) {
  return std::any_of(std::begin(kReadFailures), std::end(kReadFailures),
                     [&](std::string_view start) { return message.starts_with(start); });
}

bool TellsOfFixedLimit(std::string_view message) {
  return std::any_of(std::begin(kFixedLimits), std::end(kFixedLimits),
                     [&](std::string_view part) { return message.find(part) != std::string_view::npos; });
}

// The errno value in "... rror [0x0000001c]".
int ErrorIn(const std::string& message) {
  const std::size_t at = message.rfind("[0x");
  return at == std::string::npos ? EIO : static_cast<int>(std::strtol(message.c_str() + at + 1, nullptr, 16));
}

// The line stands ahead of the message.
void DropLine(std::string& message, const COvException& exception) {
  const std::string end = " at line " + std::to_string(exception.GetLine());
  if (message.ends_with(end)) message.resize(message.size() - end.size());
}

std::string PlaceOf(const COvException& exception) {
  if (exception.GetLine() == 0) return {};
  return ":" + std::to_string(exception.GetLine()) + ":" + std::to_string(exception.GetColumn());
}

}  // namespace

Failure SystemFailure(const std::string& name, int error) { return {kIoFailure, name + ": " + std::strerror(error)}; }

Failure FailureOf(const COvException& exception, const std::string& input, const std::string& output) {
  std::string message = OvXmlLib16::ToUtf8(exception.GetFullMessage());
  if (IsReadFailure(message)) return SystemFailure(input, ErrorIn(message));
  if (message.starts_with(kWriteFailure)) return SystemFailure(output, ErrorIn(message));
  const bool isLimit = NameOptions(message) || TellsOfFixedLimit(message);
  DropLine(message, exception);
  std::replace(message.begin(), message.end(), '\n', ' ');
  return {isLimit ? kLimitPassed : kBadInput, input + PlaceOf(exception) + ": " + message};
}

void PrintError(std::string_view line) {
  std::string printable = "ovxml: " + std::string(line);
  std::replace_if(
      printable.begin(), printable.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; },
      '?');
  std::cerr << printable + '\n' << std::flush;
}

}  // namespace ovxml
