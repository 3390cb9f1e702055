#include "ovxmllib/document/XmlTextWriter.h"

#include <algorithm>
#include <cassert>
#include <type_traits>
#include <utility>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/MarkupRun.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriterContext.h"

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kFlushThreshold = 4096;  // code units

constexpr WStringView kSectionStart = u"<![CDATA[";
constexpr WStringView kSectionEnd = u"]]>";

bool IsSectionStart(WStringView text) { return text[0] == u'<' && text.starts_with(kSectionStart); }

}  // namespace

inline WStringView CXmlTextWriter::GetLineEnd() const noexcept {
  return m_bFormatted ? WStringView(m_strEOL) : WStringView();
}

void CXmlTextWriter::SetTagEnd() {
  m_tagEnd.Set(!m_bFormatted ? u">" : m_eolType == EOLType_CRLF ? u">\r\n" : u">\n", {});
}

template <class Unit>
std::basic_string_view<Unit> CXmlTextWriter::GetTagEnd() {
  return m_tagEnd.Get<Unit>(0);
}

template <class Unit>
std::basic_string_view<Unit> CXmlTextWriter::GetIndent(int depth) {
  return m_indentation.Get<Unit>(m_bFormatted ? depth : -1);
}

template <class Unit>
std::basic_string<Unit>& CXmlTextWriter::GetEndTags() noexcept {
  if constexpr (std::is_same_v<Unit, char>) {
    return m_utf8EndTags;
  } else {
    return m_endTags;
  }
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
  SetTagEnd();
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
  SetTagEnd();
}

void CXmlTextWriter::Write(WStringView text) { WriteUnescaped(*m_pStream, text); }

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
  constexpr std::size_t kLongest = 48;
  const XmlEncoding encoding = m_pStream->GetEncoding();
  const WStringView declared = encoding == XmlEncoding_UTF8    ? u" encoding=\"UTF-8\""
                               : encoding == XmlEncoding_UTF16 ? u" encoding=\"UTF-16\""
                                                               : u"";
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    MarkupRun<Unit> run(*m_pStream, kLongest, 0);
    run.PutName(WStringView(u"<?xml version=\"1.0\"")).PutName(declared).Put(u"?>").Put(m_strEOL);
  });
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
  Write(u">");
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

void CXmlTextWriter::StartElement(WStringView name, WStringView ns) { BeginElement(name, ns); }

void CXmlTextWriter::StartPrepared(const PreparedName& name) { BeginElement(name, name.GetNamespace()); }

template <class Name>
void CXmlTextWriter::BeginElement(const Name& name, WStringView ns) {
  const bool isRoot = GetContext() == nullptr;
  const bool closesTag = !isRoot && CountChild();
  CXmlWriterContext& context = PushContext();
  const bool hasPrefix = !ns.empty() && !context.GetScope().IsDefault(NamespaceKey(name, ns));
  const WString* alias = hasPrefix ? context.GetNamespaceMapValue(ns) : nullptr;
  const bool declares = hasPrefix && alias == nullptr;
  if (declares) alias = &context.AddGeneratedAlias(ns);
  const WStringView prefix = alias == nullptr ? WStringView() : *alias;
  InFormOf(*m_pStream, [&]<class Unit>(Unit) { PutStartTag<Unit>(context, closesTag, prefix, name); });
  if (declares) WriteDeclaration(u" xmlns:", *alias, ns);
  if (isRoot) DeclareDocumentScope();
  FlushIfDue();
}

template <class Unit, class Name>
void CXmlTextWriter::PutStartTag(CXmlWriterContext& context, bool closesTag, WStringView prefix, const Name& name) {
  const auto tagEnd = GetTagEnd<Unit>();
  const auto indent = GetIndent<Unit>(context.depth);
  {
    MarkupRun<Unit> run(*m_pStream, tagEnd.size() + indent.size() + prefix.size() + TextOf(name).size() + 2, 0);
    if (closesTag) run.PutKept(tagEnd);
    (run.PutKept(indent) << '<').PutName(prefix, name);
  }
  KeepEndTag<Unit>(context, prefix, name);
}

// Keeps the qualified name for the end tag, with what ends the tag behind it: whatever happens to the scope in between,
// the two are the same.
template <class Unit, class Name>
void CXmlTextWriter::KeepEndTag(CXmlWriterContext& context, WStringView prefix, const Name& name) {
  const auto tagEnd = GetTagEnd<Unit>();
  std::basic_string<Unit>& kept = GetEndTags<Unit>();
  const std::size_t names = unicode::kMaxUtf8PerUnit * (prefix.size() + TextOf(name).size());
  const std::size_t bound = m_endTagsLength + names + tagEnd.size() + 1 + kRoomySlack;
  if (bound > kept.size()) kept.resize(2 * bound);
  MarkupText<Unit> end(kept.data() + m_endTagsLength);
  end.PutName(prefix, name).PutKept(tagEnd);
  context.nameStart = m_endTagsLength;
  m_endTagsLength = static_cast<std::size_t>(end.GetEnd() - kept.data());
}

void CXmlTextWriter::WriteDeclaration(WStringView start, WStringView alias, WStringView ns) {
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    MarkupRun<Unit>(*m_pStream, start.size() + alias.size(), 0).Put(start).PutName(alias);
  });
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
  assert(GetContext() != nullptr && "m_pContext != 0");
  InFormOf(*m_pStream, [&]<class Unit>(Unit) { PutEndTag<Unit>(*GetContext()); });
  m_endTagsLength = GetContext()->nameStart;
  PopContext();
  FlushIfDue();
}

template <class Unit>
void CXmlTextWriter::PutEndTag(const CXmlWriterContext& context) {
  const auto name =
      std::basic_string_view<Unit>(GetEndTags<Unit>()).substr(context.nameStart, m_endTagsLength - context.nameStart);
  const auto tagEnd = GetTagEnd<Unit>();
  const auto indent = GetIndent<Unit>(context.childCount != 0 ? context.depth : 0);
  MarkupRun<Unit> run(*m_pStream, indent.size() + name.size() + tagEnd.size() + 2, 0);
  if (context.bInStartTag) {
    (run << '/').PutKept(tagEnd);
  } else {
    (run.PutKept(indent) << '<' << '/').PutKept(name);
  }
}

void CXmlTextWriter::WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType) {
  PutAttribute(name, ns, value);
}

void CXmlTextWriter::WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType) {
  PutAttribute(name, name.GetNamespace(), value);
}

template <class Name>
void CXmlTextWriter::PutAttribute(const Name& name, WStringView ns, WStringView value) {
  CheckInStartTag();
  WStringView alias;
  if (!ns.empty()) {
    CXmlWriterContext& context = *GetContext();
    const WString* known = context.GetNamespaceMapValue(ns);
    alias = known != nullptr ? *known : context.AddGeneratedAlias(ns);
    if (known == nullptr) WriteDeclaration(u" xmlns:", alias, ns);
  }
  const bool isShort = value.size() <= kMostInRun;
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    MarkupRun<Unit> run(*m_pStream, alias.size() + TextOf(name).size() + 5, isShort ? value.size() : 0);
    (run << ' ').PutName(alias, name);
    if (isShort) (run << '=' << '"').PutText(value, kEscapeAttribute) << '"';
  });
  if (!isShort) WriteEscaped(*m_pStream, u"=\"", value, u"\"", kEscapeAttribute);
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
    Write(u" ");
  }
  WriteAttribute(u"type", kXsiNamespace, *alias + u':' + WString(typeName), type);
}

void CXmlTextWriter::WriteXsiNil() { WriteAttribute(u"nil", kXsiNamespace, u"true", ItemType_boolean); }

void CXmlTextWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, ns, text)) CXmlWriter::WriteTextElement(name, ns, text, type);
}

void CXmlTextWriter::WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, name.GetNamespace(), text)) {
    CXmlWriter::WriteTextElement(name.GetLocalName(), name.GetNamespace(), text, type);
  }
}

// Without opening a context. False, with nothing written, for what is not plain, which has to take the long way.
template <class Name>
bool CXmlTextWriter::WriteInOneGo(const Name& name, WStringView ns, WStringView text) {
  const CXmlWriterContext* const parent = GetContext();
  if (parent == nullptr || text.empty() || text.size() > kMostInRun || IsSectionStart(text)) return false;
  const bool hasPrefix = !ns.empty() && !parent->GetScope().IsDefault(NamespaceKey(name, ns));
  const WString* const alias = hasPrefix ? parent->GetNamespaceMapValue(ns) : nullptr;
  if (hasPrefix && alias == nullptr) return false;
  const WStringView prefix = alias == nullptr ? WStringView() : *alias;
  InFormOf(*m_pStream, [&]<class Unit>(Unit) { PutWholeElement<Unit>(prefix, name, text); });
  FlushIfDue();
  return true;
}

// Inline: most of what is written comes by here, and its arguments are many.
template <class Unit, class Name>
[[gnu::always_inline]] inline void CXmlTextWriter::PutWholeElement(WStringView prefix, const Name& name,
                                                                   WStringView text) {
  const auto tagEnd = GetTagEnd<Unit>();
  const auto indent = GetIndent<Unit>(GetContext()->depth + 1);
  const bool closesTag = CountChild();
  const std::size_t markup = 2 * (tagEnd.size() + prefix.size() + TextOf(name).size()) + indent.size() + 6;
  MarkupRun<Unit> run(*m_pStream, markup, text.size());
  if (closesTag) run.PutKept(tagEnd);
  ((run.PutKept(indent) << '<').PutName(prefix, name) << '>').PutText(text, *m_textRules);
  (run << '<' << '/').PutName(prefix, name).PutKept(tagEnd);
}

}  // namespace OvXmlLib16
