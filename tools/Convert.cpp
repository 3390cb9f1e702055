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

// In the modes without namespaces elements are members by their local names.
SiblingRuns RunsOf(const Source& source, const CSerializationContext& context, Progress& progress) {
  const bool hasNamespaces = context.GetJsonContext()->GetSupportRoundtrip() == OvXmlLib16::RoundTripFull;
  return SiblingRuns(source, hasNamespaces, progress);
}

}  // namespace

int Convert(const ConvertOptions& options) {
  const CommonOptions& common = options.common;
  const Source source(options.input, common.context);
  const bool hasArrays = options.format->kind == FormatKind::kJson;
  try {
    Progress progress(common.progress, options.input, source.GetBytesPerReading(), /*passes=*/hasArrays ? 3 : 2);
    const Namespaces namespaces(source, common.context, progress);
    const SiblingRuns runs = hasArrays ? RunsOf(source, common.context, progress) : SiblingRuns();
    Output output(options.output);
    const OvXmlLib16::CSmartPtr<DocumentCopy> copy =
        new DocumentCopy(source, {namespaces, runs, options.write.formatted}, options.format->makeCopier, progress);
    Write(options, *copy, output);
    output.Finish();
  } catch (const COvException& exception) {
    throw source.FailureOf(exception, options.output);
  }
  return kDone;
}

}  // namespace ovxml
