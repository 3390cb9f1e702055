#include "tools/Commands.h"
#include "tools/DocumentCopy.h"
#include "tools/Failure.h"
#include "tools/Output.h"

namespace ovxml {

namespace {

using OvXmlLib16::COvException;

// The library refuses to compress what does not shrink.
bool IsTooSmallToCompress(const COvException& exception) {
  return exception.GetMessage().starts_with(u"Failed to compress data.");
}

void Write(const ConvertOptions& options, const DocumentCopy& copy, const Output& output) {
  const auto write = [&](const WriteOptions& how) {
    options.format->write(copy, output.GetPath(), how, options.common.context);
  };
  try {
    return write(options.write);
  } catch (const COvException& exception) {
    if (!options.write.gzip || !IsTooSmallToCompress(exception)) throw;
  }
  if (!options.common.quiet) PrintError(output.GetName() + ": gzip would not make it smaller; written uncompressed");
  WriteOptions plain = options.write;
  plain.gzip = false;
  write(plain);
}

}  // namespace

int Convert(const ConvertOptions& options) {
  const CommonOptions& common = options.common;
  const Input input(options.input, common.context.GetMaxInputBytes());
  try {
    Progress progress(common.progress, input.GetName(), input.GetSize(), /*passes=*/2);
    const Namespaces namespaces(input, common.context, progress);
    Output output(options.output);
    const OvXmlLib16::CSmartPtr<DocumentCopy> copy =
        new DocumentCopy(input, namespaces, options.write.formatted, progress);
    Write(options, *copy, output);
    output.Finish();
  } catch (const COvException& exception) {
    throw FailureOf(exception, options.input, options.output);
  }
  return kDone;
}

}  // namespace ovxml
