#include "tools/Formats.h"

#include <algorithm>

namespace ovxml {

namespace {

using OvXmlLib16::CompressionType;
using OvXmlLib16::CSerializationContext;
using OvXmlLib16::CXmlObjectBase;

using namespace std::string_view_literals;

constexpr std::string_view kGZipEnding = ".gz";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

CompressionType CompressionOf(const WriteOptions& options) {
  return options.gzip ? OvXmlLib16::CompressionType_GZip : OvXmlLib16::CompressionType_None;
}

void WriteXml(const CXmlObjectBase& object, const std::filesystem::path& file, const WriteOptions& options,
              const CSerializationContext& context) {
  OvXmlLib16::AsyncToXmlFile(true);
  object.ToXmlFile(file, options.header, options.formatted, options.encoding, options.eol, context,
                   CompressionOf(options));
}

void WriteJson(const CXmlObjectBase& object, const std::filesystem::path& file, const WriteOptions& options,
               const CSerializationContext& context) {
  OvXmlLib16::AsyncToXmlFile(true);
  object.ToJsonFile(file, options.formatted, options.encoding, options.eol, context, CompressionOf(options));
}

void WriteFastInfoset(const CXmlObjectBase& object, const std::filesystem::path& file, const WriteOptions& options,
                      const CSerializationContext& context) {
  object.ToFastInfosetFile(file, OvXmlLib16::FInfoDecl_None, context, CompressionOf(options));
}

// RFC 8259, section 2, with the comments that the library passes over.
bool IsJson(std::string_view head) {
  if (head.starts_with(kByteOrderMark)) head.remove_prefix(kByteOrderMark.size());
  const std::size_t first = head.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && "{[/"sv.find(head[first]) != std::string_view::npos;
}

// Identification and version stand first (ITU-T Rec. X.891, clause 12.6), or behind an XML declaration that names the
// encoding (clause 12.3).
bool IsFastInfoset(std::string_view head) {
  constexpr auto kIdentification = "\xE0\x00\x00\x01"sv;
  if (!head.starts_with("<?xml ")) return head.starts_with(kIdentification);
  const std::size_t end = head.find("?>");
  return end != std::string_view::npos && head.substr(0, end).find("encoding='finf'") != std::string_view::npos &&
         head.substr(end + 2).starts_with(kIdentification);
}

constexpr Format kFormats[] = {
    {FormatKind::kFastInfoset, "fi", "Fast Infoset", ".fi", &IsFastInfoset, &MakeFastInfosetCopier, &WriteFastInfoset},
    {FormatKind::kJson, "json", "JSON", ".json", &IsJson, &MakeJsonCopier, &WriteJson},
    {FormatKind::kXml, "xml", "XML", ".xml", [](std::string_view) { return true; }, &MakeXmlCopier, &WriteXml},
};

const Format& First(auto&& condition) { return *std::find_if(std::begin(kFormats), std::end(kFormats), condition); }

}  // namespace

// A bare value is JSON too, but nobody can tell it from text that is no XML.
const Format& FormatOf(const Input& input) {
  const std::string_view head = input.GetHead();
  const Format& byContent = First([&](const Format& format) { return format.recognises(head); });
  const Format& byName = FormatOfName(input.GetName());
  const bool isByName = byName.kind == FormatKind::kJson && !head.starts_with('<');
  return byContent.kind == FormatKind::kXml && isByName ? byName : byContent;
}

const Format* FindFormat(const std::string& name) {
  const auto* const found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const Format& format) { return format.name == name; });
  return found == std::end(kFormats) ? nullptr : found;
}

const Format& FormatOfName(const std::string& file) {
  std::string_view name = file;
  if (IsGZipName(file)) name.remove_suffix(kGZipEnding.size());
  return First([&](const Format& format) { return format.kind == FormatKind::kXml || name.ends_with(format.ending); });
}

bool IsGZipName(const std::string& file) { return file.ends_with(kGZipEnding); }

}  // namespace ovxml
