// What the program does.
#pragma once

#include "tools/Options.h"

namespace ovxml {

/// Writes a document anew. Each command returns the exit code; Convert and Info also throw Failure and COvException.
int Convert(const ConvertOptions& options);

/// Prints what a document is made of.
int Info(const InfoOptions& options);

/// Prints a Fast Infoset document octet by octet.
int FiDump(const FiDumpOptions& options);

/// Prints a line for each file: whether it is well-formed, or where and why it is not.
int Check(const CheckOptions& options);

}  // namespace ovxml
