// Values of primitive types against the facets of their schema type.
#pragma once

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"
#include "ovxmllib/values/PrimitiveRows.h"
#include "ovxmllib/values/PrimitiveText.h"

namespace OvXmlLib16 {

/// Checks a value of type `type`, which the variant must hold, against the facets that its type looks at (XML Schema
/// Part 2, section 4.3), in the order of the table, and returns if all hold.
///
///     type                                   facets, in their order
///     hexBinary, base64Binary                the lengths, in bytes
///     integers of fixed width, integer       the bounds, totalDigits
///     r4, r8, durations, dates and times     the bounds
///     decimal                                the bounds, totalDigits, fractionDigits
///     string                                 the lengths, in UTF-16 code units, and the pattern
///     boolean                                none
///
/// A bound is read as its type reads text, white space collapsed. Of durations and dates that neither side of a bound
/// can be told, none fails. Throws COvException at the first facet that does not hold, with `name`, the property's, and
/// the value in the message; COvInvalidValueException for `char` and for what is no primitive; and what reading a bound
/// throws.
void CheckPrimitiveValue(const WChar* name, const OvVariant& value, ItemType type,
                         const CPrimitiveRestrictions& facets);

/// The same for a value of a type known at compile time, any primitive type but `char`.
template <ItemType kType>
void CheckPrimitive(WStringView name, const typename Primitive<kType>::Value& value,
                    const CPrimitiveRestrictions& facets);

/// The value of a bound.
template <ItemType kType>
typename Primitive<kType>::Value ParseBound(WStringView text) {
  WString scratch;
  return ParsePrimitive<kType>(CWhitespaceUtils::ApplyRule(CWhitespaceUtils::WhitespaceRule_Collapse, text, scratch));
}

/// Whether there is any facet to check.
bool HasFacets(const CPrimitiveRestrictions& facets) noexcept;

/// Whether CheckPrimitiveValue passes every value of this type, so that it need not be called.
bool PassesEveryValue(ItemType type, const CPrimitiveRestrictions& facets) noexcept;

}  // namespace OvXmlLib16
