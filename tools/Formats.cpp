#include "tools/Formats.h"

#include <algorithm>

namespace ovxml {

namespace {

constexpr std::string_view kGZipEnding = ".gz";

void WriteXml(const OvXmlLib16::CXmlObjectBase& object, const std::filesystem::path& file, const WriteOptions& options,
              const OvXmlLib16::CSerializationContext& context) {
  OvXmlLib16::AsyncToXmlFile(true);
  object.ToXmlFile(file, options.header, options.formatted, options.encoding, options.eol, context,
                   options.gzip ? OvXmlLib16::CompressionType_GZip : OvXmlLib16::CompressionType_None);
}

constexpr Format kFormats[] = {
    {"xml", "XML", ".xml", [](const std::string&) { return true; }, &WriteXml},
};

}  // namespace

std::span<const Format> Formats() { return kFormats; }

const Format& FormatOfContent(const std::string& head) {
  return *std::find_if(std::begin(kFormats), std::end(kFormats),
                       [&](const Format& format) { return format.recognises(head); });
}

const Format* FindFormat(const std::string& name) {
  const auto* const found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const Format& format) { return format.name == name; });
  return found == std::end(kFormats) ? nullptr : found;
}

const Format& FormatOfName(const std::string& file) {
  std::string_view name = file;
  if (IsGZipName(file)) name.remove_suffix(kGZipEnding.size());
  const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                         [&](const Format& format) { return name.ends_with(format.ending); });
  return found == std::end(kFormats) ? std::end(kFormats)[-1] : *found;
}

bool IsGZipName(const std::string& file) { return file.ends_with(kGZipEnding); }

}  // namespace ovxml
