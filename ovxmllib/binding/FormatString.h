// printf-style formatting of wide text: the one maker of messages.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// What a directive can print. The kind of an argument is fixed by its type, so no directive ever reads anything else.
enum class FormatKind : std::uint8_t { Integer, Character, Real, Text };

namespace format_detail {

template <class T>
consteval FormatKind KindOf() {
  using V = std::decay_t<T>;
  if constexpr (std::is_same_v<V, char> || std::is_same_v<V, WChar>) {
    return FormatKind::Character;
  } else if constexpr (std::is_integral_v<V> || std::is_enum_v<V>) {
    return FormatKind::Integer;
  } else if constexpr (std::is_floating_point_v<V>) {
    return FormatKind::Real;
  } else {
    static_assert(std::is_convertible_v<const T&, WStringView> || std::is_convertible_v<const T&, std::string_view>,
                  "FormatString takes integers, characters, reals, wide text and UTF-8 text");
    return FormatKind::Text;
  }
}

/// One directive, "%[flags][width][.precision][size]conversion"; `*` for width or precision takes an integer argument.
struct Directive {
  bool left = false, plus = false, blank = false, alternate = false, zero = false;
  bool widthFromArgument = false, precisionFromArgument = false, hasPrecision = false;
  int width = 0, precision = 0;
  WChar conversion = 0;    ///< 0 when the text ends before one, or the number of a width does not fit
  std::size_t length = 0;  ///< code units, the percent sign included
};

constexpr bool IsDigit(WChar c) { return c >= u'0' && c <= u'9'; }

constexpr int kMaxFieldWidth = 1'000'000;

constexpr int TakeNumber(WStringView text, std::size_t& i) {
  int value = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (value < kMaxFieldWidth) value = value * 10 + (text[i] - u'0');
  }
  return value < kMaxFieldWidth ? value : kMaxFieldWidth;
}

constexpr bool SetFlag(Directive& d, WChar c) {
  switch (c) {
    case u'-':
      return d.left = true;
    case u'+':
      return d.plus = true;
    case u' ':
      return d.blank = true;
    case u'#':
      return d.alternate = true;
    case u'0':
      return d.zero = true;
    default:
      return false;
  }
}

constexpr void SkipSizePrefix(WStringView text, std::size_t& i) {
  if (text.substr(i).starts_with(u"I64") || text.substr(i).starts_with(u"I32")) {
    i += 3;
    return;
  }
  while (i < text.size() && WStringView(u"hlLwzjt").find(text[i]) != WStringView::npos) ++i;
}

/// Reads the directive at the percent sign that `text` begins with. A size prefix (h, l, ll, w, I64 ...) is passed
/// over: the type of the argument tells its size.
constexpr Directive ParseDirective(WStringView text) {
  Directive d;
  std::size_t i = 1;
  while (i < text.size() && SetFlag(d, text[i])) ++i;
  if (i < text.size() && text[i] == u'*') {
    d.widthFromArgument = true;
    ++i;
  } else {
    d.width = TakeNumber(text, i);
  }
  if (i < text.size() && text[i] == u'.') {
    d.hasPrecision = true;
    ++i;
    if (i < text.size() && text[i] == u'*') {
      d.precisionFromArgument = true;
      ++i;
    } else {
      d.precision = TakeNumber(text, i);
    }
  }
  SkipSizePrefix(text, i);
  d.conversion = i < text.size() ? text[i] : WChar{0};
  d.length = i < text.size() ? i + 1 : i;
  return d;
}

constexpr bool Accepts(WChar conversion, FormatKind kind) {
  switch (conversion) {
    case u'd':
    case u'i':
    case u'u':
    case u'o':
    case u'x':
    case u'X':
      return kind == FormatKind::Integer || kind == FormatKind::Character;
    case u'c':
    case u'C':
      return kind == FormatKind::Integer || kind == FormatKind::Character;
    case u'f':
    case u'F':
    case u'e':
    case u'E':
    case u'g':
    case u'G':
      return kind == FormatKind::Real;
    case u's':
    case u'S':
      return kind == FormatKind::Text;
    default:
      return false;
  }
}

// Not constexpr on purpose: reaching one of these while a literal is checked stops the compilation at its name.
inline void DirectiveIsUnknownOrItsArgumentHasAnotherType() {}
inline void ThereAreMoreDirectivesThanArguments() {}
inline void ThereAreMoreArgumentsThanDirectives() {}

template <class... Args>
consteval void Check(WStringView format) {
  constexpr std::size_t count = sizeof...(Args);
  constexpr FormatKind kinds[count + 1] = {KindOf<Args>()..., FormatKind::Text};
  std::size_t used = 0;
  const auto take = [&](WChar conversion) {
    if (used == count) ThereAreMoreDirectivesThanArguments();
    if (!Accepts(conversion, kinds[used])) DirectiveIsUnknownOrItsArgumentHasAnotherType();
    ++used;
  };
  for (std::size_t i = 0; i < format.size();) {
    if (format[i] != u'%') {
      ++i;
      continue;
    }
    const Directive d = ParseDirective(format.substr(i));
    if (d.widthFromArgument) take(u'd');
    if (d.precisionFromArgument) take(u'd');
    if (d.conversion != u'%') take(d.conversion);
    i += d.length;
  }
  if (used != count) ThereAreMoreArgumentsThanDirectives();
}

}  // namespace format_detail

/// One argument of FormatString: a value with its kind. Text is not copied and must outlive the call.
class OVXMLLIB_API FormatArgument {
 public:
  /// A code unit, not a number that may be negative.
  constexpr FormatArgument(char value) noexcept : FormatArgument(static_cast<unsigned char>(value)) {
    kind = FormatKind::Character;
  }
  template <class T>
  requires((std::integral<T> && !std::is_same_v<T, char>) ||
           std::is_enum_v<T>) constexpr FormatArgument(T value) noexcept
      : kind(format_detail::KindOf<T>()),
        isNegative(value < T{}),
        bytes(sizeof(T)),
        integer(static_cast<std::uint64_t>(static_cast<std::int64_t>(value))) {}
  constexpr FormatArgument(double value) noexcept : kind(FormatKind::Real), real(value) {}
  constexpr FormatArgument(WStringView value) noexcept : kind(FormatKind::Text), wide(value) {}
  constexpr FormatArgument(const WChar* value) noexcept
      : kind(FormatKind::Text), wide(value == nullptr ? WStringView(u"(null)") : WStringView(value)) {}
  constexpr FormatArgument(const WString& value) noexcept : kind(FormatKind::Text), wide(value) {}
  constexpr FormatArgument(std::string_view value) noexcept : kind(FormatKind::Text), narrow(value) {}
  constexpr FormatArgument(const char* value) noexcept
      : kind(FormatKind::Text), narrow(value == nullptr ? "(null)" : value) {}
  constexpr FormatArgument(const std::string& value) noexcept : kind(FormatKind::Text), narrow(value) {}

  FormatKind kind;
  bool isNegative = false;    ///< of an integer
  std::uint8_t bytes = 0;     ///< the size of an integer's type: unsigned conversions show that many bytes
  std::uint64_t integer = 0;  ///< sign-extended
  double real = 0;
  WStringView wide;
  std::string_view narrow;  ///< UTF-8; what is not is shown as U+FFFD
};

/// A format that is known at compile time, checked there against the types of the arguments.
template <class... Args>
class FormatLiteral {
 public:
  consteval FormatLiteral(const WChar* format) : m_format(format) { format_detail::Check<Args...>(m_format); }
  constexpr WStringView View() const { return m_format; }

 private:
  WStringView m_format;
};

/// Formats at run time. A directive that has no argument, or one of another kind, is printed as it stands.
OVXMLLIB_API WString FormatArguments(WStringView format, std::span<const FormatArgument> arguments);

/// `format` with its directives replaced by the arguments, as printf does it: %d %i %u %o %x %X take any integer, %c an
/// integer or character (one code unit), %f %e %g a real, %s wide or UTF-8 text, %% is a percent sign. Flags, width,
/// precision and `*` act as there; widths and precisions count code units. The size prefixes h, l, ll, I64 and their
/// kin are allowed and mean nothing, as arguments know their size. A null text prints "(null)". The result has no
/// length limit and does not depend on the locale. A format that does not fit its arguments does not compile; a format
/// that is not known at compile time goes to FormatArguments.
template <class... Args>
WString FormatString(FormatLiteral<std::type_identity_t<Args>...> format, const Args&... args) {
  if constexpr (sizeof...(Args) == 0) {
    return FormatArguments(format.View(), {});
  } else {
    const FormatArgument list[] = {FormatArgument(args)...};
    return FormatArguments(format.View(), list);
  }
}

}  // namespace OvXmlLib16
