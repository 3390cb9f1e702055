#include "ovxmllib/document/ExpatReader.h"

#include <expat.h>

#include <algorithm>
#include <new>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/TagText.h"
#include "ovxmllib/document/XmlAttribute.h"

namespace OvXmlLib16 {

namespace {

// Expat copies what it is given into its own buffer, which a limit keeps small. Behind each piece but the last it goes
// over it once more to count lines, which costs a tenth of the parsing; so most documents are one piece.
constexpr std::size_t kPiece = 16 * 1024 * 1024;

constexpr std::size_t kMaxPiece = 1024 * 1024 * 1024;  // Expat counts in int

constexpr XML_Char kNamespaceSeparator = '|';

std::string_view ViewOf(const XML_Char* text) { return text == nullptr ? std::string_view() : std::string_view(text); }

}  // namespace

// Runs what a handler does. Expat may deliver a few more events after it was told to stop: they are passed over.
[[gnu::always_inline]] inline void CExpatReader::Guarded(auto&& action) noexcept {
  if (m_failure != nullptr) return;
  try {
    action();
  } catch (...) {
    m_failure = std::current_exception();
    XML_StopParser(m_parser, XML_FALSE);
  }
}

// Adds the place to what the tree's limits throw.
[[gnu::always_inline]] inline void CExpatReader::Limited(auto&& action) {
  try {
    action();
  } catch (COvException& exception) {
    SetPlaceOn(exception);
    throw;
  }
}

// What Expat calls. Each is the C border: nothing is thrown out of it.
struct CExpatReader::Handlers {
  static CExpatReader& Self(void* userData) noexcept { return *static_cast<CExpatReader*>(userData); }

  static void OnStartElement(void* userData, const XML_Char* name, const XML_Char** attributes) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] {
      self.Limited([&] {
        self.m_tree.StartElement(self.m_tree.InternName(ViewOf(name)));
        const XML_Char** const end = attributes + XML_GetSpecifiedAttributeCount(self.m_parser);
        for (; attributes != end; attributes += 2) {
          self.m_tree.AddAttribute(self.m_tree.InternName(ViewOf(attributes[0])), ViewOf(attributes[1]));
        }
        for (; *attributes != nullptr; attributes += 2) self.AddDefault(ViewOf(attributes[0]), ViewOf(attributes[1]));
      });
    });
  }

  // The application's callback runs in here: what it throws gets no place and stays what it is.
  static void OnEndElement(void* userData, const XML_Char*) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] { self.m_tree.EndElement(); });
  }

  static void OnCharacterData(void* userData, const XML_Char* text, int length) noexcept {
    Append(userData, {text, static_cast<std::size_t>(length)});
  }
  static void OnStartCData(void* userData) noexcept { Append(userData, "<![CDATA["); }
  static void OnEndCData(void* userData) noexcept { Append(userData, "]]>"); }

  static void OnStartNamespace(void* userData, const XML_Char* alias, const XML_Char* uri) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] { self.Limited([&] { self.m_tree.DeclareNamespace(ViewOf(alias), ViewOf(uri)); }); });
  }

  static void OnDoctype(void* userData, const XML_Char*, const XML_Char*, const XML_Char*, int) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] {
      self.Limited([] {
        throw COvException(u"The document has a DOCTYPE. CSerializationContext::SetAllowDoctype sets this limit.");
      });
    });
  }

  static void OnEntityDeclaration(void* userData, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                                  const XML_Char*, const XML_Char*, const XML_Char*) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] { self.Limited([&] { self.CountEntity(); }); });
  }

  // Decided: a reference that would leave a gap in the text is an error, see docs/decisions.md. Expat's own messages
  // say what is wrong.
  static int OnExternalEntity(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*) noexcept {
    return XML_STATUS_ERROR;
  }
  static void OnSkippedEntity(void* userData, const XML_Char*, int isParameterEntity) noexcept {
    if (isParameterEntity != 0) return;
    CExpatReader& self = Self(userData);
    self.Guarded([&] { self.ThrowParserError(XML_ERROR_UNDEFINED_ENTITY); });
  }

 private:
  static void Append(void* userData, std::string_view text) noexcept {
    CExpatReader& self = Self(userData);
    self.Guarded([&] { self.Limited([&] { self.m_tree.AppendText(text); }); });
  }
};

CExpatReader::CExpatReader(DocumentTree& tree, const CSerializationContext& context)
    : CInstanceMonitor(Record()), m_tree(tree), m_context(context), m_longTags(context.GetMaxAttributesPerElement()) {}

CExpatReader::~CExpatReader() {
  if (m_parser != nullptr) XML_ParserFree(m_parser);
}

CInstanceMonitor::ClassType& CExpatReader::Record() {
  static ClassType& record = FindClass(u"CExpatReader");
  return record;
}

void CExpatReader::Open() { Open(nullptr); }
void CExpatReader::OpenUtf16() { Open("UTF-16"); }

void CExpatReader::Open(const char* encoding) {
  const bool withNamespaces = m_context.GetSchemaType() != SchemaType_NoNamespaces;
  m_parser = withNamespaces ? XML_ParserCreateNS(encoding, kNamespaceSeparator) : XML_ParserCreate(encoding);
  if (m_parser == nullptr) throw std::bad_alloc();
  XML_SetUserData(m_parser, this);
  XML_SetElementHandler(m_parser, &Handlers::OnStartElement, &Handlers::OnEndElement);
  XML_SetCharacterDataHandler(m_parser, &Handlers::OnCharacterData);
  XML_SetStartNamespaceDeclHandler(m_parser, &Handlers::OnStartNamespace);
  XML_SetExternalEntityRefHandler(m_parser, &Handlers::OnExternalEntity);
  XML_SetSkippedEntityHandler(m_parser, &Handlers::OnSkippedEntity);
  XML_SetEntityDeclHandler(m_parser, &Handlers::OnEntityDeclaration);
  if (!m_context.GetStripCDATA()) {
    XML_SetCdataSectionHandler(m_parser, &Handlers::OnStartCData, &Handlers::OnEndCData);
  }
  if (!m_context.GetAllowDoctype()) XML_SetStartDoctypeDeclHandler(m_parser, &Handlers::OnDoctype);
}

void CExpatReader::Parse(const unsigned char* data, std::size_t length, bool isFinal) {
  NoteStart(data, length);
  do {
    const std::size_t whole = std::min(length, kPiece);
    const std::size_t piece = LooksForLongTags() ? std::min(m_longTags.Find(data, whole, length), kMaxPiece) : whole;
    const bool last = isFinal && piece == length;
    Check(XML_Parse(m_parser, reinterpret_cast<const char*>(data), static_cast<int>(piece), last) == XML_STATUS_OK);
    if (piece != whole) RefuseLongTag();
    data += piece;
    length -= piece;
  } while (length != 0);
}

unsigned char* CExpatReader::GetBuffer(std::size_t length) {
  void* buffer = XML_GetBuffer(m_parser, static_cast<int>(length));
  if (buffer == nullptr) throw std::bad_alloc();
  m_buffer = static_cast<unsigned char*>(buffer);
  return m_buffer;
}

void CExpatReader::ParseBuffer(std::size_t length, bool isFinal) {
  NoteStart(m_buffer, length);
  Check(XML_ParseBuffer(m_parser, static_cast<int>(length), isFinal) == XML_STATUS_OK);
  if (isFinal || !LooksForLongTags()) return;
  // What is unfinished is looked at each time that it has doubled.
  const std::size_t unfinished = Unfinished().size();
  if (unfinished < m_lookedAt) m_lookedAt = 0;
  if (unfinished < std::max(2 * m_lookedAt, m_longTags.ShortestTag())) return;
  m_lookedAt = unfinished;
  RefuseLongTag();
}

// The input of which the parser waits to see the end.
std::span<const unsigned char> CExpatReader::Unfinished() const noexcept {
  int offset = 0, size = 0;
  const char* const input = XML_GetInputContext(m_parser, &offset, &size);
  if (input == nullptr) return {};
  return {reinterpret_cast<const unsigned char*>(input) + offset, static_cast<std::size_t>(size - offset)};
}

void CExpatReader::RefuseLongTag() {
  const auto unfinished = Unfinished();
  if (!m_longTags.BeginsWithLongTag(unfinished.data(), unfinished.size())) return;
  Limited([&] { m_tree.ThrowTooManyAttributes(); });
}

// Adds an attribute that stands in the DOCTYPE alone. A few bytes of element may have many and long ones: what they
// come to is held against the input read so far, as Expat does it with entities, and with Expat's own figures.
void CExpatReader::AddDefault(std::string_view name, std::string_view value) {
  constexpr std::uint64_t kFreeBytes = 8 * 1024 * 1024;
  constexpr std::uint64_t kMaxFactor = 100;
  m_defaultedBytes += sizeof(CXmlAttribute) + value.size() * sizeof(WChar);
  const auto read = static_cast<std::uint64_t>(XML_GetCurrentByteIndex(m_parser));
  if (m_defaultedBytes > kFreeBytes && m_defaultedBytes / kMaxFactor > read) {
    throw COvException(u"The default values of attributes multiply the document more than a hundredfold.");
  }
  m_tree.AddAttribute(m_tree.InternName(name), value);
}

// Some forty times as many as the largest vocabularies have. A chain of a million, each made of the one before, takes
// the parser seconds and hundreds of megabytes.
void CExpatReader::CountEntity() {
  constexpr std::size_t kMaxEntities = 100'000;
  if (++m_entities > kMaxEntities) {
    throw COvException(FormatString(u"The document declares more than %d entities.", kMaxEntities));
  }
}

void CExpatReader::Check(bool succeeded) {
  if (succeeded) return;
  if (m_failure != nullptr) std::rethrow_exception(m_failure);
  ThrowParserError(XML_GetErrorCode(m_parser));
}

void CExpatReader::ThrowParserError(int error) {
  COvException exception(FormatString(u"%s at line %d", XML_ErrorString(static_cast<XML_Error>(error)),
                                      XML_GetCurrentLineNumber(m_parser)));
  SetPlaceOn(exception);
  throw exception;
}

void CExpatReader::SetPlaceOn(COvException& exception) const noexcept {
  const XML_Size line = XML_GetCurrentLineNumber(m_parser);
  const XML_Size charactersBefore = XML_GetCurrentColumnNumber(m_parser);
  const bool countsMark = line == 1 && charactersBefore > 0 && BeganWithByteOrderMark();
  TextPlace place{line, charactersBefore + (countsMark ? 0 : 1)};
  if (const std::size_t attribute = m_tree.GetAttributeToStopAt(); attribute != 0) MoveToAttribute(attribute, place);
  exception.SetPlace(place.line, place.column);
}

// From the start of the tag that is being parsed to one of its attributes. In other encodings than those that have
// ASCII in them, the place stays that of the tag.
void CExpatReader::MoveToAttribute(std::size_t number, TextPlace& place) const noexcept {
  const auto input = Unfinished();
  const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
  const bool skipsDeclarations = m_context.GetSchemaType() != SchemaType_NoNamespaces;
  place.MoveOver(text.substr(0, FindAttribute(text, number, skipsDeclarations)));
}

// Keeps the first bytes, however they come.
void CExpatReader::NoteStart(const unsigned char* data, std::size_t length) noexcept {
  while (m_startLength < m_start.size() && length > 0) {
    m_start[m_startLength++] = *data++;
    --length;
  }
  m_longTags.SetFormOf(m_start.data(), m_startLength);
}

// Expat counts the mark as a character of the first line; a reader of the message does not.
bool CExpatReader::BeganWithByteOrderMark() const noexcept {
  const std::string_view start(reinterpret_cast<const char*>(m_start.data()), m_startLength);
  return start == "\xEF\xBB\xBF" || start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF");
}

}  // namespace OvXmlLib16
