#include "ovxmllib/fastinfoset/FastInfosetWriter.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/MarkupRun.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlEscape.h"
#include "ovxmllib/document/XmlWriterContext.h"
#include "ovxmllib/fastinfoset/EncodedValues.h"
#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace octet = fastinfoset::octet;
using fastinfoset::CharacterForm;
using fastinfoset::PutNumber;

namespace {

// Names the vocabulary of an application that has not named it.
constexpr WStringView kDefaultVocabularyUri = u"urn:ovxmllib:fastinfoset:vocabulary";

// The types of EncodedCharacterString.
constexpr std::uint32_t kAsText = 0, kInAlphabet = 1, kByAlgorithm = 2;

// Longer texts are measured before room is made for them.
constexpr std::size_t kShortText = 4096;

std::size_t Utf8Room(WStringView text) noexcept {
  return text.size() <= kShortText ? unicode::kMaxUtf8PerUnit * text.size() : unicode::MeasureUtf8(text).written;
}

// The longest form of a length has four octets.
void CheckLength(std::size_t octets) {
  constexpr std::size_t kLongest = 0xFFFF'FFFF;
  if (octets > kLongest) throw COvException(u"Failed to write FastInfoset. A text is longer than 4 GiB.");
}

}  // namespace

CFastInfosetWriter::CFastInfosetWriter(const CFastInfosetContext* context, CBinaryStream* stream)
    : CXmlWriter(Record()),
      m_context(*context),
      m_vocabulary(context->GetVocabularyInForce()),
      m_out(*stream),
      m_index(m_vocabulary.GetIndex()) {}

CFastInfosetWriter::~CFastInfosetWriter() = default;

CInstanceMonitor::ClassType& CFastInfosetWriter::Record() {
  static ClassType& record = FindClass(u"CFastInfosetWriter");
  return record;
}

void CFastInfosetWriter::WriteDocumentStart(FInfoDecl declaration) {
  if (declaration >= FInfoDecl_Encoding && declaration <= FInfoDecl_V11NotStandalone) {
    const std::string_view text = fastinfoset::kDeclarations[declaration - 1];
    unsigned char* const out = m_out.Reserve(text.size());
    std::memcpy(out, text.data(), text.size());
    m_out.Commit(out + text.size());
  }
  for (const unsigned char byte : fastinfoset::kIdentification) m_out.Put(byte);
  if (!m_context.m_bUseGeneratedVocabulary) return m_out.Put(0);
  // An initial vocabulary, in it an external one and nothing else (C.2.5).
  for (const unsigned byte : {0x20u, 0x10u, 0x00u}) m_out.Put(byte);
  const WString& uri = m_context.m_strExternalVocabularyURI;
  WriteUtf8(fastinfoset::kLengthOnSecondBit, 0, uri.empty() ? kDefaultVocabularyUri : WStringView(uri),
            /*isName=*/true);
}

void CFastInfosetWriter::WriteDocumentEnd() {
  m_out.Put(std::exchange(m_terminatorDue, false) ? octet::kDoubleTerminator : octet::kTerminator);
  m_out.Flush();
}

void CFastInfosetWriter::Close() {
  m_out.Flush();
  CXmlWriter::Close();
}

void CFastInfosetWriter::WriteComment(WStringView) {}
void CFastInfosetWriter::WriteProcessingInstruction(WStringView) {}
void CFastInfosetWriter::WriteInlineSchema(WStringView) {}

// Ends the attributes of the open element, if it has any and is still at them.
void CFastInfosetWriter::CloseStartTag() {
  CXmlWriterContext& context = *GetContext();
  if (!std::exchange(context.bInStartTag, false)) return;
  m_out.LetGo();
  if (context.bAttributesWritten) m_out.Put(octet::kTerminator);
}

void CFastInfosetWriter::WriteDueTerminator() {
  if (std::exchange(m_terminatorDue, false)) m_out.Put(octet::kTerminator);
}

void CFastInfosetWriter::StartElement(WStringView name, WStringView ns) { BeginElement(name, ns); }

void CFastInfosetWriter::StartPrepared(const PreparedName& name) { BeginElement(name, name.GetNamespace()); }

// The first octet of an element (C.3.2) says whether attributes follow, so it is at hand until that is known.
template <class Name>
void CFastInfosetWriter::BeginElement(const Name& name, WStringView ns) {
  WriteDueTerminator();
  const bool isRoot = GetContext() == nullptr;
  if (!isRoot) {
    ++GetContext()->childCount;
    CloseStartTag();
  }
  CXmlWriterContext& context = PushContext();
  m_out.PutHeld(0);
  if (isRoot) WriteRootNamespaces();
  const bool hasPrefix = !ns.empty() && !context.GetScope().IsDefault(NamespaceKey(name, ns));
  WriteElementName(/*sharesOctet=*/!isRoot, name, ns, hasPrefix ? AliasOf(ns) : WStringView());
}

// The alias of a namespace, or a generated one; valid until the scope changes.
WStringView CFastInfosetWriter::AliasOf(WStringView ns) {
  CXmlWriterContext& context = *GetContext();
  const WString* known = context.GetNamespaceMapValue(ns);
  return known != nullptr ? *known : context.AddGeneratedAlias(ns);
}

// C.3.4. The XML namespace is always in the scope, so every root has this block, empty as it may be.
void CFastInfosetWriter::WriteRootNamespaces() {
  m_out.SetInHeld(octet::kNamespacesFollow);
  const NamespaceScope& scope = GetDocumentScope();
  const WString& defaultNamespace = scope.GetDefaultNamespace();
  if (!defaultNamespace.empty()) WriteNamespace(octet::kNamespaceFollows, {}, defaultNamespace);
  for (const NamespaceScope::Entry& entry : scope.GetEntries()) {
    if (entry.alias.empty() || entry.uri.starts_with(kXmlNamespace)) continue;
    WriteNamespace(octet::kPrefixFollows | octet::kNamespaceFollows, entry.alias, entry.uri);
  }
  m_out.Put(octet::kTerminator);
}

// C.12.
void CFastInfosetWriter::WriteNamespace(unsigned parts, WStringView alias, WStringView ns) {
  m_out.Put(octet::kNamespaceAttribute | parts);
  if (!alias.empty()) WriteIdentifyingString(m_index.prefixNames, alias);
  WriteIdentifyingString(m_index.namespaceNames, ns);
}

// QualifiedNameOrIndex on the third bit (C.18). The first octet of the name is that of the element unless namespace
// attributes stand between them.
template <class Name>
void CFastInfosetWriter::WriteElementName(bool sharesOctet, const Name& name, WStringView ns, WStringView prefix) {
  assert((prefix.empty() || !ns.empty()) && "!strNamespace.empty()");
  const std::uint32_t index = FindOrAdd(m_index.elementNames, name, ns, prefix);
  const unsigned literal = octet::kLiteralElementName | octet::PartsOf(prefix, ns);
  unsigned char octets[fastinfoset::kMaxNumberOctets];
  const unsigned char* end = octets + 1;
  octets[0] = static_cast<unsigned char>(literal);
  if (index != 0) end = PutNumber(fastinfoset::kIndexOnThirdBit, 0, index, octets);
  if (sharesOctet) {
    m_out.SetInHeld(octets[0]);
  } else {
    m_out.Put(octets[0]);
  }
  for (const unsigned char* at = octets + 1; at != end; ++at) m_out.Put(*at);
  if (index == 0) WriteNameParts(TextOf(name), ns, prefix);
}

// QualifiedNameOrIndex on the second bit (C.17).
template <class Name>
void CFastInfosetWriter::WriteAttributeName(const Name& name, WStringView ns, WStringView prefix) {
  const std::uint32_t index = FindOrAdd(m_index.attributeNames, name, ns, prefix);
  if (index != 0) {
    return m_out.Commit(
        PutNumber(fastinfoset::kIndexOnSecondBit, 0, index, m_out.Reserve(fastinfoset::kMaxNumberOctets)));
  }
  m_out.Put(octet::kLiteralAttributeName | octet::PartsOf(prefix, ns));
  WriteNameParts(TextOf(name), ns, prefix);
}

std::uint32_t CFastInfosetWriter::FindOrAdd(fastinfoset::NameIndex& names, WStringView name, WStringView ns,
                                            WStringView prefix) {
  return names.FindOrAdd(name, ns, prefix, m_pool);
}

std::uint32_t CFastInfosetWriter::FindOrAdd(fastinfoset::NameIndex& names, const PreparedName& name, WStringView,
                                            WStringView prefix) {
  return names.FindOrAdd(name, prefix, m_pool);
}

void CFastInfosetWriter::WriteNameParts(WStringView name, WStringView ns, WStringView prefix) {
  if (!prefix.empty()) WriteIdentifyingString(m_index.prefixNames, prefix);
  if (!ns.empty()) WriteIdentifyingString(m_index.namespaceNames, ns);
  WriteIdentifyingString(m_index.localNames, name);
}

// IdentifyingStringOrIndex on the first bit (C.13).
void CFastInfosetWriter::WriteIdentifyingString(fastinfoset::TextIndex& table, WStringView text) {
  if (text.empty()) throw COvInvalidValueException(u"Failed to write FastInfoset. A name has no characters.");
  const std::uint32_t index = table.FindOrAdd(text, m_pool);
  if (index == 0) return WriteUtf8(fastinfoset::kLengthOnSecondBit, 0, text, /*isName=*/true);
  m_out.Commit(
      PutNumber(fastinfoset::kIndexOnSecondBit, octet::kIndex, index, m_out.Reserve(fastinfoset::kMaxNumberOctets)));
}

void CFastInfosetWriter::WriteText(WStringView text, ItemType type) {
  assert(GetContext() != nullptr && "m_pContext != 0");
  CloseStartTag();
  if (text.empty()) return;
  WriteDueTerminator();
  WriteChunk(text, type);
}

void CFastInfosetWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, ns, text, type)) CXmlWriter::WriteTextElement(name, ns, text, type);
}

void CFastInfosetWriter::WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) {
  if (!WriteInOneGo(name, name.GetNamespace(), text, type)) {
    CXmlWriter::WriteTextElement(name.GetLocalName(), name.GetNamespace(), text, type);
  }
}

// Without opening a context. False, with nothing written, for what is not plain, which has to take the long way.
template <class Name>
bool CFastInfosetWriter::WriteInOneGo(const Name& name, WStringView ns, WStringView text, ItemType type) {
  CXmlWriterContext* const parent = GetContext();
  if (parent == nullptr || text.empty()) return false;
  const bool hasPrefix = !ns.empty() && !parent->GetScope().IsDefault(NamespaceKey(name, ns));
  const WString* const alias = hasPrefix ? parent->GetNamespaceMapValue(ns) : nullptr;
  if (hasPrefix && alias == nullptr) return false;
  WriteDueTerminator();
  ++parent->childCount;
  CloseStartTag();
  m_out.PutHeld(0);
  WriteElementName(/*sharesOctet=*/true, name, ns, alias == nullptr ? WStringView() : *alias);
  m_out.LetGo();
  WriteChunk(text, type);
  m_terminatorDue = true;
  return true;
}

// NonIdentifyingStringOrIndex on the third bit (C.15).
void CFastInfosetWriter::WriteChunk(WStringView text, ItemType type) {
  if (text.size() >= m_context.m_dwElementMaxAddLength) {
    return WriteString(fastinfoset::kStringOnFifthBit, octet::kChunk, text, type);
  }
  const std::uint32_t index = m_index.characterChunks.FindOrAdd(text, m_pool);
  if (index == 0) return WriteString(fastinfoset::kStringOnFifthBit, octet::kChunk | octet::kAddChunk, text, type);
  m_out.Commit(PutNumber(fastinfoset::kIndexOnFourthBit, octet::kChunkIndex, index,
                         m_out.Reserve(fastinfoset::kMaxNumberOctets)));
}

void CFastInfosetWriter::EndElement() {
  assert(GetContext() != nullptr && "m_pContext != 0");
  CloseStartTag();
  if (std::exchange(m_terminatorDue, !m_terminatorDue)) m_out.Put(octet::kDoubleTerminator);
  PopContext();
}

void CFastInfosetWriter::OpenAttributes() {
  CheckInStartTag();
  CXmlWriterContext& context = *GetContext();
  if (!std::exchange(context.bAttributesWritten, true)) m_out.SetInHeld(octet::kAttributesFollow);
}

void CFastInfosetWriter::WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) {
  PutAttribute(name, ns, value, type);
}

void CFastInfosetWriter::WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type) {
  PutAttribute(name, name.GetNamespace(), value, type);
}

template <class Name>
void CFastInfosetWriter::PutAttribute(const Name& name, WStringView ns, WStringView value, ItemType type) {
  OpenAttributes();
  WriteAttributeName(name, ns, ns.empty() ? WStringView() : AliasOf(ns));
  WriteAttributeValue(value, type);
}

// NonIdentifyingStringOrIndex on the first bit (C.14).
void CFastInfosetWriter::WriteAttributeValue(WStringView value, ItemType type) {
  if (value.empty()) {
    return m_out.Commit(PutNumber(fastinfoset::kIndexOrZeroOnSecondBit, octet::kIndex, 0, m_out.Reserve(1)));
  }
  if (value.size() >= m_context.m_dwAttributeMaxAddLength) {
    return WriteString(fastinfoset::kStringOnThirdBit, 0, value, type);
  }
  const std::uint32_t index = m_index.attributeValues.FindOrAdd(value, m_pool);
  if (index == 0) return WriteString(fastinfoset::kStringOnThirdBit, octet::kAddValue, value, type);
  m_out.Commit(PutNumber(fastinfoset::kIndexOrZeroOnSecondBit, octet::kIndex, index,
                         m_out.Reserve(fastinfoset::kMaxNumberOctets)));
}

void CFastInfosetWriter::WriteXsiType(WStringView ns, WStringView typeName, ItemType type) {
  CheckInStartTag();
  if (ns.empty() || AreSame(ns, GetContext()->GetDefaultNamespace())) {
    return WriteAttribute(u"type", kXsiNamespace, typeName, type);
  }
  m_typeName = AliasOf(ns);
  OpenAttributes();
  // Deliberate: the attribute's name has the prefix of the type's namespace, and its value has it too.
  WriteAttributeName(WStringView(u"type"), kXsiNamespace, m_typeName);
  (m_typeName += u':') += typeName;
  WriteAttributeValue(m_typeName, type);
}

void CFastInfosetWriter::WriteXsiNil() { WriteAttribute(u"nil", kXsiNamespace, u"true", ItemType_boolean); }

// EncodedCharacterString (C.19, C.20).
void CFastInfosetWriter::WriteString(const fastinfoset::StringForm& form, unsigned prefix, WStringView text,
                                     ItemType type) {
  const auto [kind, index] = m_context.GetEncoding(static_cast<std::uint32_t>(type));
  switch (kind) {
    case kAsText:
      if (m_context.GetDefaultStringEncoding() != 0) {
        throw COvException(u"Failed to write FastInfoset. Unsupported Feature UTF16BE in EncodedCharacterStringBit5.");
      }
      return WriteUtf8(*form.length, prefix, text, /*isName=*/false);
    case kInAlphabet:
      if (index < 1 || index > std::min(fastinfoset::kBuiltInAlphabets, m_vocabulary.m_restrictedAlphabets.size())) {
        throw COvException(FormatString(u"Failed to write FastInfoset. Invalid Restricted Alphabet value [%d]", index));
      }
      return WriteCompact(form, prefix, text, CharacterForm::Alphabet, index);
    case kByAlgorithm:
      if (index < fastinfoset::kHexadecimal || index > fastinfoset::kCData) {
        throw COvException(FormatString(u"Failed to write FastInfoset. Invalid Encoding Algorithm value [%d]", index));
      }
      return WriteCompact(form, prefix, text, CharacterForm::Algorithm, index);
    default:
      throw COvException(&form == &fastinfoset::kStringOnThirdBit
                             ? u"Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit5."
                             : u"Failed to write FastInfoset. Unknown encoding in EncodedCharacterStringBit7.");
  }
}

// The length stands ahead of the octets and is known behind them. Most texts are ASCII, for which the guess is right.
void CFastInfosetWriter::WriteUtf8(const fastinfoset::NumberForm& lengthForm, unsigned prefix, WStringView text,
                                   bool isName) {
  const std::size_t room = Utf8Room(text);
  CheckLength(room);
  unsigned char* const start = m_out.Reserve(fastinfoset::kMaxNumberOctets + room);
  unsigned char* const guessed = PutNumber(lengthForm, prefix, text.size(), start);
  char* const octets = reinterpret_cast<char*>(guessed);
  char* const end = isName ? plainrun::PutEscaped(octets, text, 0, text.size(), UnescapedRules())
                           : plainrun::PutEscaped(octets, text, 0, text.size(), CharacterRules());
  const auto written = static_cast<std::size_t>(end - octets);
  if (written == text.size()) return m_out.Commit(guessed + written);
  unsigned char length[fastinfoset::kMaxNumberOctets];
  const auto header = static_cast<std::size_t>(PutNumber(lengthForm, prefix, written, length) - length);
  std::memmove(start + header, guessed, written);
  std::memcpy(start, length, header);
  m_out.Commit(start + header + written);
}

void CFastInfosetWriter::WriteCompact(const fastinfoset::StringForm& form, unsigned prefix, WStringView text,
                                      CharacterForm characters, std::uint32_t index) {
  CheckLength(text.size());
  unsigned char* const start = m_out.Reserve(fastinfoset::kMaxStringHeader + fastinfoset::GetEncodedRoom(text.size()));
  unsigned char* const data = start + fastinfoset::kMaxStringHeader;
  const std::size_t length =
      characters == CharacterForm::Alphabet
          ? fastinfoset::EncodeAlphabet(m_vocabulary.m_restrictedAlphabets[index - 1], text, data)
          : fastinfoset::EncodeValue(index, text, data);
  // Decided: a value that has no octets is written as text, since there is no form for nothing; see docs/decisions.md.
  if (length == 0) return WriteUtf8(*form.length, prefix, text, /*isName=*/false);
  unsigned char* const end = fastinfoset::PutStringHeader(form, prefix, characters, index, length, start);
  std::memmove(end, data, length);
  m_out.Commit(end + length);
}

}  // namespace OvXmlLib16
