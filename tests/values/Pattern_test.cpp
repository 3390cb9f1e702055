#include "ovxmllib/values/Pattern.h"

#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/values/PatternTranslator.h"
#include "ovxmllib/values/PrimitiveRestrictions.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using test::ReadVectors;

std::string Repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

WString MessageFor(const std::string& pattern, WStringView value = u"a") {
  return MessageOf([&] { MatchesPattern(pattern, value); });
}

bool IsGivenUp(const std::string& pattern, WStringView value) {
  return MessageFor(pattern, value).starts_with(u"The check of a value against the regular expression ");
}

TEST(Pattern, DecidesOnTheWholeValue) {
  for (const auto& row : ReadVectors("values/pattern.vec", "verdicts")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(MatchesPattern(row["pattern"], row.Wide("value")), row["matches"] == "yes");
    EXPECT_EQ(MatchesPattern(row.Wide("pattern"), row.Wide("value")), row["matches"] == "yes");
  }
}

TEST(Pattern, RefusesWhatItWouldMisunderstand) {
  for (const auto& row : ReadVectors("values/pattern.vec", "refused")) {
    SCOPED_TRACE(row.Place());
    EXPECT_EQ(MessageFor(row["pattern"]),
              FormatString(u"Invalid Regular Expression: %s Error: '%s'", row["pattern"], row["reason"]));
  }
}

TEST(Pattern, ComplementOfInitialTakesColonAsSpecified) {
  EXPECT_TRUE(MatchesPattern("\\i", u":"));
  EXPECT_TRUE(MatchesPattern("\\I", u":"));
}

TEST(Pattern, RefusesTextThatIsNone) {
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { MatchesPattern(".*", WString(u"ab") + WChar{0xD800}); }),
            u"The text holds the unpaired surrogate U+D800 at position 2.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { MatchesPattern(WString(1, WChar{0xDC00}), u""); }),
            u"The text holds the unpaired surrogate U+DC00 at position 0.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { MatchesPattern("a\xC3", u"a"); }),
            u"The bytes are no UTF-8 text at position 1.");
  EXPECT_TRUE(MatchesPattern(std::string_view("a\0b", 3), WStringView(u"a\0b", 3)));
}

TEST(Pattern, GivesUpRunawayMatches) {
  const WString hostile = WString(30, u'a') + u'!';
  for (const char* const pattern : {"(a+)+$", "(a|aa)+", "(a?){40}a{40}b?", "([a-z]+)*", "((a|a)(a|a))*"}) {
    EXPECT_TRUE(IsGivenUp(pattern, WString(30, u'a') + hostile)) << pattern;
  }
  EXPECT_TRUE(MatchesPattern("(a+)+$", WString(30, u'a')));
  EXPECT_TRUE(IsGivenUp("(a+)+$", hostile));
}

TEST(Pattern, BoundsWhatLongValuesCost) {
  const WString longValue(10'000'000, u'a');
  EXPECT_TRUE(MatchesPattern("\\i\\c*", longValue));
  EXPECT_FALSE(MatchesPattern("[a-z]*!", longValue));
  EXPECT_TRUE(IsGivenUp("(a|b)*c", longValue));
  EXPECT_TRUE(IsGivenUp("(a+)+$", longValue + u"!"));
  EXPECT_TRUE(MatchesPattern("(a|b)*", longValue.substr(0, 40'000)));  // beyond the first stack
}

TEST(Pattern, BoundsWhatPatternsCost) {
  EXPECT_TRUE(MatchesPattern(std::string(20'000, 'a'), WString(20'000, u'a')));
  EXPECT_TRUE(MessageFor(std::string(kMaxPatternLength + 1, 'a')).ends_with(u"Error: 'too long'"));

  const auto nested = [](std::size_t depth) { return Repeated("(", depth) + "a" + Repeated(")", depth); };
  EXPECT_TRUE(MatchesPattern(nested(kMaxPatternNesting), u"a"));
  EXPECT_TRUE(MessageFor(nested(kMaxPatternNesting + 1)).ends_with(u"Error: 'parentheses are too deeply nested'"));
  EXPECT_TRUE(MessageFor(Repeated("(", 50'000)).ends_with(u"Error: 'parentheses are too deeply nested'"));

  const auto subtracted = [](std::size_t depth) { return Repeated("[a-", depth) + "[b]" + Repeated("]", depth); };
  EXPECT_TRUE(MatchesPattern(subtracted(kMaxPatternNesting - 1), u"a"));
  EXPECT_TRUE(MessageFor(subtracted(10'000)).ends_with(u"Error: 'subtractions are too deeply nested'"));
}

TEST(Pattern, RestrictionsKeepTheOrderOfTheirArguments) {
  const CPrimitiveRestrictions none;
  const CPrimitiveRestrictions all(u"p", 1, 2, u"least", u"most", u"above", u"below", 3, 4, 5);
  EXPECT_TRUE(none.m_pattern.empty() && none.m_minInclusive.empty() && none.m_maxExclusive.empty());
  EXPECT_EQ(none.m_minLength + none.m_maxLength + none.m_length + none.m_totalDigits + none.m_fractionDigits, -5);
  EXPECT_EQ(all.m_pattern + all.m_minInclusive + all.m_maxInclusive + all.m_minExclusive + all.m_maxExclusive,
            u"pleastmostabovebelow");
  EXPECT_EQ((std::vector{all.m_minLength, all.m_maxLength, all.m_length, all.m_totalDigits, all.m_fractionDigits}),
            (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_TRUE(CPrimitiveRestrictions(nullptr, -1, -1, nullptr, u"", u"", u"", -1, -1, -1).m_minInclusive.empty());
}

// More patterns than the cache holds, so that what one thread uses is dropped by another.
TEST(ThreadsPattern, ShareTheCache) {
  constexpr std::size_t kThreads = 3;
  constexpr std::size_t kPatterns = kMaxCachedPatterns + 100;
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t number = 0; number < kThreads; ++number) {
    threads.emplace_back([&start, number] {
      start.arrive_and_wait();
      for (std::size_t i = 0; i < 2 * kPatterns; ++i) {
        const std::string own = std::to_string((i + number * 7) % kPatterns);
        EXPECT_TRUE(MatchesPattern("[a-f]" + own + "|x", ToWide("b" + own)));
        EXPECT_FALSE(MatchesPattern("[a-f]+", u"abx"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// A value that is checked while the thread's own data goes.
TEST(ThreadsPattern, WorkToTheEndOfAThread) {
  static bool matched = false;
  std::thread([] {
    struct Late {
      ~Late() { matched = MatchesPattern("late+", u"lateee"); }
    };
    thread_local const Late late;
    static_cast<void>(&late);
    EXPECT_TRUE(MatchesPattern("a", u"a"));  // made after `late`, and so gone before it
  }).join();
  EXPECT_TRUE(matched);
}

}  // namespace
}  // namespace OvXmlLib16
