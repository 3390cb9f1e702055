// What the collections of plain values share.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/collections/XmlCollectionBase.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"

namespace OvXmlLib16 {

/// Base of the collections that hold the values of a repeated element of a primitive type: what the type is, which
/// facets its values have to hold, and how they are read and printed.
class OVXMLLIB_API CXmlTypeCollection : public CXmlCollectionBase {
 public:
  ~CXmlTypeCollection() override;

 protected:
  /// The texts are terminated and copied; null counts as empty. Behind the limits come the facets in the order of
  /// CPrimitiveRestrictions, the rule by which the text of an element is normalised before it is read, and the format
  /// by which r4, r8 and decimal are printed: see CConversions.
  CXmlTypeCollection(ItemType type, const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs,
                     const WChar* pattern, std::int32_t minLength, std::int32_t maxLength, const WChar* minInclusive,
                     const WChar* maxInclusive, const WChar* minExclusive, const WChar* maxExclusive,
                     std::int32_t length, std::int32_t totalDigits, std::int32_t fractionDigits,
                     CWhitespaceUtils::WhitespaceRule rule, const WChar* formatOverride);

  /// Adds the text of `child` and of each sibling behind it, up to the first element of another name or namespace,
  /// which is returned; null when there is none. Attributes of the elements are not looked at, `xsi:nil` neither, and
  /// the count is not validated. Throws what AddFromString throws; the values ahead stay.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override;
  using CXmlCollectionBase::FromXml_Int;

  /// Adds the value that `text` stands for; it is not kept. Throws what CConversions and Add throw.
  virtual void AddFromString(WStringView text) = 0;

  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  WString m_strFormatOverride;
  CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

}  // namespace OvXmlLib16
