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
// What cannot be set: the guards against what multiplies a document, and the depth of JSON.
constexpr std::string_view kFixedLimits[] = {"limit on input amplification factor", "more than a hundredfold",
                                             "The document declares more than", "JSON exceeded depth limit",
                                             "indentation is a hundred times"};

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

// The place stands ahead of the message, in which the parser of XML tells the line, that of JSON the column too.
void DropPlace(std::string& message, const COvException& exception) {
  const std::string line = " at line " + std::to_string(exception.GetLine());
  const std::string place = line + ", position " + std::to_string(exception.GetColumn());
  if (const std::size_t at = message.find(place); at != std::string::npos) message.erase(at, place.size());
  if (message.ends_with(line)) message.resize(message.size() - line.size());
}

bool IsFirstOfPair(OvXmlLib16::WChar unit) { return (unit & 0xFC00) == 0xD800; }
bool IsSecondOfPair(OvXmlLib16::WChar unit) { return (unit & 0xFC00) == 0xDC00; }

std::string PlaceOf(const COvException& exception, Place place) {
  if (exception.GetLine() == 0 || place == Place::kElsewhere) return {};
  return ":" + std::to_string(exception.GetLine()) + ":" + std::to_string(exception.GetColumn());
}

}  // namespace

std::string MessageOf(const COvException& exception) {
  OvXmlLib16::WString message = exception.GetFullMessage();
  for (std::size_t i = 0; i < message.size(); ++i) {
    const bool isPair = IsFirstOfPair(message[i]) && i + 1 < message.size() && IsSecondOfPair(message[i + 1]);
    if (isPair) {
      ++i;
    } else if (IsFirstOfPair(message[i]) || IsSecondOfPair(message[i])) {
      message[i] = u'?';
    }
  }
  return OvXmlLib16::ToUtf8(message);
}

Failure SystemFailure(const std::string& name, int error) { return {kIoFailure, name + ": " + std::strerror(error)}; }

Failure FailureOf(const COvException& exception, const std::string& input, const std::string& output, Place place) {
  std::string message = MessageOf(exception);
  if (IsReadFailure(message)) return SystemFailure(input, ErrorIn(message));
  if (message.starts_with(kWriteFailure)) return SystemFailure(output, ErrorIn(message));
  const bool isLimit = NameOptions(message) || TellsOfFixedLimit(message);
  DropPlace(message, exception);
  std::replace(message.begin(), message.end(), '\n', ' ');
  return {isLimit ? kLimitPassed : kBadInput, input + PlaceOf(exception, place) + ": " + message};
}

void PrintError(std::string_view line) {
  std::string printable = "ovxml: " + std::string(line);
  std::replace_if(
      printable.begin(), printable.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; },
      '?');
  std::cerr << printable + '\n' << std::flush;
}

}  // namespace ovxml
