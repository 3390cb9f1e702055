#include "tools/Options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <memory>
#include <optional>

#include "tools/Failure.h"
#include "tools/Limits.h"

namespace ovxml {

namespace {

using OvXmlLib16::EOLType;
using OvXmlLib16::JsonRoundTrip;
using OvXmlLib16::XmlEncoding;

constexpr const char* kExamples = R"(Examples:
  ovxml convert in.xml -o out.xml --format     each element on a line of its own
  ovxml convert in.xml.gz > plain.xml          gzip and zlib input is recognised
  ovxml convert in.xml -o out.xml.gz           an ending .gz asks for gzip
  curl URL | ovxml convert - --encoding utf16 --eol crlf -o out.xml
  ovxml convert in.xml -o out.json             the ending tells the format
  ovxml convert list.json --root list -o out.xml
  ovxml convert in.xml -o out.fi               Fast Infoset, the binary form of XML
  ovxml fi-dump out.fi                         octet by octet
  ovxml info big.xml                           root, namespaces, counts, speed
  ovxml check --untrusted *.xml                well-formed, and within strict limits?

Exit codes: 0 done, 1 bad input, 2 usage, 3 input or output failed, 4 a limit was passed.)";

const std::map<std::string, XmlEncoding> kEncodings = {{"utf8", OvXmlLib16::XmlEncoding_UTF8},
                                                       {"utf16", OvXmlLib16::XmlEncoding_UTF16}};
const std::map<std::string, EOLType> kLineEnds = {{"lf", OvXmlLib16::EOLType_LF}, {"crlf", OvXmlLib16::EOLType_CRLF}};

const std::map<std::string, JsonRoundTrip> kJsonModes = {{"full", OvXmlLib16::RoundTripFull},
                                                         {"attributes", OvXmlLib16::RoundTripAttributes},
                                                         {"none", OvXmlLib16::RoundTripNone}};

std::vector<std::string> NamesOf(const auto& map) {
  std::vector<std::string> names;
  for (const auto& [name, value] : map) names.push_back(name);
  return names;
}

// One level of indentation: "tab" or a number of blanks.
OvXmlLib16::WString IndentOf(const std::string& text) {
  return text == "tab" ? u"\t" : OvXmlLib16::WString(static_cast<std::size_t>(std::stoi(text)), u' ');
}

std::string CheckIndent(const std::string& text) {
  if (text == "tab") return {};
  const bool isNumber = !text.empty() && text.size() <= 2 && text.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? std::string() : "'" + text + "' is neither 'tab' nor a number of blanks";
}

std::string CheckFormat(const std::string& name) {
  return FindFormat(name) != nullptr ? std::string() : "'" + name + "' is not a format that ovxml knows";
}

// The command line as it stands, before it is understood.
struct Raw {
  bool untrusted = false;
  std::vector<std::optional<std::uint64_t>> limits = std::vector<std::optional<std::uint64_t>>(Limits().size());
  bool doctype = false;
  bool noDoctype = false;
  bool progress = false;
  bool quiet = false;

  std::vector<std::string> inputs;
  std::string output = "-";
  std::string to;
  std::string indent;
  std::string encoding = "utf8";
  std::string eol = "lf";
  std::string jsonMode = "full";
  std::string root;
  bool fiSuggested = false;
  WriteOptions write;
  bool noHeader = false;
};

void AddCommon(CLI::App& command, Raw& raw) {
  command.add_flag("--progress", raw.progress, "Show progress, for any file and without a terminal too");
  command.add_flag("--quiet,-q", raw.quiet, "Show no progress and no remarks");
  const std::string group = "Limits (0 for none)";
  command.add_flag("--untrusted", raw.untrusted, "All limits tight, for documents from strangers")->group(group);
  std::size_t i = 0;
  for (const Limit& limit : Limits()) {
    command.add_option(limit.option, raw.limits[i++], limit.help)
        ->check(CLI::NonNegativeNumber.description(""))
        ->group(group)
        ->type_name("N");
  }
  CLI::Option* const doctype = command.add_flag(kDoctypeOption, raw.doctype, "Take a DOCTYPE, also with --untrusted");
  doctype->group(group);
  command.add_flag("--no-doctype", raw.noDoctype, "Refuse a DOCTYPE")->group(group)->excludes(doctype);
}

void AddJson(CLI::App& command, Raw& raw) {
  const std::string group = "JSON";
  command
      .add_option("--json-mode", raw.jsonMode,
                  "What is told apart: full (default), attributes (no namespaces), none (attributes as elements)")
      ->check(CLI::IsMember(NamesOf(kJsonModes)).description(""))
      ->group(group)
      ->type_name("MODE");
  command.add_option("--root", raw.root, "Read JSON as the content of an element of this name")
      ->group(group)
      ->type_name("NAME");
}

CLI::App& AddConvert(CLI::App& app, Raw& raw) {
  CLI::App& command = *app.add_subcommand("convert", "Write a document anew");
  command.add_option("IN", raw.inputs, "File to read, - for standard input")->required()->expected(1)->type_name("");
  command.add_option("-o,--output", raw.output, "File to write, - for standard output (default)")->type_name("FILE");
  command.add_option("--to", raw.to, "Format to write (default: by the ending of FILE): xml, json or fi")
      ->check(CheckFormat)
      ->type_name("FORMAT");
  command.add_flag("--format", raw.write.formatted, "Put each element on a line of its own");
  command.add_option("--indent", raw.indent, "One level of indentation: tab (default) or a number of blanks; formats")
      ->check(CheckIndent)
      ->type_name("INDENT");
  command.add_flag("--no-header", raw.noHeader, "Leave out the XML declaration");
  command.add_option("--encoding", raw.encoding, "utf8 (default) or utf16")
      ->check(CLI::IsMember(NamesOf(kEncodings)).description(""))
      ->type_name("ENCODING");
  command.add_option("--eol", raw.eol, "Line ends: lf (default) or crlf")
      ->check(CLI::IsMember(NamesOf(kLineEnds)).description(""))
      ->type_name("EOL");
  command.add_flag("--gzip", raw.write.gzip, "Compress, as a FILE that ends in .gz does");
  command.add_flag("--fi-suggested", raw.fiSuggested, "Fast Infoset: typed values in binary (text stays text)");
  AddJson(command, raw);
  AddCommon(command, raw);
  return command;
}

CLI::App& AddInfo(CLI::App& app, Raw& raw) {
  CLI::App& command = *app.add_subcommand("info", "Tell what a document is made of");
  command.add_option("FILE", raw.inputs, "File to read, - for standard input")->required()->expected(1)->type_name("");
  AddJson(command, raw);
  AddCommon(command, raw);
  return command;
}

CLI::App& AddCheck(CLI::App& app, Raw& raw) {
  CLI::App& command = *app.add_subcommand("check", "Tell of each file whether it is well-formed");
  command.add_option("FILE", raw.inputs, "Files to read, - for standard input")->required()->type_name("");
  AddJson(command, raw);
  AddCommon(command, raw);
  return command;
}

CLI::App& AddFiDump(CLI::App& app, Raw& raw) {
  CLI::App& command = *app.add_subcommand("fi-dump", "Tell what the octets of a Fast Infoset document mean");
  command.add_option("FILE", raw.inputs, "File to read, - for standard input")->required()->expected(1)->type_name("");
  AddCommon(command, raw);
  return command;
}

CommonOptions CommonOf(const Raw& raw) {
  CommonOptions common;
  if (raw.untrusted) common.context.SetUntrustedInput();
  for (std::size_t i = 0; i < raw.limits.size(); ++i) {
    if (raw.limits[i]) Limits()[i].set(common.context, *raw.limits[i]);
  }
  if (raw.doctype || raw.noDoctype) common.context.SetAllowDoctype(raw.doctype);
  OvXmlLib16::CJsonContext& json = *common.context.GetJsonContext();
  json.SetSupportRoundtrip(kJsonModes.at(raw.jsonMode));
  json.SetRootElementName(OvXmlLib16::ToWide(raw.root).c_str());
  common.quiet = raw.quiet;
  if (raw.progress) common.progress = Progress::Wish::kAlways;
  if (raw.quiet) common.progress = Progress::Wish::kNever;
  return common;
}

ConvertOptions ConvertOf(const Raw& raw) {
  ConvertOptions options{CommonOf(raw), raw.inputs.front(), raw.output, FindFormat(raw.to), raw.write};
  if (options.format == nullptr) options.format = &FormatOfName(options.output);
  if (!raw.indent.empty()) options.common.context.SetIndentChars(IndentOf(raw.indent).c_str());
  if (raw.fiSuggested) options.common.context.GetFIContext()->SetSuggestedValues();
  options.write.formatted |= !raw.indent.empty();
  options.write.gzip |= IsGZipName(options.output);
  options.write.header = !raw.noHeader;
  options.write.encoding = kEncodings.at(raw.encoding);
  options.write.eol = kLineEnds.at(raw.eol);
  return options;
}

}  // namespace

Command ParseCommandLine(int argc, char** argv) {
  CLI::App app("Converts XML, JSON and Fast Infoset documents, tells what is in them, or checks them.", "ovxml");
  app.set_version_flag("--version", "ovxml " OVXML_VERSION);
  app.require_subcommand(1);
  app.footer(kExamples);
  Raw raw;
  const CLI::App& convert = AddConvert(app, raw);
  const CLI::App& info = AddInfo(app, raw);
  const CLI::App& fiDump = AddFiDump(app, raw);
  AddCheck(app, raw);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    PrintError(std::string(error.what()) + " (ovxml --help tells more)");
    return kUsage;
  }
  if (convert.parsed()) return ConvertOf(raw);
  if (info.parsed()) return InfoOptions{CommonOf(raw), raw.inputs.front()};
  if (fiDump.parsed()) return FiDumpOptions{CommonOf(raw), raw.inputs.front()};
  return CheckOptions{CommonOf(raw), raw.inputs};
}

}  // namespace ovxml
