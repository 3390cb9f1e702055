#include <iostream>

#include "tools/Commands.h"
#include "tools/Failure.h"
#include "tools/FiListing.h"
#include "tools/Input.h"

namespace ovxml {

int FiDump(const FiDumpOptions& options) {
  const OvXmlLib16::CSerializationContext& limits = options.common.context;
  const Input input(options.input, limits.GetMaxInputBytes());
  const std::string document = input.ReadAll(limits.GetMaxInputBytes(), limits.GetMaxDecompressedBytes());
  try {
    fi::List(document, std::cout);
  } catch (const fi::Fault& fault) {
    std::cout << std::flush;
    throw Failure{kBadInput, options.input + ": " + fault.what()};
  }
  return kDone;
}

}  // namespace ovxml
