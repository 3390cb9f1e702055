// How the program fails: one line and an exit code.
#pragma once

#include <string>
#include <string_view>

#include "ovxmllib/ovxmllib.h"

namespace ovxml {

enum ExitCode : int {
  kDone = 0,
  kBadInput = 1,
  kUsage = 2,
  kIoFailure = 3,
  kLimitPassed = 4,
};

/// Thrown where the program cannot go on. Not caught but by the commands' outermost functions.
struct Failure {
  ExitCode code;
  std::string line;  ///< UTF-8, or bytes of a path; without "ovxml: " and line end
};

/// A failed system call on `name`, a path as the user gave it; `error` is an errno value.
Failure SystemFailure(const std::string& name, int error);

/// What the library threw while it read `input` and wrote `output`, both named as the user did; the line tells the one
/// that it happened to, and the place where it is known.
Failure FailureOf(const OvXmlLib16::COvException& exception, const std::string& input, const std::string& output);

/// Prints a line on standard error behind "ovxml: ". Control characters, which a path may hold, become '?'.
void PrintError(std::string_view line);

}  // namespace ovxml
