#include <iostream>

#include "tools/Commands.h"
#include "tools/Source.h"

namespace ovxml {

namespace {

void CheckOne(const std::string& name, const CommonOptions& common) {
  const Source source(name, common.context);
  Progress progress(common.progress, name, source.GetBytesPerReading(), /*passes=*/1);
  DocumentEvents nobodyListens;
  try {
    source.Read(nobodyListens, progress);
  } catch (const OvXmlLib16::COvException& exception) {
    throw source.FailureOf(exception, name);
  }
}

// A verdict on the document is what was asked for; that there is none is an error.
void Report(const Failure& failure) {
  if (failure.code != kBadInput) return PrintError(failure.line);
  std::cout << failure.line << '\n';
}

}  // namespace

int Check(const CheckOptions& options) {
  int worst = kDone;
  for (const std::string& name : options.inputs) {
    try {
      CheckOne(name, options.common);
      if (!options.common.quiet) std::cout << name << ": well-formed\n";
    } catch (const Failure& failure) {
      Report(failure);
      if (worst == kDone || failure.code == kBadInput) worst = failure.code;
    }
  }
  return worst;
}

}  // namespace ovxml
