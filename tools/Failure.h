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

/// The messages of an exception and those in it, in UTF-8. They may quote a document that is none: half a pair of
/// surrogates becomes '?'.
std::string MessageOf(const OvXmlLib16::COvException& exception);

/// A failed system call on `name`, a path as the user gave it; `error` is an errno value.
Failure SystemFailure(const std::string& name, int error);

/// Whether the place that an exception knows is one in the file that the user named.
enum class Place { kKnown, kElsewhere };

/// What the library threw while it read `input` and wrote `output`, both named as the user did; the line tells the one
/// that it happened to, and the place where it is known.
Failure FailureOf(const OvXmlLib16::COvException& exception, const std::string& input, const std::string& output,
                  Place place = Place::kKnown);

/// Prints a line on standard error behind "ovxml: ". Control characters, which a path may hold, become '?'.
void PrintError(std::string_view line);

}  // namespace ovxml
