#include "ovxmllib/foundation/WhitespaceUtils.h"

#include <algorithm>

#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

// Puts `replacement` in the place of each character that `isReplaced` picks, which must pick CR, and of each CR LF
// pair.
template <class Predicate>
WString ReplaceEach(WStringView value, WChar replacement, Predicate isReplaced) {
  WString result;
  result.reserve(value.size());
  for (auto i = value.begin(); i != value.end();) {
    const auto runEnd = std::find_if(i, value.end(), isReplaced);
    result.append(i, runEnd);
    if (runEnd == value.end()) break;
    result += replacement;
    i = runEnd + 1;
    if (*runEnd == u'\r' && i != value.end() && *i == u'\n') ++i;
  }
  return result;
}

}  // namespace

WString CWhitespaceUtils::ApplyRule(WhitespaceRule rule, WStringView value) {
  switch (rule) {
    case WhitespaceRule_None:
      return WString(value);
    case WhitespaceRule_Preserve:
      return Preserve(value);
    case WhitespaceRule_Replace:
      return Replace(value);
    case WhitespaceRule_Collapse:
      return Collapse(value);
  }
  throw COvException(u"Unknown WhitespaceRule");
}

WString CWhitespaceUtils::Preserve(WStringView value) {
  return ReplaceEach(value, u'\n', [](WChar c) { return c == u'\r'; });
}

WString CWhitespaceUtils::Replace(WStringView value) {
  return ReplaceEach(value, u' ', [](WChar c) { return c != u' ' && IsWhiteSpace(c); });
}

WString CWhitespaceUtils::Collapse(WStringView value) {
  WString result;
  result.reserve(value.size());
  for (auto i = value.begin(); i != value.end();) {
    const auto wordStart = std::find_if_not(i, value.end(), IsWhiteSpace);
    if (wordStart == value.end()) break;
    if (!result.empty()) result += u' ';
    i = std::find_if(wordStart, value.end(), IsWhiteSpace);
    result.append(wordStart, i);
  }
  return result;
}

}  // namespace OvXmlLib16
