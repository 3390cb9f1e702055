// The grammar of JSON (RFC 8259), with the liberties that documents of bound objects have always had.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/WhitespaceUtils.h"
#include "ovxmllib/json/JsonFaults.h"
#include "ovxmllib/json/JsonScan.h"

namespace OvXmlLib16 {

/// How deep values may be nested.
inline constexpr int kJsonDepthLimit = 100;

/// Goes over a text once and calls a handler: StartDocument, EndDocument, Name, String, Number, StartObject, EndObject,
/// StartArray, EndArray, Bool, Null. Texts are views, of the input itself wherever it has them in one piece; they are
/// valid during the call.
///
/// `Unit` is WChar, or char for text that is known to be UTF-8. A fault calls the handler's Fail(fault, found, place)
/// in the first case, and its Decline() in the second, as does a value that UTF-8 cannot hold; neither returns.
///
/// Liberties: what follows the first value is not looked at; comments; a line feed within a string or a number drops
/// out; other control characters stand for themselves in strings; members may repeat.
template <class Unit, class Handler>
class JsonParser {
 public:
  using View = std::basic_string_view<Unit>;

  /// The text and the handler are not owned. `rootName`, unless it is empty, is the name of the member that the text is
  /// taken for.
  JsonParser(View text, Handler& handler, bool allowComments)
      : m_begin(text.data()),
        m_at(text.data()),
        m_end(text.data() + text.size()),
        m_handler(handler),
        m_allowsComments(allowComments) {}

  /// Called once.
  void Parse(View rootName) {
    m_handler.StartDocument();
    if (!rootName.empty()) {
      m_handler.StartObject();
      m_handler.Name(rootName);
    }
    if (NextToken()) ParseValue(0);
    if (!rootName.empty()) m_handler.EndObject();
    m_handler.EndDocument();
  }

 private:
  static constexpr bool kIsWide = sizeof(Unit) == sizeof(WChar);

  static bool IsDigit(Unit unit) noexcept { return unit >= '0' && unit <= '9'; }
  static bool IsBlank(Unit unit) noexcept {
    return unit <= ' ' && CWhitespaceUtils::IsWhiteSpace(static_cast<WChar>(unit));
  }

  // Steps to the next unit that is no line feed; false at the end of the input.
  bool Next() {
    while (m_at != m_end) {
      m_current = *m_at++;
      if (m_current != '\n') return true;
    }
    m_isAtEnd = true;
    return false;
  }

  // Steps over blanks and comments; false at the end of the input.
  bool NextToken() {
    do {
      const Unit* at = m_at;
      while (at != m_end && IsBlank(*at)) ++at;
      m_isAtEnd = at == m_end;
      m_at = m_isAtEnd ? at : at + 1;
      if (m_isAtEnd) return false;
      m_current = *at;
    } while (m_current == '/' && m_allowsComments && SkipComment());
    return !m_isAtEnd;
  }

  // At a '/': whether it began a comment that is over. One that has no end takes all input.
  bool SkipComment() {
    constexpr Unit kEnd[] = {'*', '/'};
    if (m_at == m_end || (*m_at != '/' && *m_at != '*')) return false;
    const View rest(m_at + 1, static_cast<std::size_t>(m_end - m_at - 1));
    const bool isLine = *m_at == '/';
    const std::size_t found = isLine ? rest.find(static_cast<Unit>('\n')) : rest.find(View(kEnd, 2));
    m_isAtEnd = found == View::npos;
    m_at = m_isAtEnd ? m_end : rest.data() + found + (isLine ? 1 : 2);
    return !m_isAtEnd;
  }

  void ParseValue(int depth) {
    if (++depth > kJsonDepthLimit) Fail(JsonFault::TooDeep);
    switch (m_current) {
      case '{':
        m_handler.StartObject();
        ParseObject(depth);
        return m_handler.EndObject();
      case '[':
        m_handler.StartArray();
        ParseArray(depth);
        return m_handler.EndArray();
      case '"':
        return m_handler.String(ParseString());
      case 'n':
        ParseWord("ull", JsonFault::NullEnds, JsonFault::Null);
        return m_handler.Null();
      case 't':
        ParseWord("rue", JsonFault::TrueEnds, JsonFault::True);
        return m_handler.Bool(true);
      case 'f':
        ParseWord("alse", JsonFault::FalseEnds, JsonFault::False);
        return m_handler.Bool(false);
      default:
        if (m_current != '-' && !IsDigit(m_current)) Fail(JsonFault::ValueFound);
        return m_handler.Number(ParseNumber());
    }
  }

  // array = "[" [ value *( "," value ) ] "]"
  void ParseArray(int depth) {
    if (!NextToken()) Fail(JsonFault::ArrayEnds);
    if (m_current == ']') return static_cast<void>(NextToken());
    while (true) {
      ParseValue(depth);
      if (m_isAtEnd) Fail(JsonFault::ArrayEnds);
      if (m_current == ']') return static_cast<void>(NextToken());
      if (m_current != ',') Fail(JsonFault::ArraySeparatorFound);
      if (!NextToken()) Fail(JsonFault::ArrayEnds);
    }
  }

  // object = "{" [ string ":" value *( "," string ":" value ) ] "}"
  void ParseObject(int depth) {
    if (!NextToken()) Fail(JsonFault::ObjectEndsAtOnce);
    if (m_current == '}') return static_cast<void>(NextToken());
    while (true) {
      ParseMember(depth);
      if (m_isAtEnd) Fail(JsonFault::ObjectEnds);
      if (m_current == '}') return static_cast<void>(NextToken());
      if (m_current != ',') Fail(JsonFault::ObjectSeparatorFound);
      if (!NextToken()) Fail(JsonFault::ObjectEnds);
    }
  }

  void ParseMember(int depth) {
    if (m_current != '"') Fail(JsonFault::NameFound);
    m_handler.Name(ParseString());
    if (m_isAtEnd) Fail(JsonFault::ColonEnds);
    if (m_current != ':') Fail(JsonFault::ColonFound);
    if (!NextToken()) Fail(JsonFault::ObjectValueEnds);
    ParseValue(depth);
  }

  View ParseString() {
    const Unit* const start = m_at;
    const Unit* const end = json_scan::FindRunEnd(start, m_end);
    m_at = end;
    const bool isWhole = end != m_end && *end == '"';
    const View text = isWhole ? View(start, static_cast<std::size_t>(end - start)) : ParseStringInPieces(start);
    ++m_at;
    NextToken();
    return text;
  }

  // A string that does not stand in one piece, of which the first goes from `start` to here. Leaves off at the mark
  // that ends it.
  View ParseStringInPieces(const Unit* start) {
    m_scratch.clear();
    while (true) {
      m_scratch.append(start, m_at);
      if (m_at == m_end) FailAtEnd(JsonFault::StringEnds);
      if (*m_at == '"') return m_scratch;
      if (*m_at++ == '\\') ParseEscape();
      start = m_at;
      m_at = json_scan::FindRunEnd(start, m_end);
    }
  }

  void ParseEscape() {
    if (!Next()) Fail(JsonFault::StringEnds);
    switch (m_current) {
      case '"':
      case '\\':
      case '/':
        return m_scratch.push_back(m_current);
      case 'b':
        return m_scratch.push_back('\b');
      case 'f':
        return m_scratch.push_back('\f');
      case 'n':
        return m_scratch.push_back('\n');
      case 'r':
        return m_scratch.push_back('\r');
      case 't':
        return m_scratch.push_back('\t');
      case 'u':
        return AppendUnit(ParseHexUnit());
      default:
        Fail(JsonFault::EscapeFound);
    }
  }

  // Decided: four characters that are no hexadecimal digits are refused as the end of the input there is, see
  // docs/decisions.md.
  WChar ParseHexUnit() {
    constexpr std::ptrdiff_t kDigits = 4;
    const Unit* const start = m_at;
    m_at += std::min(kDigits, m_end - start);
    if (m_at - start < kDigits) m_isAtEnd = true;
    unsigned unit = 0;
    for (const Unit* digit = start; digit != m_at; ++digit) unit = unit << 4 | HexValue(*digit, start);
    if (m_isAtEnd) Fail(JsonFault::HexDigits, start);
    return static_cast<WChar>(unit);
  }

  unsigned HexValue(Unit digit, const Unit* start) {
    if (IsDigit(digit)) return static_cast<unsigned>(digit - '0');
    const Unit lower = static_cast<Unit>(digit | 0x20);
    if (lower < 'a' || lower > 'f') Fail(JsonFault::HexDigits, start);
    return static_cast<unsigned>(lower - 'a' + 10);
  }

  void AppendUnit(WChar unit) {
    if constexpr (kIsWide) {
      m_scratch.push_back(unit);
    } else {
      const WChar pair[] = {unit, unicode::IsHighSurrogate(unit) ? ParseLowSurrogate() : WChar{0}};
      const std::size_t length = pair[1] == 0 ? 1 : 2;
      unsigned char bytes[2 * unicode::kMaxUtf8PerUnit];
      const unicode::Progress done = unicode::WideToUtf8({pair, length}, bytes);
      if (done.read != length) m_handler.Decline();
      m_scratch.append(bytes, bytes + done.written);
    }
  }

  // The other half of a pair, which is an escape that follows at once, or 0.
  WChar ParseLowSurrogate() {
    constexpr Unit kEscape[] = {'\\', 'u'};
    if (!View(m_at, static_cast<std::size_t>(m_end - m_at)).starts_with(View(kEscape, 2))) return 0;
    m_at += 2;
    const WChar unit = ParseHexUnit();
    if (!unicode::IsLowSurrogate(unit)) m_handler.Decline();
    return unit;
  }

  // The rest of a word; line feeds do not drop out of it.
  void ParseWord(std::string_view rest, JsonFault atEnd, JsonFault onMismatch) {
    const Unit* const start = m_at;
    const auto length = std::min(static_cast<std::ptrdiff_t>(rest.size()), m_end - start);
    m_at += length;
    if (length < static_cast<std::ptrdiff_t>(rest.size())) Fail(atEnd, start);
    if (!std::equal(rest.begin(), rest.end(), start)) Fail(onMismatch, start);
    NextToken();
  }

  // number = [ "-" ] ( "0" / digit1-9 *digit ) [ "." 1*digit ] [ ( "e" / "E" ) [ "+" / "-" ] 1*digit ]
  View ParseNumber() {
    const Unit* const start = m_at - 1;
    if (m_current == '-' && !Next()) Fail(JsonFault::NumberEnds);
    if (!IsDigit(m_current)) Fail(JsonFault::DigitFound);
    m_current == '0' ? static_cast<void>(Next()) : SkipDigits();
    if (!m_isAtEnd && m_current == '.') {
      if (!Next()) Fail(JsonFault::Digit);
      if (!IsDigit(m_current)) Fail(JsonFault::DigitFound);
      SkipDigits();
    }
    if (!m_isAtEnd && (m_current == 'e' || m_current == 'E')) SkipExponent();
    const Unit* const end = m_isAtEnd ? m_end : m_at - 1;
    if (IsBlank(m_current)) NextToken();
    return WithoutLineFeeds(View(start, static_cast<std::size_t>(end - start)));
  }

  void SkipExponent() {
    if (!Next()) Fail(JsonFault::ExponentEnds);
    if ((m_current == '+' || m_current == '-') && !Next()) Fail(JsonFault::NumberEnds);
    if (!IsDigit(m_current)) Fail(JsonFault::Digit);
    SkipDigits();
  }

  void SkipDigits() {
    while (Next() && IsDigit(m_current)) continue;
  }

  View WithoutLineFeeds(View number) {
    while (number.back() == '\n') number.remove_suffix(1);
    if (number.find(static_cast<Unit>('\n')) == View::npos) return number;
    m_scratch.clear();
    std::copy_if(number.begin(), number.end(), std::back_inserter(m_scratch), [](Unit unit) { return unit != '\n'; });
    return m_scratch;
  }

  [[noreturn]] void FailAtEnd(JsonFault fault) {
    m_isAtEnd = true;
    Fail(fault);
  }

  [[noreturn]] void Fail(JsonFault fault) { Fail(fault, m_at); }

  // At the unit that was read last; line feeds from `firstPlain` on did not begin a line.
  [[noreturn]] void Fail(JsonFault fault, [[maybe_unused]] const Unit* firstPlain) {
    if constexpr (kIsWide) {
      const View passed(m_begin, static_cast<std::size_t>(m_at - m_begin));
      m_handler.Fail(fault, m_current, PlaceAtEnd(passed, static_cast<std::size_t>(firstPlain - m_begin)));
    } else {
      static_cast<void>(fault);
      m_handler.Decline();
    }
  }

  const Unit* const m_begin;
  const Unit* m_at;  // behind the current unit
  const Unit* const m_end;
  Handler& m_handler;
  const bool m_allowsComments;
  bool m_isAtEnd = false;
  Unit m_current = 0;
  std::basic_string<Unit> m_scratch;  // a token that does not stand in one piece
};

}  // namespace OvXmlLib16
