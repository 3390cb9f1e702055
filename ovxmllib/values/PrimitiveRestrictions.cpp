#include "ovxmllib/values/PrimitiveRestrictions.h"

namespace OvXmlLib16 {

CPrimitiveRestrictions::CPrimitiveRestrictions(const WChar* pattern, std::int32_t minLength, std::int32_t maxLength,
                                               const WChar* minInclusive, const WChar* maxInclusive,
                                               const WChar* minExclusive, const WChar* maxExclusive,
                                               std::int32_t length, std::int32_t totalDigits,
                                               std::int32_t fractionDigits)
    : m_pattern(ViewOf(pattern)),
      m_minLength(minLength),
      m_maxLength(maxLength),
      m_minInclusive(ViewOf(minInclusive)),
      m_maxInclusive(ViewOf(maxInclusive)),
      m_minExclusive(ViewOf(minExclusive)),
      m_maxExclusive(ViewOf(maxExclusive)),
      m_length(length),
      m_totalDigits(totalDigits),
      m_fractionDigits(fractionDigits) {}

}  // namespace OvXmlLib16
