#include "ovxmllib/fastinfoset/FastInfosetReader.h"

#include <algorithm>
#include <cstring>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/fastinfoset/EncodedValues.h"
#include "ovxmllib/fastinfoset/RestrictedAlphabet.h"
#include "ovxmllib/fastinfoset/SkippedItems.h"
#include "ovxmllib/fastinfoset/TextSyntax.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/UnitLanes.h"
#include "ovxmllib/foundation/WidenAscii.h"

namespace OvXmlLib16 {

namespace octet = fastinfoset::octet;
using fastinfoset::CharacterForm;

namespace {

using Octets = std::span<const unsigned char>;

bool BeginsWith(Octets octets, const void* start, std::size_t length) noexcept {
  return octets.size() > length && std::memcmp(octets.data(), start, length) == 0;
}

// The position behind the identification, behind which an octet must stand; 0 where there is none.
std::size_t FindStart(Octets octets) noexcept {
  constexpr std::size_t kLength = sizeof fastinfoset::kIdentification;
  if (BeginsWith(octets, fastinfoset::kIdentification, kLength)) return kLength;
  for (const std::string_view declaration : fastinfoset::kDeclarations) {
    if (!BeginsWith(octets, declaration.data(), declaration.size())) continue;
    const Octets behind = octets.subspan(declaration.size());
    return BeginsWith(behind, fastinfoset::kIdentification, kLength) ? declaration.size() + kLength : 0;
  }
  return 0;
}

// Of well-formed UTF-16: no controls, and neither of the two highest units, which XML does not have.
bool IsSurelyAllowed(WStringView text) noexcept {
  using namespace lanes;
  if (text.size() < kLanes) return false;
  return FindInWords(text.size(), [=](std::size_t i) {
           const std::uint64_t units = Load(text.data() + i);
           return Below(units, u' ') | Below(~units, 2);
         }) == 0;
}

// Up to so many are compared each with each.
constexpr std::size_t kFewAttributes = 8;

// An element without attributes or namespaces.
constexpr bool IsPlainElement(unsigned first) noexcept {
  return first < octet::kAttributesFollow && (first & 0x3C) != octet::kNamespacesFollow;
}
constexpr bool IsChunk(unsigned first) noexcept { return (first & 0xC0) == 0x80; }

}  // namespace

CFastInfosetReader::CFastInfosetReader(const CFastInfosetContext& context, const CSerializationContext& options,
                                       DocumentTree& tree, const unsigned char* data, std::size_t length)
    : CInstanceMonitor(Record()),
      m_options(options),
      m_vocabulary(context.GetVocabularyInForce()),
      m_tree(tree),
      m_start(FindStart({data, length})),
      m_in(data, length, m_start),
      m_names(m_in, tree, m_vocabulary, options.GetSchemaType() == SchemaType_NoNamespaces),
      m_attributeValues{m_vocabulary.GetAttributeValuesTable().m_table, CarriageReturns::Stay},
      m_characterChunks{m_vocabulary.GetCharacterChunksTable().m_table, CarriageReturns::Go} {
  m_attributesOfElement.reserve(kFewAttributes);
}

CFastInfosetReader::~CFastInfosetReader() = default;

CInstanceMonitor::ClassType& CFastInfosetReader::Record() {
  static ClassType& record = FindClass(u"CFastInfosetReader");
  return record;
}

bool CFastInfosetReader::IsDocument(const unsigned char* data, std::size_t length) noexcept {
  return FindStart({data, length}) != 0;
}

// Clause 7.2: the children of a document are one element and what a tree does not hold.
bool CFastInfosetReader::ParseDocument() {
  if (m_start == 0) return false;
  fastinfoset::SkipDocumentHead(m_in);
  while (true) {
    const unsigned first = m_in.Read();
    if (first < 0x80) {
      ParseRoot(first);
      return true;
    }
    if (fastinfoset::IsTerminator(first)) m_in.Fail(u"Failed to parse FastInfoset. The document has no element.");
    if (fastinfoset::IsDocumentTypeDeclaration(first)) {
      if (!m_options.GetAllowDoctype()) {
        m_in.Fail(
            u"Failed to parse FastInfoset. The document has a document type declaration. "
            u"CSerializationContext::SetAllowDoctype sets this limit.");
      }
      fastinfoset::SkipDocumentTypeDeclaration(m_in, first);
    } else {
      // Deliberate: an octet that begins nothing is passed over ahead of the root.
      SkipItem(first);
    }
  }
}

// Reads over a comment or a processing instruction; anything else is one octet.
void CFastInfosetReader::SkipItem(unsigned first) {
  if (fastinfoset::IsProcessingInstruction(first)) return fastinfoset::SkipProcessingInstruction(m_in);
  if (fastinfoset::IsComment(first)) return fastinfoset::SkipComment(m_in);
}

// The text of a string, in the tree's memory.
inline WStringView CFastInfosetReader::Decode(const fastinfoset::StoredString& string, CarriageReturns crs) {
  if (string.characters != CharacterForm::Utf8) return DecodeOther(string, crs);
  const Octets octets = string.octets;
  const std::size_t room = unicode::InWideStrides(octets.size());
  WChar* const text = m_tree.AllocateText(octets.size(), room);
  // Such text needs no further look. Texts at the very end of the document take the longer way.
  const bool isPlain =
      m_in.IsWithin(octets.data(), room) && unicode::WidenPlainByStrides(octets.data(), octets.size(), text);
  return isPlain ? WStringView(text, octets.size()) : DecodeUtf8(octets, text, crs);
}

// C.7, with NonIdentifyingStringOrIndex on the third bit (C.15).
[[gnu::always_inline]] inline WStringView CFastInfosetReader::ReadChunk(unsigned first) {
  if ((first & octet::kChunkIndex) == octet::kChunkIndex) {
    return TextAt(m_characterChunks, m_in.ReadIndex<fastinfoset::kIndexOnFourthBit>(first));
  }
  const WStringView text =
      Decode(fastinfoset::ReadString<fastinfoset::kStringOnFifthBit>(m_in, first), m_characterChunks.crs);
  if ((first & octet::kAddChunk) != 0) m_characterChunks.kept.Add(text);
  return text;
}

// Most plain elements hold one text and no more: these are made at once. Returns the octet behind what was read; half
// of a double terminator is a single one.
inline unsigned CFastInfosetReader::ParsePlainElement(unsigned first) {
  m_tree.CheckDepth();
  const ExpandedName& name = m_names.ReadElementName(first);
  unsigned next = m_in.Read();
  if (!IsChunk(next)) {
    m_tree.StartElement(name);
    return next;
  }
  const WStringView text = ReadChunk(next);
  next = m_in.Read();
  if (fastinfoset::IsTerminator(next)) {
    m_tree.AddLeaf(name, text);
    return next == octet::kDoubleTerminator ? octet::kTerminator : m_in.Read();
  }
  m_tree.StartElement(name);
  m_tree.AppendText(text);
  return next;
}

// The element that begins in `first`, with all that it holds (C.3). No depth costs stack.
void CFastInfosetReader::ParseRoot(unsigned first) {
  for (unsigned next = ParseStartOfElement(first);;) {
    if (IsPlainElement(next)) {
      next = ParsePlainElement(next);
    } else if (fastinfoset::IsTerminator(next)) {
      if (!m_tree.CloseElement()) return;
      next = next == octet::kDoubleTerminator ? octet::kTerminator : m_in.Read();
    } else {
      next = ParseChild(next);
    }
  }
}

// Any other child, or the start of one. Returns as ParsePlainElement.
unsigned CFastInfosetReader::ParseChild(unsigned first) {
  if (first < 0x80) return ParseStartOfElement(first);
  if (IsChunk(first)) {
    m_tree.AppendText(ReadChunk(first));
  } else if (fastinfoset::IsEntityReference(first)) {
    fastinfoset::SkipEntityReference(m_in, first);
  } else if (fastinfoset::IsProcessingInstruction(first) || fastinfoset::IsComment(first)) {
    SkipItem(first);
  } else {
    m_in.Fail(u"Failed to parse FastInfoset. Invalid Encoding of Element type.");
  }
  return m_in.Read();
}

// Namespace attributes, name and attributes. Returns as above: the end of the attributes may end the element too.
unsigned CFastInfosetReader::ParseStartOfElement(unsigned first) {
  const bool hasAttributes = (first & octet::kAttributesFollow) != 0;
  if ((first & 0x3C) == octet::kNamespacesFollow) first = ParseNamespaceAttributes();
  m_tree.StartElement(m_names.ReadElementName(first));
  const bool endsElement = hasAttributes && ParseAttributes() == octet::kDoubleTerminator;
  return endsElement ? octet::kTerminator : m_in.Read();
}

// Returns the first octet of the element's name, which stands behind them.
unsigned CFastInfosetReader::ParseNamespaceAttributes() {
  for (unsigned first = m_in.Read(); (first & 0xFC) == octet::kNamespaceAttribute; first = m_in.Read()) {
    m_names.ReadNamespaceAttribute(first);
  }
  return m_in.Read();
}

// Returns the octet that ended them. Deliberate: any octet does that begins no attribute.
unsigned CFastInfosetReader::ParseAttributes() {
  m_attributesOfElement.clear();
  unsigned first = m_in.Read();
  for (; first < 0x80; first = m_in.Read()) ParseAttribute(first);
  CheckAttributesDiffer();
  return first;
}

// C.4, with NonIdentifyingStringOrIndex on the first bit (C.14).
void CFastInfosetReader::ParseAttribute(unsigned first) {
  const ExpandedName& name = m_names.ReadAttributeName(first);
  m_attributesOfElement.push_back(&name);
  const unsigned value = m_in.Read();
  if ((value & octet::kIndex) != 0) {
    const std::uint32_t index = m_in.ReadIndex<fastinfoset::kIndexOrZeroOnSecondBit>(value);
    return m_tree.AddAttribute(name, index == 0 ? WStringView() : TextAt(m_attributeValues, index));
  }
  const WStringView text =
      Decode(fastinfoset::ReadString<fastinfoset::kStringOnThirdBit>(m_in, value), m_attributeValues.crs);
  if ((value & octet::kAddValue) != 0) m_attributeValues.kept.Add(text);
  m_tree.AddAttribute(name, text);
}

// Decided: as in XML no two attributes of an element have the same name, see docs/decisions.md.
void CFastInfosetReader::CheckAttributesDiffer() {
  auto& names = m_attributesOfElement;
  const bool areMany = names.size() > kFewAttributes;
  if (areMany) std::sort(names.begin(), names.end());
  for (std::size_t i = 1; i < names.size(); ++i) {
    // Of sorted names the neighbours.
    for (std::size_t j = areMany ? i - 1 : 0; j < i; ++j) {
      if (names[i] == names[j])
        m_in.Fail(u"Failed to parse FastInfoset. An element has two attributes of the same name.");
    }
  }
}

// A stored text costs its reader as much as it is long, and the document an octet.
WStringView CFastInfosetReader::TextAt(Values& values, std::uint32_t index) {
  constexpr std::uint64_t kFreeBytes = 8 * 1024 * 1024;
  constexpr std::uint64_t kMaxFactor = 100;
  WStringView* const text = values.kept.Find(index);
  if (text == nullptr) m_in.Fail(u"Failed to parse FastInfoset. There is no text of this index.");
  if (text->data() == nullptr && index <= values.prepared.size()) *text = Keep(values.prepared[index - 1], values.crs);
  m_indexedBytes += text->size() * sizeof(WChar);
  if (m_indexedBytes > kFreeBytes && m_indexedBytes / kMaxFactor > m_in.GetLength()) {
    m_in.Fail(u"Failed to parse FastInfoset. Texts by index multiply the document more than a hundredfold.");
  }
  return *text;
}

WStringView CFastInfosetReader::DecodeOther(const fastinfoset::StoredString& string, CarriageReturns crs) {
  if (string.characters == CharacterForm::Utf16) return DecodeUtf16(string.octets, crs);
  m_decoded.clear();
  if (string.characters == CharacterForm::Algorithm) {
    if (string.index == fastinfoset::kCData) {
      return DecodeUtf8(string.octets, m_tree.AllocateText(string.octets.size()), crs);
    }
    fastinfoset::DecodeValues(string.index, string.octets, m_decoded);
    return Keep(m_decoded, crs);
  }
  if (string.index > m_vocabulary.m_restrictedAlphabets.size()) {
    m_in.Fail(u"Failed to parse FastInfoset. There is no Restricted Alphabet of this index.");
  }
  fastinfoset::DecodeAlphabet(m_vocabulary.m_restrictedAlphabets[string.index - 1], string.octets, m_decoded);
  return Keep(m_decoded, crs);
}

// `text` has room for as many units.
WStringView CFastInfosetReader::DecodeUtf8(Octets octets, WChar* text, CarriageReturns crs) {
  const unicode::Progress done = unicode::Utf8ToWide(octets.data(), octets.size(), text);
  if (done.read != octets.size()) m_in.Fail(u"Failed to parse FastInfoset. A text is no UTF-8.");
  if (IsSurelyAllowed({text, done.written})) return {text, done.written};
  return Checked(text, done.written, crs);
}

WStringView CFastInfosetReader::DecodeUtf16(Octets octets, CarriageReturns crs) {
  if (octets.size() % 2 != 0) m_in.Fail(u"Failed to parse FastInfoset. A text is no UTF-16.");
  WChar* const text = m_tree.AllocateText(octets.size() / 2);
  for (std::size_t i = 0; i < octets.size(); i += 2) {
    text[i / 2] = static_cast<WChar>(octets[i] << 8 | octets[i + 1]);
  }
  return Checked(text, octets.size() / 2, crs);
}

WStringView CFastInfosetReader::Keep(WStringView text, CarriageReturns crs) {
  WChar* const kept = m_tree.AllocateText(text.size());
  std::copy(text.begin(), text.end(), kept);
  return Checked(kept, text.size(), crs);
}

// Decided: characters that XML does not allow are refused, see docs/decisions.md.
WStringView CFastInfosetReader::Checked(WChar* text, std::size_t length, CarriageReturns crs) {
  fastinfoset::CheckAllowed({text, length});
  WChar* const end = crs == CarriageReturns::Go ? std::remove(text, text + length, u'\r') : text + length;
  return {text, static_cast<std::size_t>(end - text)};
}

}  // namespace OvXmlLib16
