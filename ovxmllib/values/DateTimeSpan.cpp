#include "ovxmllib/values/DateTimeSpan.h"

#include <limits>
#include <ostream>
#include <span>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/DateTimeDigits.h"
#include "ovxmllib/values/DateTimeFields.h"

namespace OvXmlLib16 {

namespace {

constexpr unsigned kDateTimeFields = datetime::FieldsOf(CDateTime::dt_dateTime);

// The moments of XML Schema Part 2, section 3.2.6.2.
constexpr datetime::Fields kReferences[] = {{1696, 9, 1}, {1697, 2, 1}, {1903, 3, 1}, {1903, 7, 1}};

datetime::Fields SumOf(datetime::Fields reference, const CDateTimeSpan& span) noexcept {
  datetime::Add(reference, kDateTimeFields, span);
  return reference;
}

[[noreturn]] void ThrowBadDuration(WStringView text) {
  throw COvInvalidValueException(
      FormatString(u"Invalid XSD Duration [%s] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]", text));
}

// What has been read so far. The designator decides on the next stage; 'Y' goes back to the first.
enum Stage : unsigned {
  kStart,
  kYears,
  kMonths,
  kDays,
  kTimeBegun,  // behind 'T'
  kHours,
  kMinutes,
  kSeconds,   // also behind '.', when nothing follows
  kFraction,  // behind the 'S' of a fraction
};

constexpr unsigned kAnyStage = ~0u;

// The bits of the stages `first` to `last`.
constexpr unsigned StagesFrom(Stage first, Stage last) noexcept { return (2u << last) - (1u << first); }

struct Designator {
  WChar letter;
  unsigned allowed;  // a bit for each stage
  Stage next;
  std::uint64_t max;  // the largest number ahead of it
};

constexpr std::uint64_t kMax32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t kMax64 = std::numeric_limits<std::uint64_t>::max();

// 'M' stands twice: its stages tell months from minutes.
constexpr Designator kDesignators[] = {
    // Deliberate: years may stand behind any component; their number is cut to 16 bits.
    {u'Y', kAnyStage, kYears, std::numeric_limits<std::int32_t>::max()},
    {u'M', StagesFrom(kStart, kYears), kMonths, kMax32},
    {u'M', StagesFrom(kTimeBegun, kHours), kMinutes, kMax64},
    {u'D', StagesFrom(kStart, kMonths), kDays, kMax32},
    // Deliberate: a number ahead of 'T' means nothing.
    {u'T', StagesFrom(kStart, kDays), kTimeBegun, kMax64},
    {u'H', StagesFrom(kTimeBegun, kTimeBegun), kHours, kMax32},
    {u'S', StagesFrom(kTimeBegun, kMinutes), kSeconds, kMax64},
    {u'.', StagesFrom(kTimeBegun, kMinutes), kSeconds, kMax64},
};

const Designator* FindDesignator(WChar letter, Stage stage) noexcept {
  for (const Designator& each : kDesignators) {
    if (each.letter == letter && (each.allowed >> stage & 1u) != 0) return &each;
  }
  return nullptr;
}

// Takes digits, none of which make 0, from the front of `text`. False beyond 64 bits.
bool TakeNumber(WStringView& text, std::uint64_t& number) noexcept {
  std::size_t count = 0;
  number = 0;
  for (; count < text.size() && datetime::IsDigit(text[count]); ++count) {
    const auto digit = static_cast<std::uint64_t>(text[count] - u'0');
    if (number > (kMax64 - digit) / 10) return false;
    number = number * 10 + digit;
  }
  text.remove_prefix(count);
  return true;
}

WChar* PutComponent(WChar* out, std::uint64_t number, WChar designator) noexcept {
  if (number == 0) return out;
  out = datetime::PutNumber(out, number);
  *out++ = designator;
  return out;
}

}  // namespace

CDateTimeSpan::CDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds) noexcept
    : CDateTimeSpan(0, 0, 0, hours, minutes, seconds) {}

CDateTimeSpan::CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                             std::uint64_t minutes, std::uint64_t seconds) noexcept
    : CDateTimeSpan(years, months, days, hours, minutes, seconds, 0, 0, 0) {}

CDateTimeSpan::CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                             std::uint64_t minutes, std::uint64_t seconds, std::uint16_t milli, std::uint16_t micro,
                             std::uint16_t nano) noexcept
    : m_years(years),
      m_months(months),
      m_days(days),
      m_hours(hours),
      m_minutes(minutes),
      m_seconds(seconds),
      m_milliSeconds(milli),
      m_microSeconds(micro),
      m_nanoSeconds(nano) {}

void CDateTimeSpan::SetDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds) noexcept {
  *this = CDateTimeSpan(hours, minutes, seconds);
}

void CDateTimeSpan::SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                                    std::uint64_t minutes, std::uint64_t seconds) noexcept {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds);
}

void CDateTimeSpan::SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                                    std::uint64_t minutes, std::uint64_t seconds, std::uint16_t milli,
                                    std::uint16_t micro, std::uint16_t nano) noexcept {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds, milli, micro, nano);
}

// Deliberate: negative whatever the sign was, so the negative of a negative span is itself.
CDateTimeSpan CDateTimeSpan::GetAsNegative() const noexcept {
  CDateTimeSpan result = *this;
  result.m_negative = true;
  return result;
}

void CDateTimeSpan::ParseXSDDuration(const WChar* text) {
  *this = CDateTimeSpan();
  if (text == nullptr) throw COvInvalidValueException(u"Invalid XSD Duration (Null String)");
  ParseXSDDuration(WStringView(text));
}

// ["-"] "P" [n "Y"] [n "M"] [n "D"] ["T" [n "H"] [n "M"] [n ["." digits] "S"]]
void CDateTimeSpan::ParseXSDDuration(WStringView text) {
  *this = CDateTimeSpan();
  if (text.empty()) throw COvInvalidValueException(u"Invalid XSD Duration (Empty String)");
  WStringView rest = text;
  m_negative = rest.front() == u'-';
  if (m_negative) rest.remove_prefix(1);
  if (!rest.starts_with(u'P')) ThrowBadDuration(text);
  rest.remove_prefix(1);
  unsigned stage = kStart;
  while (!rest.empty()) stage = TakeComponent(rest, stage, text);
  if (stage == kStart || stage == kTimeBegun) ThrowBadDuration(text);
}

unsigned CDateTimeSpan::TakeComponent(WStringView& rest, unsigned stage, WStringView text) {
  std::uint64_t number = 0;
  if (!TakeNumber(rest, number) || rest.empty()) ThrowBadDuration(text);
  const Designator* const designator = FindDesignator(rest.front(), static_cast<Stage>(stage));
  if (designator == nullptr || number > designator->max) ThrowBadDuration(text);
  rest.remove_prefix(1);
  switch (designator->next) {
    case kYears:
      m_years = static_cast<std::uint16_t>(number);
      break;
    case kMonths:
      m_months = static_cast<std::uint32_t>(number);
      break;
    case kDays:
      m_days = static_cast<std::uint32_t>(number);
      break;
    case kHours:
      m_hours = static_cast<std::uint32_t>(number);
      break;
    case kMinutes:
      m_minutes = number;
      break;
    case kSeconds:
      m_seconds = number;
      // Deliberate: a text may end behind the point.
      if (designator->letter == u'.' && !rest.empty()) return TakeFraction(rest, text);
      break;
    default:
      break;
  }
  return designator->next;
}

unsigned CDateTimeSpan::TakeFraction(WStringView& rest, WStringView text) {
  datetime::Fraction fraction;
  const std::size_t count = datetime::ReadFraction(rest, fraction);
  if (count > datetime::kMaxFractionDigits) {
    throw COvInvalidValueException(FormatString(u"Invalid XSD Duration [%s] Fraction part too long", text));
  }
  m_milliSeconds = fraction.milli;
  m_microSeconds = fraction.micro;
  m_nanoSeconds = fraction.nano;
  rest.remove_prefix(count);
  if (!rest.starts_with(u'S')) ThrowBadDuration(text);
  rest.remove_prefix(1);
  return kFraction;
}

void CDateTimeSpan::AppendTo(WString& out) const {
  WChar buffer[128];  // the longest value has 6 + 3 * 11 + 2 * 21 + 15 units and -PT.
  WChar* end = buffer;
  if (m_negative) *end++ = u'-';
  *end++ = u'P';
  end = PutComponent(end, m_years, u'Y');
  end = PutComponent(end, m_months, u'M');
  end = PutComponent(end, m_days, u'D');
  const bool hasFraction = (m_milliSeconds | m_microSeconds | m_nanoSeconds) != 0;
  if ((m_hours | m_minutes | m_seconds) != 0 || hasFraction) {
    *end++ = u'T';
    end = PutComponent(end, m_hours, u'H');
    end = PutComponent(end, m_minutes, u'M');
    if (m_seconds != 0 || hasFraction) {
      end = datetime::PutNumber(end, m_seconds);
      end = datetime::PutFraction(end, {m_milliSeconds, m_microSeconds, m_nanoSeconds});
      *end++ = u'S';
    }
  }
  out.append(buffer, end);
}

WString CDateTimeSpan::ToString() const {
  WString result;
  AppendTo(result);
  return result;
}

CDateTime::DTCompareResult CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const noexcept {
  const auto compareFrom = [&](const datetime::Fields& reference) {
    return datetime::Compare(SumOf(reference, *this), kDateTimeFields, SumOf(reference, other), kDateTimeFields);
  };
  const CDateTime::DTCompareResult first = compareFrom(kReferences[0]);
  for (const datetime::Fields& reference : std::span(kReferences).subspan<1>()) {
    if (compareFrom(reference) != first) return CDateTime::dtc_indeterminate;
  }
  return first;
}

std::partial_ordering CDateTimeSpan::operator<=>(const CDateTimeSpan& other) const noexcept {
  return datetime::OrderingOf(CompareTo(other));
}

std::size_t CDateTimeSpan::GetHash() const noexcept {
  return datetime::HashOf(SumOf(kReferences[0], *this), kDateTimeFields);
}

CDateTimeSpan CDateTimeSpan::FromChrono(std::chrono::nanoseconds duration) noexcept {
  const bool isNegative = duration.count() < 0;
  const auto bits = static_cast<std::uint64_t>(duration.count());
  const std::uint64_t magnitude = isNegative ? 0 - bits : bits;
  return datetime::MakeSpan(isNegative, magnitude / 1'000'000'000,
                            static_cast<std::uint32_t>(magnitude % 1'000'000'000));
}

std::chrono::nanoseconds CDateTimeSpan::ToChrono() const {
  if ((m_years | m_months) != 0) {
    throw COvInvalidStateException(FormatString(u"The duration [%s] has no fixed length.", ToString()));
  }
  const struct {
    std::uint64_t amount;
    std::int64_t unit;
  } components[] = {{m_days, 86'400'000'000'000},
                    {m_hours, 3'600'000'000'000},
                    {m_minutes, 60'000'000'000},
                    {m_seconds, 1'000'000'000},
                    {m_milliSeconds, 1'000'000},
                    {m_microSeconds, 1'000},
                    {m_nanoSeconds, 1}};
  std::int64_t sum = 0;
  bool overflows = false;
  for (const auto& [amount, unit] : components) {
    std::int64_t product = 0;
    overflows |= __builtin_mul_overflow(amount, m_negative ? -unit : unit, &product);
    overflows |= __builtin_add_overflow(sum, product, &sum);
  }
  if (overflows) {
    throw COvOverFlowException(FormatString(u"The duration [%s] does not fit in 64 bits of nanoseconds.", ToString()));
  }
  return std::chrono::nanoseconds(sum);
}

std::ostream& operator<<(std::ostream& out, const CDateTimeSpan& span) { return out << ToUtf8(span.ToString()); }

}  // namespace OvXmlLib16
