#include "ovxmllib/values/DecimalLimbs.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>
#include <new>
#include <type_traits>

#include "ovxmllib/values/Digits.h"
#include "ovxmllib/values/LimbKernels.h"

namespace OvXmlLib16 {

namespace {

using limbs::kDigitsPerLimb;
using Limb = DecimalLimbs::Limb;
static_assert(std::is_same_v<Limb, limbs::Limb>);

using digits::IsDigit;
using digits::kPowersOfTen;
static_assert(kDigitsPerLimb == digits::kSafe);

// The logarithm of 2 is nearly 1233 / 4096, and for 60 bits never one digit too many.
unsigned DigitsOf(Limb limb) noexcept {
  const unsigned digits = static_cast<unsigned>(std::bit_width(limb)) * 1233 / 4096;
  return digits + (limb >= kPowersOfTen[digits] ? 1 : 0);
}

// The next `count` digits as a number, whatever stands between them.
Limb TakeDigits(WStringView::iterator& at, std::size_t count) noexcept {
  Limb value = 0;
  for (; count != 0; ++at) {
    if (!IsDigit(*at)) continue;
    value = value * 10 + static_cast<Limb>(*at - u'0');
    --count;
  }
  return value;
}

}  // namespace

void DecimalLimbs::CopyLarge(const DecimalLimbs& other) {
  m_size = 0;
  AssignLarge(other);
}

DecimalLimbs& DecimalLimbs::AssignLarge(const DecimalLimbs& other) {
  if (this == &other) return *this;
  Renew(other.m_size);
  std::copy_n(other.Data(), m_size, Data());
  return *this;
}

DecimalLimbs DecimalLimbs::PowerOfTen(std::size_t exponent) {
  DecimalLimbs result(std::uint64_t{1});
  result.ShiftLeft(exponent);
  return result;
}

void DecimalLimbs::Renew(std::size_t size) {
  if (size > kInlineLimbs && size > m_capacity) {
    if (size > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    Limb* const memory = new Limb[size];
    Free();
    m_heap = memory;
    m_capacity = static_cast<std::uint32_t>(size);
  } else if (m_capacity == kBorrowed) {
    m_capacity = kInlineLimbs;
  }
  m_size = static_cast<std::uint32_t>(size);
}

void DecimalLimbs::Extend(std::size_t size) {
  assert(size >= m_size);
  if (size > m_capacity) {
    DecimalLimbs longer;
    longer.Renew(size);
    std::copy_n(Data(), m_size, longer.Data());
    longer.m_size = m_size;
    *this = std::move(longer);
  }
  std::fill(Data() + m_size, Data() + size, Limb{0});
  m_size = static_cast<std::uint32_t>(size);
}

void DecimalLimbs::Trim() noexcept { m_size = static_cast<std::uint32_t>(limbs::Trimmed(View()).size()); }

bool DecimalLimbs::AssignShort(WStringView text) noexcept {
  if (text.size() > kDigitsPerLimb) return false;
  const WChar *at = text.data(), *const end = at + text.size();
  const Limb limb = digits::Take(at, end);
  if (at != end) return false;
  AssignLimb(limb);
  return true;
}

void DecimalLimbs::AssignDigits(WStringView text) {
  const auto first = std::find_if(text.begin(), text.end(), [](WChar c) { return c >= u'1' && c <= u'9'; });
  const auto digits = static_cast<std::size_t>(std::count_if(first, text.end(), IsDigit));
  Renew((digits + kDigitsPerLimb - 1) / kDigitsPerLimb);
  auto at = first;
  std::size_t left = digits - (m_size == 0 ? 0 : (m_size - 1) * std::size_t{kDigitsPerLimb});
  for (std::size_t i = m_size; i-- > 0; left = kDigitsPerLimb) Data()[i] = TakeDigits(at, left);
}

void DecimalLimbs::AppendTo(WString& out, std::size_t width) const {
  if (IsLimb() && width <= kDigitsPerLimb) {
    WChar text[kDigitsPerLimb];
    WChar* const end = text + kDigitsPerLimb;
    const WChar* const first =
        width > 1 ? digits::PutLast(end, ToLimb(), std::max(width, DigitCount())) : digits::PutNumber(end, ToLimb());
    out.append(first, static_cast<std::size_t>(end - first));
    return;
  }
  const std::size_t digits = DigitCount(), length = std::max(digits, std::max<std::size_t>(width, 1));
  out.append(length, u'0');
  if (digits == 0) return;
  WChar* end = out.data() + out.size();
  const Limb* const limb = Data();
  for (std::size_t i = 0; i + 1 < m_size; ++i) end = digits::PutLast(end, limb[i], kDigitsPerLimb);
  digits::PutNumber(end, limb[m_size - 1]);
}

std::size_t DecimalLimbs::DigitCount() const noexcept {
  return m_size == 0 ? 0 : (m_size - 1) * std::size_t{kDigitsPerLimb} + DigitsOf(Data()[m_size - 1]);
}

std::size_t DecimalLimbs::TrailingZeros() const noexcept {
  const auto view = View();
  const auto first = std::find_if(view.begin(), view.end(), [](Limb limb) { return limb != 0; });
  if (first == view.end()) return 0;
  std::size_t zeros = static_cast<std::size_t>(first - view.begin()) * kDigitsPerLimb;
  for (Limb limb = *first; limb % 10 == 0; limb /= 10) ++zeros;
  return zeros;
}

bool DecimalLimbs::EndsAboveHalf(std::size_t digits) const noexcept {
  if (digits == 0) return false;
  const std::size_t at = (digits - 1) / kDigitsPerLimb, inLimb = (digits - 1) % kDigitsPerLimb + 1;
  if (at >= m_size) return false;
  const Limb* const limb = Data();
  const Limb end = limb[at] % kPowersOfTen[inLimb], half = kPowersOfTen[inLimb] / 2;
  if (end != half) return end > half;
  return std::any_of(limb, limb + at, [](Limb below) { return below != 0; });
}

std::uint64_t DecimalLimbs::ToWord() const noexcept {
  std::uint64_t word = 0;
  for (std::size_t i = m_size; i-- > 0;) word = word * kBase + Data()[i];
  return word;
}

std::size_t DecimalLimbs::Hash() const noexcept {
  std::uint64_t hash = m_size;
  for (const Limb limb : View()) {
    hash = (hash ^ limb) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  return hash;
}

int DecimalLimbs::Compare(const DecimalLimbs& other) const noexcept { return limbs::Compare(View(), other.View()); }

void DecimalLimbs::Add(const DecimalLimbs& other) {
  const std::size_t size = std::max(m_size, other.m_size), added = other.m_size;
  const auto top = [size](const DecimalLimbs& n) { return n.m_size == size && size > 0 ? n.Data()[size - 1] : 0; };
  const bool mayCarry = top(*this) + top(other) >= kBase - 1;
  Extend(size + (mayCarry ? 1 : 0));
  limbs::AddTo(Run(), other.View().first(added));
  Trim();
}

void DecimalLimbs::Subtract(const DecimalLimbs& other) noexcept {
  limbs::SubtractFrom(Run(), other.View());
  Trim();
}

void DecimalLimbs::SubtractFrom(const DecimalLimbs& other) {
  DecimalLimbs difference(other);
  difference.Subtract(*this);
  *this = std::move(difference);
}

DecimalLimbs DecimalLimbs::Multiply(const DecimalLimbs& a, const DecimalLimbs& b) {
  DecimalLimbs result;
  if (a.IsZero() || b.IsZero()) return result;
  result.Renew(std::size_t{a.m_size} + b.m_size);
  limbs::Multiply(a.View(), b.View(), result.Run());
  result.Trim();
  return result;
}

DecimalLimbs DecimalLimbs::DivideBy(const DecimalLimbs& divisor) {
  assert(!divisor.IsZero());
  if (Compare(divisor) < 0) return std::exchange(*this, DecimalLimbs());
  if (divisor.m_size > 1) return DivideByLonger(divisor);
  const DecimalLimbs rest(limbs::DivideBy(View(), divisor.Data()[0], Run()));
  Trim();
  return rest;
}

DecimalLimbs DecimalLimbs::DivideByLonger(const DecimalLimbs& divisor) {
  const Limb scale = kBase / (divisor.Data()[divisor.m_size - 1] + 1);
  DecimalLimbs scaled, rest, quotient;
  scaled.Renew(divisor.m_size);
  limbs::MultiplyBy(divisor.View(), scale, scaled.Run());
  rest.Renew(std::size_t{m_size} + 1);
  rest.Run().back() = limbs::MultiplyBy(View(), scale, rest.Run());
  quotient.Renew(rest.m_size - scaled.m_size);
  limbs::DivideNormalized(rest.Run(), scaled.View(), quotient.Run());
  quotient.Trim();
  rest.Trim();
  limbs::DivideBy(rest.View(), scale, rest.Run());
  rest.Trim();
  *this = std::move(quotient);
  return rest;
}

void DecimalLimbs::ShiftLeft(std::size_t digits) {
  if (m_size == 0 || digits == 0) return;
  const std::size_t whole = digits / kDigitsPerLimb, part = digits % kDigitsPerLimb, size = m_size;
  const Limb up = kPowersOfTen[part], down = kPowersOfTen[kDigitsPerLimb - part];
  const bool fits = Data()[size - 1] < down;
  Extend(size + whole + (fits ? 0 : 1));
  Limb* const limb = Data();
  for (std::size_t i = size; i-- > 0;) {
    const Limb value = limb[i], high = value / down;
    if (high != 0) limb[i + whole + 1] += high;
    limb[i + whole] = (value - high * down) * up;
  }
  std::fill_n(limb, whole, Limb{0});
}

void DecimalLimbs::ShiftRight(std::size_t digits) noexcept {
  if (digits == 0) return;
  const std::size_t whole = digits / kDigitsPerLimb, part = digits % kDigitsPerLimb;
  if (whole >= m_size) {
    m_size = 0;
    return;
  }
  const Limb down = kPowersOfTen[part], up = kPowersOfTen[kDigitsPerLimb - part];
  Limb* const limb = Data();
  const std::size_t size = m_size - whole;
  for (std::size_t i = 0; i < size; ++i) {
    const Limb above = i + 1 < size ? limb[i + whole + 1] % down : 0;
    limb[i] = limb[i + whole] / down + above * up;
  }
  m_size = static_cast<std::uint32_t>(size);
  Trim();
}

void DecimalLimbs::KeepLast(std::size_t digits) noexcept {
  const std::size_t whole = digits / kDigitsPerLimb, part = digits % kDigitsPerLimb;
  if (whole >= m_size) return;
  m_size = static_cast<std::uint32_t>(whole + 1);
  Run().back() %= kPowersOfTen[part];
  Trim();
}

}  // namespace OvXmlLib16
