#include "ovxmllib/values/DateTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <type_traits>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/DateTimeSpan.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using test::ReadVectors;
using test::VectorRow;

constexpr const char* kFile = "values/date_time.vec";

constexpr std::string_view kTypeNames[] = {"yearZero", "dateTime", "date",   "gYearMonth", "gYear",
                                           "time",     "gDay",     "gMonth", "gMonthDay"};
// By DTCompareResult: its name, and what the exchanged sides give.
constexpr std::string_view kResults[] = {"equal", "less", "greater", "indeterminate"};
constexpr CDateTime::DTCompareResult kReversed[] = {CDateTime::dtc_equal, CDateTime::dtc_greater, CDateTime::dtc_less,
                                                    CDateTime::dtc_indeterminate};

CDateTime::DTType TypeNamed(std::string_view name) {
  return static_cast<CDateTime::DTType>(std::find(std::begin(kTypeNames), std::end(kTypeNames), name) - kTypeNames);
}

CDateTime Parsed(std::string_view parser, WStringView text) {
  CDateTime value(CDateTime::dt_gDay);
  value.SetTimeZone(5, 0);  // parsing forgets type and zone
  if (parser == "dateTime") {
    value.ParseXSDDateTime(text);
  } else if (parser == "date") {
    value.ParseXSDDate(text);
  } else {
    value.ParseXSDTime(text);
  }
  return value;
}

CDateTime Value(WStringView text) {
  if (text.find(u'T') != WStringView::npos) return Parsed("dateTime", text);
  return Parsed(text.substr(2, 1) == u":" ? "time" : "date", text);
}

CDateTimeSpan Span(WStringView text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(text);
  return span;
}

// What `call` prints, or "! " and the message that it throws.
template <class Call>
WString Outcome(const Call& call) {
  try {
    return call().ToString();
  } catch (const COvException& exception) {
    return u"! " + exception.GetMessage();
  }
}

TEST(DateTime, ParsesAndPrintsAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "parse")) {
    SCOPED_TRACE(row.Place());
    const CDateTime value = Parsed(row["parser"], row.Wide("text"));
    EXPECT_EQ(value.GetTypeAsString(), row.Wide("type"));
    EXPECT_EQ(value.ToString(), row.Wide("prints"));
    const bool hasDate = row["parser"] != "time";
    const CDateTime again = Parsed(value.GetType() == CDateTime::dt_dateTime ? "dateTime"
                                   : hasDate                                 ? "date"
                                                                             : "time",
                                   value.ToString());
    EXPECT_EQ(value, again);
    std::ostringstream out;
    out << again;
    EXPECT_EQ(out.str(), row["prints"]);
  }
}

TEST(DateTime, RefusesWithMessagesAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "refuse")) {
    SCOPED_TRACE(row.Place());
    const auto parse = [&] { Parsed(row["parser"], row.Wide("text")); };
    EXPECT_EQ(MessageOf<COvInvalidValueException>(parse), row.Wide("message"));
  }
  const WChar* const none = nullptr;
  CDateTime value;
  EXPECT_EQ(MessageOf([&] { value.ParseXSDDateTime(none); }), u"Invalid DateTime (Null String)");
  EXPECT_EQ(MessageOf([&] { value.ParseXSDDate(none); }), u"Invalid Date (Null String)");
  EXPECT_EQ(MessageOf([&] { value.ParseXSDTime(none); }), u"Invalid Time (Null String)");
  EXPECT_EQ(MessageOf([] { CDateTime(u"12:00:00"); }), u"Invalid XSD DateTime [12:00:00].");
}

// Every prefix of a text, and every text with one character replaced, parses or throws; views are not terminated.
TEST(DateTime, SurvivesEveryTruncationAndReplacement) {
  for (const WStringView whole : {u"2000-01-02T03:04:05.678901234+05:30", u"-2000-01-02-05:30", u"--01--Z", u"---01"}) {
    for (std::size_t i = 0; i < whole.size(); ++i) {
      for (const WChar c : WStringView(u"-+:.TZ0\0\uFFFF", 9)) {
        WString text(whole);
        text[i] = c;
        text.shrink_to_fit();
        for (const char* parser : {"dateTime", "date", "time"}) {
          Outcome([&] { return Parsed(parser, text); });
          Outcome([&] { return Parsed(parser, WStringView(text).substr(0, i)); });
          Outcome([&] { return Parsed(parser, WStringView(text).substr(i)); });
        }
      }
    }
  }
}

TEST(DateTime, SettersValidateAsSpecified) {
  CDateTime date;
  EXPECT_EQ(MessageOf([&] { date.SetDate(2001, 2, 29); }), u"Invalid Day [29] (1 <= day <= days in month");
  date.SetDate(2000, 2, 29);
  date.SetUTC();
  date.SetDate(2000, 2, 28);
  EXPECT_EQ(date.ToString(), u"2000-02-28");  // the zone is gone
  EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { date.SetGDay(1); }),
            u"Failed to copy CDateTime. Invalid Date Type: gDay, expected: date.");
  EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { date = 0; }),
            u"Failed to copy CDateTime. Invalid Date Type: dateTime, expected: date.");

  const auto time = [](std::uint8_t h, std::uint8_t m, std::uint8_t s, std::uint16_t ms, std::uint16_t us,
                       std::uint16_t ns) {
    CDateTime value;
    return MessageOf<COvInvalidValueException>([&] { value.SetTime(h, m, s, ms, us, ns); });
  };
  EXPECT_EQ(time(24, 60, 0, 0, 0, 0), u"Invalid Hour [24] (0 <= hour <= 23)");
  EXPECT_EQ(time(23, 60, 60, 0, 0, 0), u"Invalid Minute [60] (0 <= minute <= 59)");
  EXPECT_EQ(time(23, 59, 60, 1000, 0, 0), u"Invalid Second [60] (0 <= second <= 59)");
  EXPECT_EQ(time(23, 59, 59, 1000, 1000, 0), u"Invalid Milli-Second [1000] (0 <= milli <= 999)");
  EXPECT_EQ(time(23, 59, 59, 999, 1000, 1000), u"Invalid Micro-Second [1000] (0 <= micro <= 999)");
  EXPECT_EQ(time(23, 59, 59, 999, 999, 1000), u"Invalid Nano-Second [1000] (0 <= nano <= 999)");
}

TEST(DateTime, EachSetterMakesItsType) {
  const auto made = [](auto set) {
    CDateTime value;
    set(value);
    return value.ToString();
  };
  EXPECT_EQ(made([](CDateTime& v) { v.SetDateTime(1, 2, 3, 4, 5, 6); }), u"0001-02-03T04:05:06");
  EXPECT_EQ(made([](CDateTime& v) { v.SetDateTime(1, 2, 3, 4, 5, 6, 7, 8, 9); }), u"0001-02-03T04:05:06.007008009");
  EXPECT_EQ(made([](CDateTime& v) { v.SetTime(4, 5, 6); }), u"04:05:06");
  EXPECT_EQ(made([](CDateTime& v) { v.SetFracTime(0, 0, 10); }), u"00:00:00.00000001");
  EXPECT_EQ(made([](CDateTime& v) { v.SetGYear(-12); }), u"-0012");
  EXPECT_EQ(made([](CDateTime& v) { v.SetGYearMonth(12, 3); }), u"0012-03");
  EXPECT_EQ(made([](CDateTime& v) { v.SetGMonth(3); }), u"--03");
  EXPECT_EQ(made([](CDateTime& v) { v.SetGMonthDay(3, 4); }), u"--03-04");
  EXPECT_EQ(made([](CDateTime& v) { v.SetGDay(4); }), u"---04");
  EXPECT_EQ(CDateTime(1, 2, 3, 4, 5, 6, 7, 8, 9).ToString(), u"0001-02-03T04:05:06.007008009");
}

TEST(DateTime, ConstructorsSwallowInvalidValuesAsSpecified) {
  const CDateTime values[] = {{2001, 2, 29},
                              {2001, 2, 1, 24, 0, 0},
                              platform::FileTime{0, 0x80000000},
                              platform::SystemTime{.wYear = 2000, .wMonth = 257, .wDay = 1}};
  for (const CDateTime& value : values) {
    EXPECT_EQ(value.GetType(), CDateTime::dt_yearZero);
    EXPECT_EQ(value.ToString(), u"Error: Date Not Set");
    EXPECT_EQ(value, CDateTime());
  }
  EXPECT_EQ(MessageOf([] { CDateTime(static_cast<CDateTime::DTType>(9)); }), u"Unknown date type 9.");
}

TEST(DateTime, FieldsBelongToTypesAsSpecified) {
  using Getter = void (*)(const CDateTime&);
  using Setter = void (*)(CDateTime&);
  const struct {
    WString message;
    std::string_view types;  // by DTType, x for those that have the field
    Getter get;
    Setter set;
  } fields[] = {
      {u"GetYear", ".xxxx....", [](const CDateTime& v) { v.GetYear(); }, [](CDateTime& v) { v.SetYear(1); }},
      {u"GetMonth", ".xxx...xx", [](const CDateTime& v) { v.GetMonth(); }, [](CDateTime& v) { v.SetMonth(1); }},
      {u"GetDay", ".xx...x.x", [](const CDateTime& v) { v.GetDay(); }, [](CDateTime& v) { v.SetDay(1); }},
      {u"GetHour", ".x...x...", [](const CDateTime& v) { v.GetHour(); }, [](CDateTime& v) { v.SetHour(1); }},
      {u"GetMinute", ".x...x...", [](const CDateTime& v) { v.GetMinute(); }, [](CDateTime& v) { v.SetMinute(1); }},
      {u"GetSecond", ".x...x...", [](const CDateTime& v) { v.GetSecond(); }, [](CDateTime& v) { v.SetSecond(1); }},
      {u"GetRealSecond", ".x...x...", [](const CDateTime& v) { v.GetRealSecond(); }, nullptr},
      {u"GetMilliSecond", ".x...x...", [](const CDateTime& v) { v.GetMilliSecond(); },
       [](CDateTime& v) { v.SetMilliSecond(1); }},
      {u"GetMicroSecond", ".x...x...", [](const CDateTime& v) { v.GetMicroSecond(); },
       [](CDateTime& v) { v.SetMicroSecond(1); }},
      {u"GetNanoSecond", ".x...x...", [](const CDateTime& v) { v.GetNanoSecond(); },
       [](CDateTime& v) { v.SetNanoSecond(1); }},
      {u"GetDayOfWeek", ".xx......", [](const CDateTime& v) { v.GetDayOfWeek(); }, nullptr},
      {u"GetDayOfYear", ".xx......", [](const CDateTime& v) { v.GetDayOfYear(); }, nullptr},
  };
  for (const auto& field : fields) {
    for (std::size_t i = 0; i < std::size(kTypeNames); ++i) {
      CDateTime value(static_cast<CDateTime::DTType>(i));
      if (i != 0 && i < 4) value.SetYear(2000);
      if (i != 0 && i < 4) value.SetMonth(1);
      const WString expected = field.types[i] == 'x' ? u"(nothing was thrown)"
                                                     : u"Failed to " + field.message + u". Invalid Date Type: " +
                                                           ToWide(kTypeNames[i]) + u".";
      EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { field.get(value); }), expected);
      if (field.set != nullptr) {
        EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { field.set(value); }), expected);
      }
    }
  }
}

TEST(DateTime, ZoneFieldsNeedAnOffset) {
  CDateTime value = Value(u"12:00:00-05:30");
  EXPECT_EQ(value.GetZoneHour(), -5);
  EXPECT_EQ(value.GetZoneMinute(), 30);
  value.SetUTC();
  EXPECT_TRUE(value.IsUTC());
  EXPECT_FALSE(value.HasTimeZone());
  EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { value.GetZoneHour(); }), u"TimeZone is not been used");
  EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { value.GetZoneMinute(); }), u"TimeZone is not been used");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { value.SetTimeZone(-24, 1); }), u"Invalid TimeZone [-24:1]");
}

TEST(DateTime, ConversionKeepsFieldsThatTheTypeLacksAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "convert")) {
    SCOPED_TRACE(row.Place());
    CDateTime value(CDateTime::dt_time);
    const auto convert = [&] { value.SetDateTime(Value(row.Wide("source")), TypeNamed(row["target"])); };
    EXPECT_EQ(MessageOf<COvInvalidValueException>(convert), row.Wide("message"));
  }
  for (const VectorRow& row : ReadVectors(kFile, "lacking")) {
    SCOPED_TRACE(row.Place());
    CDateTime value;
    value.SetDateTime(Value(row.Wide("source")), TypeNamed(row["target"]));
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { value.Validate(); }), row.Wide("message"));
  }
  const auto unknown = static_cast<CDateTime::DTType>(-1);
  EXPECT_EQ(MessageOf([&] { CDateTime::CheckConversion(unknown, CDateTime::dt_date); }), u"Unknown date type -1.");
  EXPECT_FALSE(CDateTime::CheckConversion(CDateTime::dt_dateTime, unknown));
}

TEST(DateTime, FormatsAsSpecified) {
  const CDateTime value = Value(u"2000-01-02");
  EXPECT_EQ(value.ToString(u"s"), u"2000-01-02");
  EXPECT_EQ(value.ToString(u"G"), u"");
  EXPECT_EQ(value.ToString(u""), u"");
  EXPECT_EQ(value.ToString(nullptr), u"");
  EXPECT_EQ(value.ToString(u"yyyy"), u"Unknown Format: yyyy");
  EXPECT_EQ(CDateTime().ToString(u"G"), u"Error: Date Not Set");
  EXPECT_EQ(CDateTime(CDateTime::dt_date).ToString(), u"Error: Date Not Set");
  EXPECT_EQ(CDateTime(CDateTime::dt_time).ToString(), u"00:00:00");
}

TEST(DateTime, PrintsWhateverSettersStoreAsSpecified) {
  CDateTime value(CDateTime::dt_dateTime);
  value.SetYear(std::numeric_limits<std::int16_t>::min());
  value.SetMonth(255), value.SetDay(255), value.SetHour(255), value.SetMinute(255), value.SetSecond(255);
  value.SetMilliSecond(65535), value.SetMicroSecond(65535), value.SetNanoSecond(65535);
  value.SetTimeZone(-23, 59);
  EXPECT_EQ(value.ToString(), u"-32768-255-255T255:255:255.655356553565535-23:59");
  EXPECT_NE(value, CDateTime());
  EXPECT_EQ(MessageOf([&] { value.GetDayOfYear(); }), u"Invalid Month [255] (1 <= month <= 12)");
  EXPECT_EQ(value - value, CDateTimeSpan());
}

TEST(DateTime, ComparesInPartialOrderAsSpecified) {
  for (const VectorRow& row : ReadVectors(kFile, "compare")) {
    SCOPED_TRACE(row.Place());
    const CDateTime a = Value(row.Wide("a")), b = Value(row.Wide("b"));
    const auto forward = a.CompareTo(b), back = b.CompareTo(a);
    EXPECT_EQ(kResults[forward], row["result"]);
    EXPECT_EQ(back, kReversed[forward]);
    EXPECT_EQ(a < b, forward == CDateTime::dtc_less);
    EXPECT_EQ(a >= b, forward == CDateTime::dtc_greater || forward == CDateTime::dtc_equal);
    EXPECT_EQ(a != b, forward != CDateTime::dtc_equal);
    if (a == b) {
      EXPECT_EQ(std::hash<CDateTime>()(a), std::hash<CDateTime>()(b));
    }
  }
}

TEST(DateTime, NormalizesAsSpecified) {
  EXPECT_EQ(Value(u"2000-01-01T01:00:00+05:30").GetNormalized().ToString(), u"1999-12-31T19:30:00+00:00");
  EXPECT_EQ(Value(u"2000-01-01T01:00:00Z").GetNormalized().ToString(), u"2000-01-01T01:00:00Z");
  EXPECT_EQ(Value(u"01:00:00-05:30").GetNormalized().ToString(), u"06:30:00+00:00");
  EXPECT_EQ(Value(u"2000+05:00").GetNormalized().ToString(), u"1999+00:00");  // no month counts as December before
  EXPECT_EQ(Value(u"--01-01+01:00").GetNormalized().ToString(), u"--12-31+00:00");
}

TEST(DateTime, AddsDurations) {
  for (const VectorRow& row : ReadVectors(kFile, "add")) {
    SCOPED_TRACE(row.Place());
    const CDateTime value = Value(row.Wide("value"));
    const CDateTimeSpan span = Span(row.Wide("span"));
    EXPECT_EQ(Outcome([&] { return value + span; }), row.Wide("sum"));
  }
  CDateTime value = Value(u"9999-12-31");
  for (int i = 0; i < 2; ++i) EXPECT_EQ((value += Span(u"P10000Y")).GetYear(), 19999 + 10000 * i);
  EXPECT_NE(MessageOf<COvOverFlowException>([&] { value += Span(u"P10000Y"); }), u"(nothing was thrown)");
  EXPECT_EQ(value.ToString(), u"29999-12-31");  // unchanged by what failed
}

// A day beyond the end of its month, which only SetDay makes, counts on when days are added and stays when they are
// taken.
TEST(DateTime, AddsToDaysBeyondTheMonthAsSpecified) {
  CDateTime value = Value(u"2000-02-01");
  value.SetDay(31);
  EXPECT_EQ((value + Span(u"P1D")).ToString(), u"2000-03-03");
  EXPECT_EQ((value - Span(u"P1D")).ToString(), u"2000-02-30");
  EXPECT_EQ((value - Span(u"P31D")).ToString(), u"2000-01-31");
}

TEST(DateTime, SubtractsTheMagnitudeOfSpansAsSpecified) {
  const CDateTime value = Value(u"2000-03-01");
  EXPECT_EQ((value - Span(u"P1D")).ToString(), u"2000-02-29");
  EXPECT_EQ((value - Span(u"-P1D")).ToString(), u"2000-02-29");
}

TEST(DateTime, DifferencesAreExact) {
  for (const VectorRow& row : ReadVectors(kFile, "difference")) {
    SCOPED_TRACE(row.Place());
    const CDateTime later = Value(row.Wide("later")), earlier = Value(row.Wide("earlier"));
    EXPECT_EQ(Outcome([&] { return later - earlier; }), row.Wide("span"));
    if (row["span"][0] == '!') continue;
    EXPECT_EQ((earlier - later).ToString(), u"-" + row.Wide("span"));
    EXPECT_EQ(earlier + (later - earlier), later);
    EXPECT_EQ(later + (earlier - later), earlier);
  }
}

TEST(DateTime, SpeaksUnixTimeWhateverTheMachinesZone) {
  ::setenv("TZ", "America/St_Johns", /*overwrite=*/1);
  for (const VectorRow& row : ReadVectors(kFile, "unix")) {
    SCOPED_TRACE(row.Place());
    const CDateTime value(row.Number("seconds"));
    EXPECT_EQ(value.ToString(), row.Wide("prints"));
    if (value.GetType() == CDateTime::dt_yearZero) continue;
    EXPECT_EQ(value.GetTime(), row.Number("seconds"));
    EXPECT_EQ(value.GetDayOfWeek(), row.Number("weekday"));
    EXPECT_EQ(value.GetDayOfYear(), row.Number("yearday"));
  }
  ::unsetenv("TZ");
  EXPECT_EQ(Value(u"2000-01-01+05:00").GetTime(), 946598400);  // the midnight of the day before
  EXPECT_EQ(Value(u"2000-01-01T04:00:00+05:00").GetDayOfWeek(), 6);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { Value(u"2000").GetTime(); }),
            u"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: gYear.");
  EXPECT_EQ(MessageOf<COvInvalidStateException>([] { Value(u"2000").GetDayOfWeek(); }),
            u"Failed to GetDayOfWeek. Invalid Date Type: gYear.");
}

TEST(DateTime, SpeaksPlatformTimes) {
  const CDateTime value(platform::FileTime{0xD53E8000, 0x019DB1DE});  // 1970-01-01
  EXPECT_EQ(value.ToString(), u"1970-01-01T00:00:00");
  const platform::SystemTime time = Value(u"2000-02-29T01:02:03.004005Z").GetAsSystemTime();
  EXPECT_EQ(time.wDayOfWeek, 2);
  EXPECT_EQ(CDateTime(time).ToString(), u"2000-02-29T01:02:03.004");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { Value(u"2000-01-01").GetAsSystemTime(); }),
            u"Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: date.");
  CDateTime target;
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] {
              target = platform::FileTime{0, 0xFFFFFFFF};
            }),
            u"Failed to convert FILETIME to SYSTEMTIME");

  const CDateTime now = CDateTime::GetTickCount();
  EXPECT_EQ(now.GetType(), CDateTime::dt_dateTime);
  EXPECT_FALSE(now.IsUTC());
  const CDateTime utc(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
  EXPECT_LE(std::abs(now.GetTime() - utc.GetTime()), 15 * 3600);
}

TEST(DateTime, SpeaksChrono) {
  using std::chrono::nanoseconds;
  using std::chrono::sys_time;
  for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::int64_t>::max()}) {
    const sys_time<nanoseconds> time{nanoseconds(count)};
    EXPECT_EQ(CDateTime::FromChrono(time).ToSysTime(), time);
  }
  EXPECT_EQ(CDateTime::FromChrono(sys_time<nanoseconds>(nanoseconds(-1))).ToString(),
            u"1969-12-31T23:59:59.999999999Z");
  for (const WStringView text :
       {u"1677-09-21T00:12:43.145224191Z", u"2262-04-11T23:47:16.854775808Z", u"-9999-01-01"}) {
    EXPECT_THROW(Value(text).ToSysTime(), COvOverFlowException);
  }
  const std::chrono::year_month_day date = Value(u"2000-02-29+05:00").ToYearMonthDay();
  EXPECT_EQ(CDateTime::FromChrono(date).ToString(), u"2000-02-29");
  EXPECT_THROW(CDateTime::FromChrono(date + std::chrono::years(1)), COvInvalidValueException);
}

static_assert(std::is_nothrow_copy_constructible_v<CDateTime> && std::is_nothrow_move_assignable_v<CDateTime>);

}  // namespace
}  // namespace OvXmlLib16
