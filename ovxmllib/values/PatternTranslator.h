// Regular expressions of XML Schema (Part 2, appendix F) as patterns of PCRE2.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OvXmlLib16 {

/// The longest pattern that is taken, in bytes of UTF-8; the most parentheses and subtractions open at a time; and how
/// large a pattern may become when its counted repetitions are written out, in bytes.
inline constexpr std::size_t kMaxPatternLength = 65'536;
inline constexpr std::size_t kMaxPatternNesting = 200;
inline constexpr std::size_t kMaxExpandedPattern = 262'144;

/// The PCRE2 pattern, for UTF mode without UCP, that matches what `pattern`, an XML Schema regular expression in UTF-8,
/// allows. It holds no capturing group, and it is complete in itself: the caller may put it into a group and anchors.
///
///   .            any character but U+000A and U+000D
///   \d \w        ASCII digits; ASCII letters, digits and the low line; \D \W all others
///   \s           space, tab, LF, CR; \S all others
///   \i           an ASCII letter, the low line, the colon; \I what is no ASCII letter and no low line
///   \c           an ASCII letter or digit, low line, full stop, hyphen, colon; \C all others
///   \p \P        categories as PCRE2 knows them; of the blocks IsBasicLatin, IsLatin-1Supplement, IsLatinExtended-A
///   and
///                IsLatinExtended-B
///   [...]        as appendix F has it, with the escapes above and subtraction, which may be nested; inside, \I is
///                exactly what \i is not
///   \n \r \t     as everywhere; before any other character but an ASCII letter or digit the backslash quotes
///   ^ $          no-ops where the value begins and ends, as many patterns have them; elsewhere characters like others
///   x*? (?:x)    and the lookarounds (?= (?! (?<= (?<! stand in no schema's grammar, but have one meaning only and are
///                taken; a lazy quantifier is as good as its greedy form, since the whole value is matched
///
/// Other constructs of PCRE2 are refused: inline options, named and atomic groups, recursion, back references,
/// possessive quantifiers, POSIX classes, "[" unescaped in a class, escapes of other letters and digits.
///
/// Throws COvException "Invalid Regular Expression: ..." for what is refused and for what exceeds the limits above, and
/// COvInvalidValueException when `pattern` is no UTF-8. What is wrong in other ways is left for PCRE2 to say: ranges
/// and counts out of order, counts above 65,535, unknown categories, lookbehinds without a fixed length.
std::string TranslatePattern(std::string_view pattern);

/// Throws the COvException for a pattern (UTF-8) that cannot be used, for a reason in ASCII.
[[noreturn]] void ThrowInvalidPattern(std::string_view pattern, std::string_view reason);

}  // namespace OvXmlLib16
