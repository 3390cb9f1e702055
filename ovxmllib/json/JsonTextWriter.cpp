#include "ovxmllib/json/JsonTextWriter.h"

#include <cassert>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriterContext.h"
#include "ovxmllib/foundation/UnitCopy.h"
#include "ovxmllib/json/JsonEscape.h"

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kFlushThreshold = 4096;  // code units

enum ArrayState : int { ArrayNone = 0, ArrayRequested = 1, ArrayOpen = 2, ArrayEnded = 3 };

// Whether values of a type go out without quotes.
constexpr bool IsBareType(ItemType type) noexcept {
  return (type >= ItemType_i1 && type <= ItemType_r8) || (type >= ItemType_boolean && type <= ItemType_integer);
}

[[noreturn]] void ThrowUnknownNamespace(WStringView name) {
  throw COvException(FormatString(u"Unknown Namespace: %s.", name));
}

}  // namespace

// What stands between two members: the end of a line and the indentation of the next; nothing if not formatted.
inline WStringView CJsonTextWriter::LineStart(int depth) {
  const std::size_t length =
      m_bFormatted ? m_strEOL.size() + static_cast<std::size_t>(depth) * m_strIndent.size() : std::size_t{0};
  if (m_lineStarts.size() < length + kRoomySlack) GrowLineStarts(length);
  return WStringView(m_lineStarts).substr(0, length);
}

inline void CJsonTextWriter::FlushIfDue() {
  if (m_pStream->GetBufferedLength() >= kFlushThreshold) m_pStream->Flush();
}

CJsonTextWriter::CJsonTextWriter(CTextStream* stream) : CXmlWriter(Record()), m_pStream(stream) {}

CInstanceMonitor::ClassType& CJsonTextWriter::Record() {
  static ClassType& record = FindClass(u"CJsonTextWriter");
  return record;
}

void CJsonTextWriter::SetFormatted(bool formatted) {
  assert(GetContext() == nullptr && "m_pContext == 0");
  m_bFormatted = formatted;
}

void CJsonTextWriter::SetIndentChars(WStringView indent) {
  m_strIndent = indent;
  m_lineStarts.clear();
}

void CJsonTextWriter::SetEOLType(EOLType eol) {
  if (eol != EOLType_CRLF && eol != EOLType_LF) throw COvException(u"Invalid EOL type.");
  m_strEOL = eol == EOLType_CRLF ? u"\r\n" : u"\n";
  m_eolType = eol;
  m_lineStarts.clear();
}

void CJsonTextWriter::GrowLineStarts(std::size_t length) {
  m_lineStarts = m_strEOL;
  while (!m_strIndent.empty() && m_lineStarts.size() < 2 * length) m_lineStarts += m_strIndent;
  m_lineStarts.resize(m_lineStarts.size() + kRoomySlack);
}

void CJsonTextWriter::Open() {
  CXmlWriter::Open();
  m_pStream->Open();
}

void CJsonTextWriter::Close() {
  m_pStream->Close();
  CXmlWriter::Close();
}

void CJsonTextWriter::WriteDocumentStart() {
  m_pStream->Write(u'{');
  m_pStream->Write(LineStart(0));
  FlushIfDue();
}

void CJsonTextWriter::WriteDocumentEnd() {
  m_pStream->Write(LineStart(0));
  m_pStream->Write(u'}');
}

void CJsonTextWriter::WriteComment(WStringView text) {
  WriteJsonEscaped(*m_pStream, u"/* ", text, u" */", m_strEOL);
  // Deliberate: the line end is written also when not formatted.
  m_pStream->Write(m_strEOL);
  FlushIfDue();
}

void CJsonTextWriter::StartElement(WStringView name, WStringView ns) {
  CXmlWriterContext* const parent = GetContext();
  const bool isRoot = parent == nullptr;
  const bool hasName = isRoot || !IsNextItem(*parent, name, ns);
  if (!isRoot) {
    CloseArrayIfEnded(*parent);
    OpenArrayIfDue();
  }
  CXmlWriterContext& context = PushContext();
  const bool isQualified = hasName && IsFull() && !ns.empty() && !AreSame(ns, context.GetDefaultNamespace());
  const WString* alias = isQualified ? context.GetNamespaceMapValue(ns) : nullptr;
  const bool declares = isQualified && alias == nullptr;
  if (declares && !isRoot) ThrowUnknownNamespace(name);
  if (declares) alias = &context.AddGeneratedAlias(ns);
  hasName ? BeginMember({}, alias == nullptr ? WStringView() : *alias, name) : BeginItem();
  PushElement();
  if (declares) WriteDeclaration(*alias, ns);
  if (isRoot && IsFull()) DeclareDocumentScope();
  FlushIfDue();
}

// Whether an element is one more item of the array that is open, if any. Decided: one of another name ends the array
// and begins its own, see docs/decisions.md.
bool CJsonTextWriter::IsNextItem(CXmlWriterContext& parent, WStringView name, WStringView ns) {
  if (parent.arrayState != ArrayRequested && parent.arrayState != ArrayOpen) return false;
  Array& array = m_arrays[static_cast<std::size_t>(parent.depth)];
  if (parent.arrayState == ArrayOpen) {
    const bool isSameNamespace = !IsFull() || (ns.empty() ? array.ns.empty() : AreSame(array.ns, ns));
    if (isSameNamespace && AreSame(array.name, name)) return true;
    parent.arrayState = ArrayRequested;
  }
  array.name = name;
  array.ns = ns;
  return false;
}

// Makes the element that was begun the open one.
void CJsonTextWriter::PushElement() {
  const auto depth = static_cast<std::size_t>(GetContext()->depth);
  if (m_arrays.size() <= depth) m_arrays.resize(depth + 1);
  m_arrays[depth].isOpen = false;
  ++m_depth;
  m_bValuePending = true;
}

// Writes what stands ahead of a member's value, from the separator on: `{` or `,`, a new line, the name and `: `.
void CJsonTextWriter::BeginMember(WStringView mark, WStringView prefix, WStringView name) {
  const WStringView line = LineStart(m_depth + 1);
  WChar* out = m_pStream->Reserve(line.size() + mark.size() + prefix.size() + name.size() + 6 + kRoomySlack);
  if (m_depth == 0) {
    // The document has begun with a line end.
    out = CopyUnits(out, line.empty() ? line : line.substr(m_strEOL.size()));
  } else {
    *out++ = m_bValuePending ? u'{' : u',';
    out = CopyRoomy(out, line);
  }
  *out++ = u'"';
  out = CopyUnits(out, mark);
  if (!prefix.empty()) {
    out = CopyUnits(out, prefix);
    *out++ = u':';
  }
  out = CopyUnits(out, name);
  m_pStream->Commit(PutUnits(out, u"\": "));
}

// Writes what stands ahead of an item of an array that has items.
void CJsonTextWriter::BeginItem() {
  m_pStream->Write(u',');
  m_pStream->Write(LineStart(m_depth + 1));
}

// Ahead of the first thing behind an element's name: begins the array that the element is the first item of, if it is.
void CJsonTextWriter::OpenArrayIfDue() {
  CXmlWriterContext* const around = GetContext()->pParent;
  if (!m_bValuePending || around == nullptr || around->arrayState != ArrayRequested) return;
  around->arrayState = ArrayOpen;
  m_arrays[static_cast<std::size_t>(around->depth)].isOpen = true;
  ++m_depth;
  m_pStream->Write(u'[');
  m_pStream->Write(LineStart(m_depth));
}

// A second collection directly behind the first has replaced the sign that the first has ended.
void CJsonTextWriter::CloseArrayIfEnded(CXmlWriterContext& context) {
  if (context.arrayState != ArrayEnded && context.arrayState != ArrayRequested) return;
  if (context.arrayState == ArrayEnded) context.arrayState = ArrayNone;
  Array& array = m_arrays[static_cast<std::size_t>(context.depth)];
  if (!std::exchange(array.isOpen, false)) return;
  m_pStream->Write(LineStart(m_depth));
  --m_depth;
  m_pStream->Write(u']');
}

// The alias that a name in the namespace is written with.
const WString& CJsonTextWriter::RequireAlias(WStringView ns, WStringView name) const {
  const WString* const alias = GetContext()->GetNamespaceMapValue(ns);
  if (alias == nullptr) ThrowUnknownNamespace(name);
  return *alias;
}

void CJsonTextWriter::WriteDeclaration(WStringView alias, WStringView uri) {
  alias.empty() ? BeginMember({}, {}, u"@xmlns") : BeginMember({}, u"@xmlns", alias);
  WriteJsonEscaped(*m_pStream, u"\"", uri, u"\"", m_strEOL);
  m_bValuePending = false;
}

void CJsonTextWriter::DeclareDocumentScope() {
  const NamespaceScope& scope = GetDocumentScope();
  if (!scope.GetDefaultNamespace().empty()) WriteDeclaration({}, scope.GetDefaultNamespace());
  for (const NamespaceScope::Entry& entry : scope.GetEntries()) {
    if (entry.alias.empty() || entry.uri.starts_with(kXmlNamespace)) continue;
    WriteDeclaration(entry.alias, entry.uri);
  }
}

void CJsonTextWriter::WriteText(WStringView text, ItemType type) {
  assert(GetContext() != nullptr && "m_pContext != 0");
  if (m_bValuePending) {
    OpenArrayIfDue();
    text.empty() ? m_pStream->Write(u"null") : WriteValue(text, type);
    m_bValueWritten = true;
  } else if (!text.empty()) {
    CloseArrayIfEnded(*GetContext());
    BeginMember({}, {}, m_roundTrip == RoundTripNone ? u"" : u"#text");
    WriteValue(text, type);
  }
}

// In one go, without opening a context: what may begin or go on with an array takes the long way.
void CJsonTextWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  CXmlWriterContext* const parent = GetContext();
  const bool isPlain =
      parent != nullptr && !text.empty() && parent->arrayState != ArrayRequested && parent->arrayState != ArrayOpen;
  if (!isPlain) return CXmlWriter::WriteTextElement(name, ns, text, type);
  const bool isQualified = IsFull() && !ns.empty() && !AreSame(ns, parent->GetDefaultNamespace());
  const WStringView alias = isQualified ? WStringView(RequireAlias(ns, name)) : WStringView();
  CloseArrayIfEnded(*parent);
  OpenArrayIfDue();
  BeginMember({}, alias, name);
  WriteValue(text, type);
  m_bValuePending = false;
  FlushIfDue();
}

void CJsonTextWriter::WriteValue(WStringView text, ItemType type) {
  if (IsBareType(type)) return m_pStream->Write(text);
  WriteJsonEscaped(*m_pStream, u"\"", text, u"\"", m_strEOL);
}

void CJsonTextWriter::WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) {
  assert(GetContext() != nullptr && "m_pContext != 0");
  const WStringView alias = IsFull() && !ns.empty() ? WStringView(RequireAlias(ns, name)) : WStringView();
  OpenArrayIfDue();
  BeginMember(m_roundTrip == RoundTripNone ? u"" : u"@", alias, name);
  WriteValue(value, type);
  m_bValuePending = false;
}

void CJsonTextWriter::WriteXsiType(WStringView ns, WStringView typeName, ItemType type) {
  assert(GetContext() != nullptr && "m_pContext != 0");
  if (!IsFull()) return;
  if (ns.empty() || AreSame(ns, GetContext()->GetDefaultNamespace())) {
    return WriteAttribute(u"type", kXsiNamespace, typeName, type);
  }
  WriteAttribute(u"type", kXsiNamespace, RequireAlias(ns, typeName) + u':' + WString(typeName), type);
}

void CJsonTextWriter::EndElement() {
  assert(GetContext() != nullptr && "m_pContext != 0");
  CloseArrayIfEnded(*GetContext());
  if (m_bValuePending && !m_bValueWritten) WriteText({}, ItemType_none);
  if (!m_bValuePending) {
    m_pStream->Write(LineStart(m_depth));
    m_pStream->Write(u'}');
  }
  PopContext();
  --m_depth;
  m_bValuePending = m_bValueWritten = false;
}

}  // namespace OvXmlLib16
