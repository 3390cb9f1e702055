#include "ovxmllib/collections/XmlTypeCollection.h"

#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

CXmlTypeCollection::CXmlTypeCollection(ItemType type, const WChar* elementName, const WChar* ns, int minOccurs,
                                       int maxOccurs, const WChar* pattern, std::int32_t minLength,
                                       std::int32_t maxLength, const WChar* minInclusive, const WChar* maxInclusive,
                                       const WChar* minExclusive, const WChar* maxExclusive, std::int32_t length,
                                       std::int32_t totalDigits, std::int32_t fractionDigits,
                                       CWhitespaceUtils::WhitespaceRule rule, const WChar* formatOverride)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, length,
                     totalDigits, fractionDigits),
      m_itemType(type),
      m_strFormatOverride(ViewOf(formatOverride)),
      m_whitespaceRule(rule) {}

CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement*, CXmlElement* child, const CSerializationContext& context,
                                             bool) {
  const WString name = GetElementName();
  while (child != nullptr && DoesElementNameMatch(context, child, name.c_str(), m_strNamespace.c_str())) {
    AddFromString(child->GetTextView());
    child = child->GetNextSiblingElement();
  }
  return child;
}

}  // namespace OvXmlLib16
