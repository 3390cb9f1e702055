// The facets that a schema puts on a simple type (XML Schema Part 2, section 4.3).
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The facets of one primitive property, as generated code hands them to the metadata. A plain record: which facets a
/// type looks at is the business of the check. Enumerations and whiteSpace have their own places in the metadata.
///
/// A number of -1 and an empty text mean that the facet is absent. Bounds are kept as the schema spells them and are
/// read, by the rules of the property's type, when a value is checked against them; nothing is checked here.
class OVXMLLIB_API CPrimitiveRestrictions {
 public:
  /// No facet at all.
  CPrimitiveRestrictions() = default;
  /// All facets, in the order of the fields. Texts are terminated and copied; null counts as empty.
  CPrimitiveRestrictions(const WChar* pattern, std::int32_t minLength, std::int32_t maxLength,
                         const WChar* minInclusive, const WChar* maxInclusive, const WChar* minExclusive,
                         const WChar* maxExclusive, std::int32_t length, std::int32_t totalDigits,
                         std::int32_t fractionDigits);
  CPrimitiveRestrictions(const CPrimitiveRestrictions&) = default;
  CPrimitiveRestrictions(CPrimitiveRestrictions&&) noexcept = default;
  CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions&) = default;
  CPrimitiveRestrictions& operator=(CPrimitiveRestrictions&&) noexcept = default;
  virtual ~CPrimitiveRestrictions() = default;

  /// The regular expression that the whole value has to match (XML Schema Part 2, appendix F), for strings alone.
  WString m_pattern;
  /// The least and the greatest length: of a string in UTF-16 code units, of binary data in bytes.
  std::int32_t m_minLength = -1;
  std::int32_t m_maxLength = -1;
  /// The least and the greatest value, themselves allowed.
  WString m_minInclusive;
  WString m_maxInclusive;
  /// The bounds that a value has to lie above or below.
  WString m_minExclusive;
  WString m_maxExclusive;
  /// The one length allowed, in the units of m_minLength.
  std::int32_t m_length = -1;
  /// The most digits of a number, and the most of them behind the decimal point.
  std::int32_t m_totalDigits = -1;
  std::int32_t m_fractionDigits = -1;
};

}  // namespace OvXmlLib16
