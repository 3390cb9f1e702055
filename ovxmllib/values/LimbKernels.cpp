#include "ovxmllib/values/LimbKernels.h"

#include <algorithm>
#include <cassert>
#include <memory>

namespace OvXmlLib16::limbs {

namespace {

// The shorter factor has fewer limbs wherever columns are added up, which keeps a column within 128 bits: each product
// is below 10^36, and 340 of them fit.
constexpr std::size_t kKaratsubaThreshold = 40;

constexpr DoubleLimb Wide(Limb value) noexcept { return value; }

// `value` where `flag` is 1, 0 where it is 0: no branch, as half of these flags are set by chance.
constexpr Limb Masked(Limb flag, Limb value) noexcept { return (Limb{0} - flag) & value; }

// Divides a column's sum, which may be any 128 bits.
DoubleLimb TakeLimb(DoubleLimb& sum) noexcept {
  const Limb high = static_cast<Limb>(sum >> 64);
  const auto [quotient, rest] = DivideByBase(Wide(high % kBase) << 64 | static_cast<Limb>(sum));
  sum = Wide(high / kBase) << 64 | quotient;
  return rest;
}

void MultiplyColumns(View a, View b, Run result) noexcept {
  DoubleLimb sum = 0;
  for (std::size_t column = 0; column < result.size(); ++column) {
    const std::size_t first = column < b.size() ? 0 : column - b.size() + 1;
    const std::size_t last = std::min(column + 1, a.size());
    for (std::size_t i = first; i < last; ++i) sum += Wide(a[i]) * b[column - i];
    result[column] = static_cast<Limb>(TakeLimb(sum));
  }
}

// difference = |a - b|; true where a < b. `b` may be shorter, the difference is as long as `a`.
bool AbsoluteDifference(View a, View b, Run difference) noexcept {
  const bool isNegative = Compare(Trimmed(a), Trimmed(b)) < 0;
  const View greater = isNegative ? b : a, less = isNegative ? Trimmed(a) : Trimmed(b);
  std::fill(std::copy(greater.begin(), greater.end(), difference.begin()), difference.end(), Limb{0});
  SubtractFrom(difference, less);
  return isNegative;
}

std::size_t LowHalf(std::size_t size) noexcept { return (size + 1) / 2; }

std::size_t KaratsubaRoom(std::size_t size) noexcept {
  std::size_t room = 0;
  for (; size >= kKaratsubaThreshold; size = LowHalf(size)) room += 4 * LowHalf(size) + 1;
  return room;
}

// With a = a1 B + a0 and b likewise, a b = high B^2 + (high + low - (a0 - a1)(b0 - b1)) B + low.
void MultiplyKaratsuba(View a, View b, Run result, Run room) noexcept {
  const std::size_t size = a.size(), half = LowHalf(size);
  if (size < kKaratsubaThreshold) {
    MultiplyColumns(a, b, result);
    return;
  }
  const Run low = result.first(2 * half), high = result.subspan(2 * half);
  const Run product = room.first(2 * half), middle = room.subspan(2 * half, 2 * half + 1);
  const Run rest = room.subspan(4 * half + 1);

  // The differences stand where the products of the halves will.
  const bool aIsNegative = AbsoluteDifference(a.first(half), a.subspan(half), low.first(half));
  const bool bIsNegative = AbsoluteDifference(b.first(half), b.subspan(half), low.subspan(half));
  MultiplyKaratsuba(low.first(half), low.subspan(half), product, rest);
  MultiplyKaratsuba(a.first(half), b.first(half), low, rest);
  MultiplyKaratsuba(a.subspan(half), b.subspan(half), high, rest);

  std::copy(low.begin(), low.end(), middle.begin());
  middle.back() = AddTo(middle.first(2 * half), high);
  if (aIsNegative == bIsNegative) {
    SubtractFrom(middle, product);
  } else {
    AddTo(middle, product);
  }
  AddTo(result.subspan(half), Trimmed(middle));
}

// The longer factor in pieces of the shorter one's length.
void MultiplyPieces(View a, View b, Run result) {
  const std::size_t size = b.size(), room = KaratsubaRoom(size);
  const auto memory = std::make_unique_for_overwrite<Limb[]>(room + 2 * size);
  const Run product(memory.get(), 2 * size), scratch(memory.get() + 2 * size, room);
  std::fill(result.begin(), result.end(), Limb{0});
  for (std::size_t at = 0; at < a.size(); at += size) {
    const View piece = a.subspan(at, std::min(size, a.size() - at));
    const Run part = product.first(piece.size() + size);
    if (piece.size() == size) {
      MultiplyKaratsuba(piece, b, part, scratch);
    } else {
      Multiply(piece, b, part);
    }
    AddTo(result.subspan(at), part);
  }
}

// Takes factor * divisor off the dividend's `divisor.size() + 1` limbs; true where it went below zero.
bool SubtractProduct(Run dividend, View divisor, Limb factor) noexcept {
  Limb carry = 0;
  for (std::size_t i = 0; i < divisor.size(); ++i) {
    // The carry stays out of the multiplication, so that the processor can work on several limbs at once.
    const auto [quotient, rest] = DivideByBase(Wide(factor) * divisor[i]);
    const Limb isOver = rest + carry >= kBase ? 1 : 0;
    const Limb taken = rest + carry - Masked(isOver, kBase);
    const Limb borrow = dividend[i] < taken ? 1 : 0;
    dividend[i] += Masked(borrow, kBase) - taken;
    carry = quotient + isOver + borrow;
  }
  const bool isBelowZero = dividend.back() < carry;
  dividend.back() += (isBelowZero ? kBase : 0) - carry;
  return isBelowZero;
}

// The first guess of a quotient's limb from the top three limbs of the dividend and two of the divisor: right or one
// too great.
Limb GuessQuotient(View dividendTop, View divisorTop) noexcept {
  const DoubleLimb top = Wide(dividendTop[2]) * kBase + dividendTop[1];
  DoubleLimb guess = top / divisorTop[1];
  DoubleLimb rest = top - guess * divisorTop[1];
  while (guess >= kBase || guess * divisorTop[0] > rest * kBase + dividendTop[0]) {
    --guess;
    rest += divisorTop[1];
    if (rest >= kBase) break;
  }
  return static_cast<Limb>(guess);
}

}  // namespace

// Moeller and Granlund, "Improved division by invariant integers" (2011), algorithm 4.
QuotientAndRest DivideByBase(DoubleLimb value) noexcept {
  constexpr unsigned kShift = 4;
  constexpr Limb kDivisor = kBase << kShift;
  constexpr Limb kReciprocal = static_cast<Limb>(~DoubleLimb{0} / kDivisor - (DoubleLimb{1} << 64));
  static_assert(kDivisor >> 63 == 1);

  value <<= kShift;
  const Limb high = static_cast<Limb>(value >> 64), low = static_cast<Limb>(value);
  const DoubleLimb product = Wide(kReciprocal) * high + value;
  Limb quotient = static_cast<Limb>(product >> 64) + 1;
  Limb rest = low - quotient * kDivisor;
  const Limb isTooGreat = rest > static_cast<Limb>(product) ? 1 : 0;
  quotient -= isTooGreat;
  rest += Masked(isTooGreat, kDivisor);
  if (rest >= kDivisor) {
    ++quotient;
    rest -= kDivisor;
  }
  return {quotient, rest >> kShift};
}

View Trimmed(View view) noexcept {
  while (!view.empty() && view.back() == 0) view = view.first(view.size() - 1);
  return view;
}

int Compare(View a, View b) noexcept {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (std::size_t i = a.size(); i-- > 0;) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return 0;
}

Limb AddTo(Run a, View b) noexcept {
  Limb carry = 0;
  std::size_t i = 0;
  for (; i < b.size(); ++i) {
    const Limb sum = a[i] + b[i] + carry;
    carry = sum >= kBase ? 1 : 0;
    a[i] = sum - (carry == 0 ? 0 : kBase);
  }
  for (; carry != 0 && i < a.size(); ++i) {
    carry = a[i] == kBase - 1 ? 1 : 0;
    a[i] = carry == 0 ? a[i] + 1 : 0;
  }
  return carry;
}

void SubtractFrom(Run a, View b) noexcept {
  Limb borrow = 0;
  std::size_t i = 0;
  for (; i < b.size(); ++i) {
    const Limb taken = b[i] + borrow;
    borrow = a[i] < taken ? 1 : 0;
    a[i] += (borrow == 0 ? 0 : kBase) - taken;
  }
  for (; borrow != 0; ++i) {
    assert(i < a.size());
    borrow = a[i] == 0 ? 1 : 0;
    a[i] = borrow == 0 ? a[i] - 1 : kBase - 1;
  }
}

void Multiply(View a, View b, Run result) {
  if (a.size() < b.size()) std::swap(a, b);
  if (b.size() < kKaratsubaThreshold) {
    MultiplyColumns(a, b, result);
  } else {
    MultiplyPieces(a, b, result);
  }
}

Limb MultiplyBy(View a, Limb factor, Run result) noexcept {
  Limb carry = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto [quotient, rest] = DivideByBase(Wide(a[i]) * factor + carry);
    result[i] = rest;
    carry = quotient;
  }
  return carry;
}

Limb DivideBy(View a, Limb divisor, Run quotient) noexcept {
  Limb rest = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const DoubleLimb value = Wide(rest) * kBase + a[i];
    quotient[i] = static_cast<Limb>(value / divisor);
    rest = static_cast<Limb>(value - Wide(quotient[i]) * divisor);
  }
  return rest;
}

void DivideNormalized(Run dividend, View divisor, Run quotient) noexcept {
  const std::size_t size = divisor.size();
  for (std::size_t i = quotient.size(); i-- > 0;) {
    const Run part = dividend.subspan(i, size + 1);
    quotient[i] = GuessQuotient(part.last(3), divisor.last(2));
    if (quotient[i] == 0 || !SubtractProduct(part, divisor, quotient[i])) continue;
    --quotient[i];
    AddTo(part.first(size), divisor);
    part.back() = 0;
  }
}

}  // namespace OvXmlLib16::limbs
