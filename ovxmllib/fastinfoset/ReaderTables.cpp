#include "ovxmllib/fastinfoset/ReaderTables.h"

#include <algorithm>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/PlainText.h"
#include "ovxmllib/fastinfoset/TextSyntax.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::fastinfoset {

namespace {

// Whether it is a name of ASCII characters without a colon, as most are.
bool IsPlainName(std::string_view text) noexcept {
  using namespace plaintext;
  return !text.empty() && Is(kNameStart, text.front()) &&
         std::all_of(text.begin(), text.end(), [](char c) { return Is(kNameByte, c); });
}

}  // namespace

NameReader::NameReader(OctetReader& in, DocumentTree& tree, const CFIVocabulary& vocabulary, bool allowsColons)
    : m_in(in),
      m_tree(tree),
      m_allowsColons(allowsColons),
      m_prefixes(vocabulary.GetPrefixNamesTable().m_table),
      m_namespaces(vocabulary.GetNamespaceNamesTable().m_table),
      m_localNames(vocabulary.GetLocalNamesTable().m_table),
      m_elements(vocabulary.GetElementNamesTable()),
      m_attributes(vocabulary.GetAttributeNamesTable()) {}

const ExpandedName& NameReader::ReadLiteral(QualifiedNames& names, unsigned first) {
  const bool hasPrefix = (first & octet::kPrefixFollows) != 0, hasNamespace = (first & octet::kNamespaceFollows) != 0;
  if (hasPrefix && !hasNamespace) {
    m_in.Fail(u"Failed to parse FastInfoset. Invalid QName type Prefix without Namespace.");
  }
  if (hasPrefix) ReadText(m_prefixes, /*isName=*/true);
  const std::string_view ns = hasNamespace ? ReadText(m_namespaces, /*isName=*/false) : std::string_view();
  const ExpandedName& name = m_tree.InternName(ns, ReadText(m_localNames, /*isName=*/true));
  names.names.Add(&name);
  return name;
}

// The name of a vocabulary that is used for the first time.
const ExpandedName& NameReader::PreparedNameAt(QualifiedNames& names, std::uint32_t index) {
  const ExpandedName** const name = names.names.Find(index);
  if (name == nullptr) m_in.Fail(u"Failed to parse FastInfoset. There is no name of this index.");
  const CFIVocabulary::CQNameParts& parts = names.prepared[index - 1];
  const std::uint32_t ns = parts.m_dwNamespaceIndex;
  const std::string_view uri = ns == 0 ? std::string_view() : TextAt(m_namespaces, ns);
  *name = &m_tree.InternName(uri, TextAt(m_localNames, parts.m_dwLocalNameIndex));
  return **name;
}

void NameReader::ReadNamespaceAttribute(unsigned first) {
  const bool hasPrefix = (first & octet::kPrefixFollows) != 0, hasNamespace = (first & octet::kNamespaceFollows) != 0;
  const std::string_view prefix = hasPrefix ? ReadText(m_prefixes, /*isName=*/true) : std::string_view();
  m_tree.DeclareNamespace(prefix, hasNamespace ? ReadText(m_namespaces, /*isName=*/false) : std::string_view());
}

// IdentifyingStringOrIndex (C.13). A literal always enters the table.
std::string_view NameReader::ReadText(NameTexts& texts, bool isName) {
  const unsigned first = m_in.Read();
  if ((first & octet::kIndex) != 0) return TextAt(texts, m_in.ReadIndex<kIndexOnSecondBit>(first));
  const auto octets = m_in.TakeCounted<kLengthOnSecondBit>(first);
  const std::string_view text(reinterpret_cast<const char*>(octets.data()), octets.size());
  CheckText(text, isName);
  texts.Add(text);
  return text;
}

std::string_view NameReader::TextAt(NameTexts& texts, std::uint32_t index) {
  const std::string_view* const text = index == 0 ? nullptr : texts.Find(index);
  if (text == nullptr) m_in.Fail(u"Failed to parse FastInfoset. There is no part of a name of this index.");
  return *text;
}

// Decided: a name that XML does not allow is refused here, where it costs a look at each literal, since no writer looks
// at names; see docs/decisions.md.
void NameReader::CheckText(std::string_view text, bool isName) {
  if (isName && IsPlainName(text)) return;
  m_wide.resize(text.size());
  const unicode::Progress done =
      unicode::Utf8ToWide(reinterpret_cast<const unsigned char*>(text.data()), text.size(), m_wide.data());
  if (done.read != text.size()) m_in.Fail(u"Failed to parse FastInfoset. A text is no UTF-8.");
  m_wide.resize(done.written);
  if (!isName) return CheckAllowed(m_wide);
  if (!IsName(m_wide, m_allowsColons)) m_in.Fail(u"Failed to parse FastInfoset. A name is no name of XML.");
}

}  // namespace OvXmlLib16::fastinfoset
