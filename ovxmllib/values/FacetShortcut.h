// The short answer to whether a value passes its facets.
#pragma once

#include <cstdint>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"

namespace OvXmlLib16 {

/// What the facets of a property come to, read once, so that most values pass with one or two comparisons. An entry of
/// the metadata keeps one beside the facets; it is an implementation detail of the entries, public only because they
/// hold it by value.
///
/// It knows types whose values all pass, integers of fixed width between bounds, and strings that have no pattern. For
/// all else, and for each value outside, the full check has to decide. Never changed, so any number of threads may use
/// one.
class OVXMLLIB_API FacetShortcut {
 public:
  /// Lets no value pass.
  FacetShortcut() noexcept = default;
  /// For the values of `type` under `facets`, which are not kept. Throws nothing but std::bad_alloc: facets that
  /// cannot be read let no value pass.
  FacetShortcut(ItemType type, const CPrimitiveRestrictions& facets);

  /// Whether the full check would surely return for this value. False means nothing: it has to be called then, and it
  /// makes the message. Allocates nothing.
  bool SurelyPasses(const OvVariant& value) const noexcept {
    return m_passesEvery || (m_least <= m_greatest && IsInRange(value));
  }

 private:
  bool IsInRange(const OvVariant& value) const noexcept;

  // The first and the last key that pass: of an integer a number of the same order, of a string its length in UTF-16
  // code units. None pass when they are the wrong way round.
  std::uint64_t m_least = 1;
  std::uint64_t m_greatest = 0;
  ItemType m_type = ItemType_none;
  bool m_passesEvery = false;
};

}  // namespace OvXmlLib16
