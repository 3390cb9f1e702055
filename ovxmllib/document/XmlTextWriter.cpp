#include "ovxmllib/document/XmlTextWriter.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriterContext.h"
#include "ovxmllib/foundation/UnitCopy.h"

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kFlushThreshold = 4096;  // code units
constexpr std::size_t kShortText = 1024;       // fits into a block of the stream with all that stands around it

constexpr WStringView kSectionStart = u"<![CDATA[";
constexpr WStringView kSectionEnd = u"]]>";

// Markup put together in place: one check for room for all its pieces.
class MarkupRun {
 public:
  /// `bound` is what may be written at most.
  MarkupRun(CTextStream& stream, std::size_t bound) : m_stream(stream), m_end(stream.Reserve(bound + kRoomySlack)) {}
  MarkupRun(const MarkupRun&) = delete;
  MarkupRun& operator=(const MarkupRun&) = delete;
  ~MarkupRun() { m_stream.Commit(m_end); }

  MarkupRun& operator<<(WChar unit) noexcept {
    *m_end++ = unit;
    return *this;
  }
  MarkupRun& operator<<(WStringView text) noexcept {
    m_end = CopyUnits(m_end, text);
    return *this;
  }
  MarkupRun& CopyOwn(WStringView roomy) noexcept {
    m_end = CopyRoomy(m_end, roomy);
    return *this;
  }
  MarkupRun& Put(WStringView few) noexcept {
    m_end = PutUnits(m_end, few);
    return *this;
  }
  MarkupRun& PutName(WStringView prefix, WStringView local) noexcept {
    if (!prefix.empty()) *this << prefix << u':';
    return *this << local;
  }
  /// As CopyUnescaped.
  std::size_t PutText(WStringView text, const EscapeRules& rules) {
    const std::size_t copied = CopyUnescaped(m_end, text, rules);
    m_end += copied;
    return copied;
  }

 private:
  CTextStream& m_stream;
  WChar* m_end;
};

bool IsSectionStart(WStringView text) { return text[0] == u'<' && text.starts_with(kSectionStart); }

}  // namespace

inline WStringView CXmlTextWriter::GetLineEnd() const noexcept {
  return m_bFormatted ? WStringView(m_strEOL) : WStringView();
}

inline WStringView CXmlTextWriter::GetIndent(int depth) {
  const std::size_t length = m_bFormatted ? static_cast<std::size_t>(depth) * m_strIndent.size() : 0;
  if (m_indents.size() < length + kRoomySlack) GrowIndents(length);
  return WStringView(m_indents).substr(0, length);
}

// Bounds what the stream holds of text that is not encoded or on its way to the file yet.
inline void CXmlTextWriter::FlushIfDue() {
  if (m_pStream->GetBufferedLength() >= kFlushThreshold) m_pStream->Flush();
}

CXmlTextWriter::CXmlTextWriter(CTextStream* stream) : CXmlWriter(Record()), m_pStream(stream) {}

CInstanceMonitor::ClassType& CXmlTextWriter::Record() {
  static ClassType& record = FindClass(u"CXmlTextWriter");
  return record;
}

void CXmlTextWriter::SetFormatted(bool formatted) {
  assert(GetContext() == nullptr && "m_pContext == 0");
  m_bFormatted = formatted;
}

void CXmlTextWriter::SetEOLType(EOLType eol) {
  switch (eol) {
    case EOLType_CRLF:
      m_strEOL = u"\r\n";
      m_textRules = &kEscapeTextCrLf;
      break;
    case EOLType_LF:
      m_strEOL = u"\n";
      m_textRules = &kEscapeTextLf;
      break;
    default:
      throw COvException(u"Invalid EOL type.");
  }
  m_eolType = eol;
}

void CXmlTextWriter::Open() {
  CXmlWriter::Open();
  m_pStream->Open();
}

void CXmlTextWriter::Close() {
  m_pStream->Close();
  CXmlWriter::Close();
}

void CXmlTextWriter::WriteXmlHeader() {
  assert(GetContext() == nullptr && "m_pContext == 0");
  Write(u"<?xml version=\"1.0\"");
  if (m_pStream->GetEncoding() == XmlEncoding_UTF8) Write(u" encoding=\"UTF-8\"");
  if (m_pStream->GetEncoding() == XmlEncoding_UTF16) Write(u" encoding=\"UTF-16\"");
  Write(u"?>");
  Write(m_strEOL);
  FlushIfDue();
}

void CXmlTextWriter::WriteComment(WStringView text) {
  WriteEscaped(*m_pStream, u"<!--", text, u"-->", *m_textRules);
  Write(m_strEOL);
  FlushIfDue();
}

void CXmlTextWriter::WriteProcessingInstruction(WStringView text) {
  Write(text);
  // Deliberate: two line ends follow.
  Write(m_strEOL);
  Write(m_strEOL);
  FlushIfDue();
}

void CXmlTextWriter::WriteInlineSchema(WStringView text) {
  Write(u" ");
  Write(m_strEOL);
  Write(text);
  Write(m_strEOL);
  FlushIfDue();
}

void CXmlTextWriter::CloseStartTag() {
  if (GetContext() == nullptr || !CountChild()) return;
  m_pStream->Write(u'>');
  Write(GetLineEnd());
}

// Counts a child of the open element; true when its start tag was open and now is to be closed.
bool CXmlTextWriter::CountChild() noexcept {
  CXmlWriterContext& context = *GetContext();
  ++context.childCount;
  return std::exchange(context.bInStartTag, false);
}

void CXmlTextWriter::WriteRawLine(WStringView text) {
  Write(text);
  Write(GetLineEnd());
}

void CXmlTextWriter::StartElement(WStringView name, WStringView ns) {
  const bool isRoot = GetContext() == nullptr;
  const bool closesTag = !isRoot && CountChild();
  CXmlWriterContext& context = PushContext();
  const bool hasPrefix = !ns.empty() && !AreSame(ns, context.GetDefaultNamespace());
  const WString* alias = hasPrefix ? context.GetNamespaceMapValue(ns) : nullptr;
  const bool declares = hasPrefix && alias == nullptr;
  if (declares) alias = &context.AddGeneratedAlias(ns);
  const WStringView prefix = alias == nullptr ? WStringView() : *alias;
  PushTagName(context, prefix, name);
  const WStringView lineEnd = GetLineEnd();
  const WStringView indent = GetIndent(context.depth);
  {
    MarkupRun run(*m_pStream, lineEnd.size() + indent.size() + prefix.size() + name.size() + 3);
    if (closesTag) (run << u'>').Put(lineEnd);
    run.CopyOwn(indent) << u'<';
    // Not copied from what was kept of it just now: the processor would wait for the pieces of it to come together.
    run.PutName(prefix, name);
  }
  if (declares) WriteDeclaration(u" xmlns:", *alias, ns);
  if (isRoot) DeclareDocumentScope();
  FlushIfDue();
}

// Keeps the qualified name for the end tag, with what ends the tag behind it: whatever happens to the scope in between,
// the two are the same.
void CXmlTextWriter::PushTagName(CXmlWriterContext& context, WStringView alias, WStringView name) {
  const std::size_t start = m_tagNamesEnd;
  const std::size_t bound = start + alias.size() + name.size() + m_strEOL.size() + 2 + kRoomySlack;
  if (bound > m_tagNames.size()) m_tagNames.resize(2 * bound);
  WChar* end = m_tagNames.data() + start;
  if (!alias.empty()) {
    end = CopyUnits(end, alias);
    *end++ = u':';
  }
  end = CopyUnits(end, name);
  *end++ = u'>';
  end = PutUnits(end, GetLineEnd());
  context.nameStart = start;
  m_tagNamesEnd = static_cast<std::size_t>(end - m_tagNames.data());
}

void CXmlTextWriter::WriteDeclaration(WStringView start, WStringView alias, WStringView ns) {
  Write(start);
  Write(alias);
  WriteEscaped(*m_pStream, u"=\"", ns, u"\"", kEscapeAttribute);
}

void CXmlTextWriter::DeclareDocumentScope() {
  const NamespaceScope& scope = GetDocumentScope();
  if (!scope.GetDefaultNamespace().empty()) WriteDeclaration(u" xmlns", {}, scope.GetDefaultNamespace());
  for (const NamespaceScope::Entry& entry : scope.GetEntries()) {
    if (entry.alias.empty() || entry.uri.starts_with(kXmlNamespace)) continue;
    WriteDeclaration(u" xmlns:", entry.alias, entry.uri);
  }
}

void CXmlTextWriter::WriteText(WStringView text, ItemType) {
  CXmlWriterContext* context = GetContext();
  assert(context != nullptr && "m_pContext != 0");
  if (text.empty()) return;
  const WStringView tagEnd = std::exchange(context->bInStartTag, false) ? u">" : u"";
  if (IsSectionStart(text)) {
    Write(tagEnd);
    WriteTextWithSections(text);
  } else {
    WriteEscaped(*m_pStream, tagEnd, text, {}, *m_textRules);
  }
  FlushIfDue();
}

// Sections go out as they are, what stands between and behind them escaped, and so does a marker that begins no
// section: the output is well-formed for every text.
void CXmlTextWriter::WriteTextWithSections(WStringView text) {
  CheckCharacters(text);
  while (true) {
    const std::size_t start = text.find(kSectionStart);
    const std::size_t end = start == WStringView::npos ? start : text.find(kSectionEnd, start + kSectionStart.size());
    if (end == WStringView::npos) return WriteEscaped(*m_pStream, {}, text, {}, *m_textRules);
    WriteEscaped(*m_pStream, {}, text.substr(0, start), {}, *m_textRules);
    const WStringView section = text.substr(start, end + kSectionEnd.size() - start);
    Write(section);
    text.remove_prefix(start + section.size());
  }
}

void CXmlTextWriter::EndElement() {
  CXmlWriterContext* context = GetContext();
  assert(context != nullptr && "m_pContext != 0");
  const WStringView tagEnd(m_tagNames.data() + context->nameStart, m_tagNamesEnd - context->nameStart);
  const WStringView lineEnd = GetLineEnd();
  const WStringView indent = GetIndent(context->childCount != 0 ? context->depth : 0);
  {
    MarkupRun run(*m_pStream, indent.size() + tagEnd.size() + lineEnd.size() + 2);
    if (context->bInStartTag) {
      (run << u'/' << u'>').Put(lineEnd);
    } else {
      (run.CopyOwn(indent) << u'<' << u'/').CopyOwn(tagEnd);
    }
  }
  m_tagNamesEnd = context->nameStart;
  PopContext();
  FlushIfDue();
}

void CXmlTextWriter::WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType) {
  CheckInStartTag();
  WStringView alias;
  if (!ns.empty()) {
    CXmlWriterContext& context = *GetContext();
    const WString* known = context.GetNamespaceMapValue(ns);
    alias = known != nullptr ? *known : context.AddGeneratedAlias(ns);
    if (known == nullptr) WriteDeclaration(u" xmlns:", alias, ns);
  }
  {
    MarkupRun run(*m_pStream, alias.size() + name.size() + 2);
    run << u' ';
    if (!alias.empty()) run << alias << u':';
    run << name;
  }
  WriteEscaped(*m_pStream, u"=\"", value, u"\"", kEscapeAttribute);
  FlushIfDue();
}

void CXmlTextWriter::WriteXsiType(WStringView ns, WStringView typeName, ItemType type) {
  CheckInStartTag();
  CXmlWriterContext& context = *GetContext();
  if (ns.empty() || AreSame(ns, context.GetDefaultNamespace()))
    return WriteAttribute(u"type", kXsiNamespace, typeName, type);
  const WString* alias = context.GetNamespaceMapValue(ns);
  if (alias == nullptr) {
    alias = &context.AddGeneratedAlias(ns);
    WriteDeclaration(u" xmlns:", *alias, ns);
    // Deliberate: with the one that begins the attribute, two blanks follow a declaration.
    m_pStream->Write(u' ');
  }
  WriteAttribute(u"type", kXsiNamespace, *alias + u':' + WString(typeName), type);
}

void CXmlTextWriter::WriteXsiNil() { WriteAttribute(u"nil", kXsiNamespace, u"true", ItemType_boolean); }

// In one go, without opening a context: what is not plain takes the long way.
void CXmlTextWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  const CXmlWriterContext* const parent = GetContext();
  const bool isPlain = parent != nullptr && !text.empty() && text.size() <= kShortText && !IsSectionStart(text);
  const bool hasPrefix = isPlain && !ns.empty() && !AreSame(ns, parent->GetDefaultNamespace());
  const WString* const alias = hasPrefix ? parent->GetNamespaceMapValue(ns) : nullptr;
  if (!isPlain || (hasPrefix && alias == nullptr)) return CXmlWriter::WriteTextElement(name, ns, text, type);
  const WStringView prefix = alias == nullptr ? WStringView() : *alias;
  const WStringView lineEnd = GetLineEnd();
  const WStringView indent = GetIndent(parent->depth + 1);
  const bool closesTag = CountChild();
  std::size_t copied;
  {
    MarkupRun run(*m_pStream, 2 * (lineEnd.size() + prefix.size() + name.size()) + indent.size() + text.size() + 8);
    if (closesTag) (run << u'>').Put(lineEnd);
    (run.CopyOwn(indent) << u'<').PutName(prefix, name) << u'>';
    copied = run.PutText(text, *m_textRules);
    if (copied == text.size()) ((run << u'<' << u'/').PutName(prefix, name) << u'>').Put(lineEnd);
  }
  if (copied != text.size()) {
    WriteEscaped(*m_pStream, {}, text.substr(copied), {}, *m_textRules);
    WriteEndTag(prefix, name);
  }
  FlushIfDue();
}

void CXmlTextWriter::WriteEndTag(WStringView prefix, WStringView name) {
  const WStringView lineEnd = GetLineEnd();
  MarkupRun run(*m_pStream, prefix.size() + name.size() + lineEnd.size() + 4);
  ((run << u'<' << u'/').PutName(prefix, name) << u'>').Put(lineEnd);
}

void CXmlTextWriter::GrowIndents(std::size_t length) {
  const std::size_t wanted = 2 * length + kRoomySlack;
  m_indents.clear();
  while (!m_strIndent.empty() && m_indents.size() < wanted) m_indents += m_strIndent;
  m_indents.resize(std::max(m_indents.size(), wanted));
}

}  // namespace OvXmlLib16
