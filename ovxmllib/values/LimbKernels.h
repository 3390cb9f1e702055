// Arithmetic on runs of limbs: machine words in base 10^18, least significant first.
//
// The base is a power of ten, so text converts in linear time and powers of ten are shifts; two limbs multiply within
// 128 bits, and a few hundred such products add up there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace OvXmlLib16::limbs {

using Limb = std::uint64_t;
__extension__ using DoubleLimb = unsigned __int128;

inline constexpr unsigned kDigitsPerLimb = 18;
inline constexpr Limb kBase = 1'000'000'000'000'000'000;

using View = std::span<const Limb>;
using Run = std::span<Limb>;

struct QuotientAndRest {
  Limb quotient;
  Limb rest;
};

/// `value` divided by the base; `value` is below the base times 2^64.
QuotientAndRest DivideByBase(DoubleLimb value) noexcept;

/// `view` without zeros at its high end.
View Trimmed(View view) noexcept;

/// Less than, equal to or greater than 0 as `a` is to `b`, both trimmed.
int Compare(View a, View b) noexcept;

/// a += b, a being at least as long; returns the carry, 0 or 1.
Limb AddTo(Run a, View b) noexcept;

/// a -= b, a being at least as long and at least as great.
void SubtractFrom(Run a, View b) noexcept;

/// result = a * b, the result being as long as both together and apart from them. Schoolbook by columns, Karatsuba
/// (Knuth, TAOCP vol. 2, section 4.3.3) above a threshold. May throw std::bad_alloc.
void Multiply(View a, View b, Run result);

/// result = a * factor, which may be the same run; returns the carry.
Limb MultiplyBy(View a, Limb factor, Run result) noexcept;

/// quotient = a / divisor, which may be the same run; returns the remainder.
Limb DivideBy(View a, Limb divisor, Run quotient) noexcept;

/// Knuth, TAOCP vol. 2, section 4.3.1, algorithm D. The divisor has at least two limbs, the top one at least half the
/// base. The dividend has more limbs than the divisor, the top one below that of the divisor, and becomes the
/// remainder; the quotient has as many limbs as the dividend has more than the divisor.
void DivideNormalized(Run dividend, View divisor, Run quotient) noexcept;

}  // namespace OvXmlLib16::limbs
