// The command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ovxmllib/ovxmllib.h"
#include "tools/Formats.h"
#include "tools/Progress.h"

namespace ovxml {

/// What every command heeds.
struct CommonOptions {
  OvXmlLib16::CSerializationContext context;  ///< with the limits, the indentation and the form of JSON
  Progress::Wish progress = Progress::Wish::kAuto;
  bool quiet = false;
};

struct ConvertOptions {
  CommonOptions common;
  std::string input, output;
  const Format* format = nullptr;
  WriteOptions write;
};

struct InfoOptions {
  CommonOptions common;
  std::string input;
};

struct CheckOptions {
  CommonOptions common;
  std::vector<std::string> inputs;
};

struct FiDumpOptions {
  CommonOptions common;
  std::string input;
};

/// The command that was asked for, or the exit code when there is nothing left to do: help was printed, or a message on
/// what is wrong with the command line.
using Command = std::variant<int, ConvertOptions, InfoOptions, CheckOptions, FiDumpOptions>;

Command ParseCommandLine(int argc, char** argv);

}  // namespace ovxml
