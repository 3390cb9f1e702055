#include "tools/JsonInput.h"

#include <algorithm>

#include "tools/Failure.h"

namespace ovxml {

namespace {

constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";

// The position behind what begins with '<' at `start`: a tag, whose quoted values may hold '>', or a section.
std::size_t FindMarkupEnd(std::string_view xml, std::size_t start) {
  if (xml.substr(start).starts_with(kSectionStart)) {
    return std::min(xml.size(), xml.find(kSectionEnd, start)) + kSectionEnd.size();
  }
  bool isQuoted = false;
  for (std::size_t at = start; at < xml.size(); ++at) {
    if (xml[at] == '"') isQuoted = !isQuoted;
    if (xml[at] == '>' && !isQuoted) return at + 1;
  }
  return xml.size();
}

// The library writes a tab in the value of an attribute as it is, and the parser would make a blank of it (XML 1.0,
// section 3.3.3). No tab stands in a tag but in values.
std::string WithTabsAsReferences(std::string_view xml) {
  std::string result;
  std::size_t done = 0;
  for (std::size_t tag = xml.find('<'); tag < xml.size(); tag = xml.find('<', done)) {
    const std::size_t end = std::min(xml.size(), FindMarkupEnd(xml, tag));
    result.append(xml, done, tag - done);
    const bool isSection = xml.substr(tag).starts_with(kSectionStart);
    for (const char c : xml.substr(tag, end - tag)) c == '\t' && !isSection ? result += "&#9;" : result += c;
    done = end;
  }
  return result.append(xml.substr(done));
}

bool IsTab(OvXmlLib16::WChar unit) { return unit == u'\t'; }

}  // namespace

TempFile ConvertJson(const Input& input, const CSerializationContext& context) {
  const OvXmlLib16::CBinaryData data = OvXmlLib16::CXmlDocument(context).LoadJsonFile(input.GetPath());
  const std::string xml = WithTabsAsReferences({reinterpret_cast<const char*>(data.GetData()), data.GetLength()});
  TempFile file(ScratchFolder(), TempFile::Purpose::kScratch, ScratchFolder());
  if (const int error = WriteAll(file.GetDescriptor(), xml.data(), xml.size()); error != 0) {
    throw SystemFailure(ScratchFolder(), error);
  }
  return file;
}

void WithoutFormatting::OnStart(const CXmlElement& element) {
  ++m_depth;
  m_events.OnStart(element);
}

// A line end stands behind each start tag with children and each child, a tab for each level ahead of each tag.
void WithoutFormatting::OnText(const TextPiece& piece) {
  if (!piece.behindChild && !piece.beforeChild) return m_events.OnText(piece);
  WStringView text = piece.text;
  if (text.starts_with(u'\n')) text.remove_prefix(1);
  const std::size_t indentation = piece.beforeChild ? m_depth : m_depth - 1;
  const auto tabs = std::find_if_not(text.rbegin(), text.rend(), &IsTab) - text.rbegin();
  text.remove_suffix(std::min(indentation, static_cast<std::size_t>(tabs)));
  if (!text.empty()) m_events.OnText({text, piece.behindChild, piece.beforeChild});
}

void WithoutFormatting::OnEnd(const CXmlElement& element) {
  m_events.OnEnd(element);
  --m_depth;
}

}  // namespace ovxml
