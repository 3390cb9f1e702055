// Patterns: any pattern against any value gives a verdict or a COvException, in bounded time, and the same from the
// cache; a text that is quoted matches itself and nothing longer.
//
// Input: a byte how long the pattern is, the pattern, then the value, both as UTF-8 of which what is none is replaced.

#include <chrono>
#include <string>
#include <string_view>

#include "fuzz/Input.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/values/Pattern.h"

namespace OvXmlLib16::fuzz {
namespace {

// What a match came to: a message, or "yes" or "no".
WString OutcomeOf(const auto& pattern, WStringView value) {
  bool matches = false;
  const auto failure = FailureOf([&] { matches = MatchesPattern(pattern, value); });
  return failure ? failure->GetMessage() : matches ? u"yes" : u"no";
}

constexpr bool IsAlphanumeric(WChar c) {
  return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

WString Quoted(WStringView text) {
  WString result;
  for (const WChar c : text) {
    if (c < 0x80 && !IsAlphanumeric(c)) result += u'\\';
    result += c;
  }
  return result;
}

void Run(Input input) {
  const std::size_t length = input.TakeByte();
  const WString pattern = unicode::ToWideLossy(CharactersOf(input.Take(length)));
  const WString text = unicode::ToWideLossy(CharactersOf(input.TakeRest()));
  const ExactText value(text);

  const auto start = std::chrono::steady_clock::now();
  const WString outcome = OutcomeOf(ToUtf8(pattern), value.View());
  Require(std::chrono::steady_clock::now() - start < std::chrono::seconds(10), "a match ends in time");
  Require(OutcomeOf(ExactText(pattern).View(), value.View()) == outcome, "the cached pattern gives the same outcome");

  if (text.size() > 1'000) return;
  Require(MatchesPattern(Quoted(text), value.View()), "a quoted text matches itself");
  Require(!MatchesPattern(Quoted(text), text + u'\n'), "a quoted text matches nothing longer");
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
