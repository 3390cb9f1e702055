#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "tools/Commands.h"
#include "tools/Namespaces.h"
#include "tools/Source.h"

namespace ovxml {

namespace {

using OvXmlLib16::ToUtf8;

// A pair of surrogates is one character.
std::uint64_t CharactersOf(WStringView text) {
  return static_cast<std::uint64_t>(
      std::count_if(text.begin(), text.end(), [](auto unit) { return (unit & 0xFC00) != 0xDC00; }));
}

struct Counts : DocumentEvents {
  void OnStart(const CXmlElement& element) override {
    if (++elements == 1) root = {element.GetLocalName(), element.GetNamespaceURI()};
    depth = std::max(depth, ++open);
    ForEachAttribute(element, [this](const CXmlAttribute&) { ++attributes; });
  }
  void OnText(const TextPiece& piece) override { characters += CharactersOf(piece.text); }
  void OnEnd(const CXmlElement&) override { --open; }

  struct Name {
    WString local, ns;
  } root;
  std::uint64_t elements = 0, attributes = 0, characters = 0, depth = 0, open = 0;
};

void Line(const char* label, const auto&... values) {
  std::cout << std::left << std::setw(14) << label;
  (std::cout << ... << values) << '\n';
}

std::string Rounded(double value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::fixed << std::setprecision(value < 10 ? 1 : 0) << value;
  return text.str();
}

using Seconds = std::chrono::duration<double>;

class Stopwatch {
 public:
  Seconds GetElapsed() const { return Clock::now() - m_start; }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point m_start = Clock::now();
};

std::string EncodingName(const Source& source) {
  if (source.GetFormat().kind == FormatKind::kXml) return EncodingOf(source.GetInput().GetHead());
  return source.GetFormat().kind == FormatKind::kJson ? "UTF-8" : "binary";
}

void Print(const Source& source, const Namespaces& namespaces, const Counts& counts, double seconds) {
  const Input& input = source.GetInput();
  Line("Format:", source.GetFormat().title);
  Line("Compression:", input.IsCompressed() ? input.GetCompression() : "none");
  Line("Encoding:", EncodingName(source));
  Line("Size:", input.GetSize(), " bytes");
  Line("Root:", ToUtf8(counts.root.local), counts.root.ns.empty() ? "" : " in " + ToUtf8(counts.root.ns));
  for (const auto& [alias, uri] : namespaces.GetDeclarations()) {
    Line("Namespace:", alias.empty() ? "(default)" : ToUtf8(alias), " = ", ToUtf8(uri));
  }
  Line("Elements:", counts.elements);
  Line("Attributes:", counts.attributes);
  Line("Depth:", counts.depth);
  Line("Text:", counts.characters, " characters");
  Line("Speed:", Rounded(static_cast<double>(input.GetSize()) / 1e6 / std::max(seconds, 1e-6)), " MB/s");
}

}  // namespace

int Info(const InfoOptions& options) {
  const CommonOptions& common = options.common;
  Seconds taken(0);
  Stopwatch ahead;
  const Source source(options.input, common.context);
  taken += ahead.GetElapsed();
  try {
    Progress progress(common.progress, options.input, source.GetBytesPerReading(), /*passes=*/2);
    const Namespaces namespaces(source, common.context, progress);
    Counts counts;
    Stopwatch reading;
    source.Read(counts, progress);
    taken += reading.GetElapsed();
    Print(source, namespaces, counts, taken.count());
  } catch (const OvXmlLib16::COvException& exception) {
    throw source.FailureOf(exception, options.input);
  }
  return kDone;
}

}  // namespace ovxml
