#include "ovxmllib/json/JsonTextWriter.h"

#include <cassert>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriterContext.h"
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

// The value of a member, or nothing yet.
struct CJsonTextWriter::Value {
  WStringView text = {};
  enum { None, Bare, Quoted } form = None;
};

// What stands between two members: the end of a line and the indentation of the next; nothing if not formatted.
template <class Unit>
std::basic_string_view<Unit> CJsonTextWriter::LineStart(int depth) {
  return m_lineStarts.Get<Unit>(m_bFormatted ? depth : -1);
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

void CJsonTextWriter::SetIndentChars(WStringView indent) { m_lineStarts.Set(m_strEOL, indent); }

void CJsonTextWriter::SetEOLType(EOLType eol) {
  if (eol != EOLType_CRLF && eol != EOLType_LF) throw COvException(u"Invalid EOL type.");
  m_strEOL = eol == EOLType_CRLF ? u"\r\n" : u"\n";
  m_eolType = eol;
  m_lineStarts.Set(m_strEOL, GetIndentChars());
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
  WriteOpening('{', 0);
  FlushIfDue();
}

void CJsonTextWriter::WriteDocumentEnd() { WriteClosing('}', 0); }

void CJsonTextWriter::WriteComment(WStringView text) {
  WriteEscaped(*m_pStream, u"/* ", text, u" */", EscapeRules());
  // Deliberate: the line end is written also when not formatted.
  WriteUnescaped(*m_pStream, m_strEOL);
  FlushIfDue();
}

void CJsonTextWriter::StartElement(WStringView name, WStringView ns) { BeginElement(name, ns); }

void CJsonTextWriter::StartPrepared(const PreparedName& name) { BeginElement(name, name.GetNamespace()); }

template <class Name>
void CJsonTextWriter::BeginElement(const Name& name, WStringView ns) {
  CXmlWriterContext* const parent = GetContext();
  const bool isRoot = parent == nullptr;
  const bool hasName = isRoot || !IsNextItem(*parent, TextOf(name), ns);
  if (!isRoot) {
    CloseArrayIfEnded(*parent);
    OpenArrayIfDue();
  }
  CXmlWriterContext& context = PushContext();
  const bool isQualified = hasName && IsFull() && !ns.empty() && !context.GetScope().IsDefault(NamespaceKey(name, ns));
  const WString* alias = isQualified ? context.GetNamespaceMapValue(ns) : nullptr;
  const bool declares = isQualified && alias == nullptr;
  if (declares && !isRoot) ThrowUnknownNamespace(TextOf(name));
  if (declares) alias = &context.AddGeneratedAlias(ns);
  hasName ? PutMember({}, alias == nullptr ? WStringView() : *alias, name, {}) : BeginItem();
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

// Writes a brace, a bracket or a comma, and what stands between it and what follows.
void CJsonTextWriter::WriteOpening(char mark, int depth) {
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    const auto line = LineStart<Unit>(depth);
    (MarkupRun<Unit>(*m_pStream, line.size() + 1, 0) << mark).PutKept(line);
  });
}

// Writes a brace or a bracket behind what stands between it and what precedes.
void CJsonTextWriter::WriteClosing(char mark, int depth) {
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    const auto line = LineStart<Unit>(depth);
    MarkupRun<Unit>(*m_pStream, line.size() + 1, 0).PutKept(line) << mark;
  });
}

// Writes the separator, `{` or `,`, a new line, the name and `: `, and the value.
template <class Name>
void CJsonTextWriter::PutMember(WStringView mark, WStringView prefix, const Name& name, const Value& value) {
  InFormOf(*m_pStream, [&]<class Unit>(Unit) {
    auto line = LineStart<Unit>(m_depth + 1);
    // The document has begun with a line end.
    if (m_depth == 0 && !line.empty()) line.remove_prefix(m_strEOL.size());
    const std::size_t names = mark.size() + prefix.size() + TextOf(name).size();
    MarkupRun<Unit> run(*m_pStream, line.size() + names + 8, value.text.size());
    if (m_depth != 0) run << (m_bValuePending ? '{' : ',');
    (run.PutKept(line) << '"').Put(mark).PutName(prefix, name) << '"' << ':' << ' ';
    if (value.form == Value::Bare) run.PutName(value.text);
    if (value.form == Value::Quoted) (run << '"').PutText(value.text, EscapeRules()) << '"';
  });
}

template <class Name>
inline void CJsonTextWriter::WriteMember(WStringView mark, WStringView prefix, const Name& name, WStringView text,
                                         ItemType type) {
  if (text.size() <= kMostInRun) {
    return PutMember(mark, prefix, name, {text, IsBareType(type) ? Value::Bare : Value::Quoted});
  }
  PutMember(mark, prefix, name, {});
  WriteValue(text, type);
}

// Writes what stands ahead of an item of an array that has items.
void CJsonTextWriter::BeginItem() { WriteOpening(',', m_depth + 1); }

// Ahead of the first thing behind an element's name: begins the array that the element is the first item of, if it is.
void CJsonTextWriter::OpenArrayIfDue() {
  CXmlWriterContext* const around = GetContext()->pParent;
  if (!m_bValuePending || around == nullptr || around->arrayState != ArrayRequested) return;
  around->arrayState = ArrayOpen;
  m_arrays[static_cast<std::size_t>(around->depth)].isOpen = true;
  WriteOpening('[', ++m_depth);
}

// A second collection directly behind the first has replaced the sign that the first has ended.
void CJsonTextWriter::CloseArrayIfEnded(CXmlWriterContext& context) {
  if (context.arrayState != ArrayEnded && context.arrayState != ArrayRequested) return;
  if (context.arrayState == ArrayEnded) context.arrayState = ArrayNone;
  Array& array = m_arrays[static_cast<std::size_t>(context.depth)];
  if (!std::exchange(array.isOpen, false)) return;
  WriteClosing(']', m_depth--);
}

// The alias that a name in the namespace is written with.
const WString& CJsonTextWriter::RequireAlias(WStringView ns, WStringView name) const {
  const WString* const alias = GetContext()->GetNamespaceMapValue(ns);
  if (alias == nullptr) ThrowUnknownNamespace(name);
  return *alias;
}

void CJsonTextWriter::WriteDeclaration(WStringView alias, WStringView uri) {
  alias.empty() ? WriteMember({}, {}, WStringView(u"@xmlns"), uri, ItemType_string)
                : WriteMember({}, u"@xmlns", alias, uri, ItemType_string);
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
    text.empty() ? WriteUnescaped(*m_pStream, u"null") : WriteValue(text, type);
    m_bValueWritten = true;
  } else if (!text.empty()) {
    CloseArrayIfEnded(*GetContext());
    WriteMember({}, {}, WStringView(m_roundTrip == RoundTripNone ? u"" : u"#text"), text, type);
  }
}

void CJsonTextWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, ns, text, type)) CXmlWriter::WriteTextElement(name, ns, text, type);
}

void CJsonTextWriter::WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, name.GetNamespace(), text, type)) {
    CXmlWriter::WriteTextElement(name.GetLocalName(), name.GetNamespace(), text, type);
  }
}

// Without opening a context. False, with nothing written, for what may begin or go on with an array.
template <class Name>
bool CJsonTextWriter::WriteInOneGo(const Name& name, WStringView ns, WStringView text, ItemType type) {
  CXmlWriterContext* const parent = GetContext();
  if (parent == nullptr || text.empty() || parent->arrayState == ArrayRequested || parent->arrayState == ArrayOpen) {
    return false;
  }
  const bool isQualified = IsFull() && !ns.empty() && !parent->GetScope().IsDefault(NamespaceKey(name, ns));
  const WStringView alias = isQualified ? WStringView(RequireAlias(ns, TextOf(name))) : WStringView();
  CloseArrayIfEnded(*parent);
  OpenArrayIfDue();
  WriteMember({}, alias, name, text, type);
  m_bValuePending = false;
  FlushIfDue();
  return true;
}

void CJsonTextWriter::WriteValue(WStringView text, ItemType type) {
  if (IsBareType(type)) return WriteUnescaped(*m_pStream, text);
  WriteEscaped(*m_pStream, u"\"", text, u"\"", EscapeRules());
}

void CJsonTextWriter::WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) {
  PutAttribute(name, ns, value, type);
}

void CJsonTextWriter::WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type) {
  PutAttribute(name, name.GetNamespace(), value, type);
}

template <class Name>
void CJsonTextWriter::PutAttribute(const Name& name, WStringView ns, WStringView value, ItemType type) {
  assert(GetContext() != nullptr && "m_pContext != 0");
  const WStringView alias = IsFull() && !ns.empty() ? WStringView(RequireAlias(ns, TextOf(name))) : WStringView();
  OpenArrayIfDue();
  WriteMember(m_roundTrip == RoundTripNone ? u"" : u"@", alias, name, value, type);
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
    WriteClosing('}', m_depth);
  }
  PopContext();
  --m_depth;
  m_bValuePending = m_bValueWritten = false;
}

}  // namespace OvXmlLib16
