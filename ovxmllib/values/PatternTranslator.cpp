#include "ovxmllib/values/PatternTranslator.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

namespace {

constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool IsContinuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

constexpr std::string_view kUnterminatedClass = "missing terminating ] for character class";

// An escape that stands for a set of characters: between the brackets of a class, and on its own.
struct SetEscape {
  char letter;
  std::string_view inClass;
  std::string_view alone;
};

// Complements are spelled out: inside a class there is no other way to say them.
constexpr SetEscape kSetEscapes[] = {
    {'d', R"(\d)", R"(\d)"},
    {'D', R"(\D)", R"(\D)"},
    {'w', R"(\w)", R"(\w)"},
    {'W', R"(\W)", R"(\W)"},
    {'s', R"(\t\n\r )", R"([\t\n\r ])"},
    {'S', R"(\x{0}-\x{8}\x{B}\x{C}\x{E}-\x{1F}!-\x{10FFFF})", R"([^\t\n\r ])"},
    {'i', R"(A-Z_a-z:)", R"([A-Z_a-z:])"},
    // Deliberate: alone, \I takes the colon as well, though \i does.
    {'I', R"(\x{0}-9;-@\[-\^`{-\x{10FFFF})", R"([^A-Z_a-z])"},
    {'c', R"(\-.0-:A-Z_a-z)", R"([\-.0-:A-Z_a-z])"},
    {'C', R"(\x{0}-,/;-@\[-\^`{-\x{10FFFF})", R"([^\-.0-:A-Z_a-z])"},
};

struct Block {
  std::string_view name;
  std::string_view inside;
  std::string_view outside;
};

constexpr Block kBlocks[] = {
    {"IsBasicLatin", R"(\x{0}-\x{7F})", R"(\x{80}-\x{10FFFF})"},
    {"IsLatin-1Supplement", R"(\x{80}-\x{FF})", R"(\x{0}-\x{7F}\x{100}-\x{10FFFF})"},
    {"IsLatinExtended-A", R"(\x{100}-\x{17F})", R"(\x{0}-\x{FF}\x{180}-\x{10FFFF})"},
    {"IsLatinExtended-B", R"(\x{180}-\x{24F})", R"(\x{0}-\x{17F}\x{250}-\x{10FFFF})"},
};

// What is left of a pattern.
class Cursor {
 public:
  explicit Cursor(std::string_view pattern) : m_pattern(pattern), m_rest(pattern) {}

  bool IsAtEnd() const noexcept { return m_rest.empty(); }
  // The next byte; 0 at the end.
  char Peek() const noexcept { return m_rest.empty() ? '\0' : m_rest.front(); }
  bool IsNext(std::string_view text) const noexcept { return m_rest.starts_with(text); }
  bool IsDigitNext() const noexcept { return IsDigit(Peek()); }
  std::string_view Rest() const noexcept { return m_rest; }

  std::string_view Take(std::size_t bytes) {
    const std::string_view taken = m_rest.substr(0, bytes);
    m_rest.remove_prefix(taken.size());
    return taken;
  }

  bool TakeIf(std::string_view text) {
    if (!IsNext(text)) return false;
    m_rest.remove_prefix(text.size());
    return true;
  }

  std::string_view TakeCharacter() {
    std::size_t bytes = 1;
    while (bytes < m_rest.size() && IsContinuation(m_rest[bytes])) ++bytes;
    return Take(bytes);
  }

  [[noreturn]] void Fail(std::string_view reason) const { ThrowInvalidPattern(m_pattern, reason); }

 private:
  std::string_view m_pattern;
  std::string_view m_rest;
};

// The set escape of one letter that comes next, or null.
const SetEscape* FindSetEscape(std::string_view rest) noexcept {
  if (rest.size() < 2 || rest.front() != '\\') return nullptr;
  const auto* const found = std::ranges::find(kSetEscapes, rest[1], &SetEscape::letter);
  return found == std::end(kSetEscapes) ? nullptr : found;
}

bool IsPropertyNext(const Cursor& cursor) noexcept { return cursor.IsNext("\\p") || cursor.IsNext("\\P"); }

bool IsSetEscapeNext(const Cursor& cursor) noexcept {
  return IsPropertyNext(cursor) || FindSetEscape(cursor.Rest()) != nullptr;
}

//   property := ("\p" / "\P") "{" name "}"
// As it stands between the brackets of a class.
std::string TakeProperty(Cursor& cursor) {
  const std::string escape(cursor.Take(2));
  const std::size_t end = cursor.Rest().find('}');
  if (!cursor.TakeIf("{") || end == std::string_view::npos) cursor.Fail("malformed \\p or \\P");
  const std::string name(cursor.Take(end - 1));
  cursor.Take(1);
  const auto* const block = std::ranges::find(kBlocks, name, &Block::name);
  if (block != std::end(kBlocks)) return std::string(escape == "\\p" ? block->inside : block->outside);
  // Scripts, which PCRE2 knows by such names, are other sets than blocks.
  if (name.starts_with("Is") || !std::ranges::all_of(name, IsLetter))
    cursor.Fail("unknown block or category after \\p or \\P");
  return escape + '{' + name + '}';
}

// An escape that stands for one character, as it may stand inside and outside of classes.
std::string TakeCharacterEscape(Cursor& cursor) {
  cursor.Take(1);
  if (cursor.IsAtEnd()) cursor.Fail("\\ at end of pattern");
  const std::string_view character = cursor.TakeCharacter();
  const char c = character.front();
  const bool isControl = c == 'n' || c == 'r' || c == 't';
  if (!isControl && (IsLetter(c) || IsDigit(c))) cursor.Fail("unknown escape \\" + std::string(1, c));
  return '\\' + std::string(character);
}

//   class  := set | "[" ["^"] items "-" class "]"
//   set    := "[" ["^"] items "]"
//   item   := member ["-" member] | set escape
class ClassTranslator {
 public:
  ClassTranslator(Cursor& cursor, std::size_t maxDepth) : m_cursor(cursor), m_maxDepth(maxDepth) {}

  // A minus B, where B is a set, is (?!B)A; A minus (B minus C) is (?!(?!C)B)A.
  std::string Run() {
    std::vector<std::string> sets = {Set()};
    while (m_cursor.TakeIf("-")) {
      if (sets.size() > m_maxDepth) m_cursor.Fail("subtractions are too deeply nested");
      sets.push_back(Set());
    }
    for (std::size_t i = 0; i < sets.size(); ++i) Close();
    if (sets.size() == 1) return std::move(sets.front());
    std::string result = "(?:";
    for (std::size_t i = 1; i < sets.size(); ++i) result += "(?!";
    for (; sets.size() > 1; sets.pop_back()) result += sets.back() + ')';
    return result + sets.front() + ')';
  }

 private:
  void Close() {
    if (m_cursor.IsAtEnd()) m_cursor.Fail(kUnterminatedClass);
    if (!m_cursor.TakeIf("]")) m_cursor.Fail("text between a subtraction and the end of its class");
  }

  // Stops at the closing bracket or at a subtraction.
  std::string Set() {
    m_cursor.Take(1);
    std::string set = m_cursor.TakeIf("^") ? "[^" : "[";
    const std::size_t empty = set.size();
    while (!m_cursor.IsAtEnd() && m_cursor.Peek() != ']' && !m_cursor.IsNext("-[")) Item(set);
    if (m_cursor.IsAtEnd()) m_cursor.Fail(kUnterminatedClass);
    if (set.size() == empty) m_cursor.Fail("a class is empty");
    return set + ']';
  }

  void Item(std::string& set) {
    if (IsPropertyNext(m_cursor)) {
      set += TakeProperty(m_cursor);
      return;
    }
    if (const SetEscape* const escape = FindSetEscape(m_cursor.Rest()); escape != nullptr) {
      m_cursor.Take(2);
      set += escape->inClass;
      return;
    }
    const bool isHyphen = m_cursor.Peek() == '-';
    set += Member();
    if (!IsRange()) return;
    m_cursor.Take(1);
    if (isHyphen || m_cursor.Peek() == '-') m_cursor.Fail("a hyphen at the end of a range must be escaped");
    set += '-' + Member();
  }

  // A hyphen is a character where a class ends behind it and beside a set escape.
  bool IsRange() const {
    if (m_cursor.Peek() != '-' || m_cursor.IsNext("-]") || m_cursor.IsNext("-[")) return false;
    Cursor behind = m_cursor;
    behind.Take(1);
    return !behind.IsAtEnd() && !IsSetEscapeNext(behind);
  }

  std::string Member() {
    const char c = m_cursor.Peek();
    if (c == '\\') return TakeCharacterEscape(m_cursor);
    if (c == '[') m_cursor.Fail("[ in a class must be escaped");
    const std::string character(m_cursor.TakeCharacter());
    return c == '-' || c == '^' ? '\\' + character : character;
  }

  Cursor& m_cursor;
  std::size_t m_maxDepth;
};

struct GroupOpener {
  std::string_view text;
  bool isLookaround;
};

constexpr GroupOpener kGroupOpeners[] = {
    {"(?:", false}, {"(?=", true}, {"(?!", true}, {"(?<=", true}, {"(?<!", true},
};

// What PCRE2 keeps for an item beside its text.
constexpr std::size_t kItemOverhead = 8;

// A count above this is refused by PCRE2.
constexpr std::size_t kTooGreatCount = 65'536;

// Where the branch being read stands; one for the whole pattern and one for each open parenthesis.
struct Group {
  bool isAtStart;  // nothing of the value precedes the group
  bool isLookaround;
  std::size_t firstDollar;    // the first of those in m_dollars that stand in the group
  bool isBranchEmpty = true;  // nothing of the value precedes what comes next in the branch
  std::size_t size = 0;       // of what the group holds, with its repetitions written out
};

//   pattern  := branch *("|" branch)
//   branch   := *(atom [quantifier])
//   atom     := character | escape | class | "(" pattern ")"
class Translator {
 public:
  explicit Translator(std::string_view pattern) : m_cursor(pattern) {}

  std::string Run() {
    m_groups.push_back({.isAtStart = true, .isLookaround = false, .firstDollar = 0});
    while (!m_cursor.IsAtEnd()) Step();
    if (m_groups.size() > 1) m_cursor.Fail("missing closing parenthesis");
    return std::move(m_out);
  }

 private:
  void Step() {
    switch (m_cursor.Peek()) {
      case '|':
        Copy();
        m_groups.back().isBranchEmpty = true;
        return;
      case '(':
        return OpenGroup();
      case ')':
        return CloseGroup();
      case '^':
        return Circumflex();
      case '$':
        return Dollar();
      default:
        return Atom();
    }
  }

  void OpenGroup() {
    if (m_groups.size() > kMaxPatternNesting) m_cursor.Fail("parentheses are too deeply nested");
    const GroupOpener opener = TakeOpener();
    m_out += opener.text;
    Group& outer = m_groups.back();
    const bool isAtStart = outer.isAtStart && outer.isBranchEmpty;
    if (!opener.isLookaround) outer.isBranchEmpty = false;
    m_groups.push_back({.isAtStart = isAtStart, .isLookaround = opener.isLookaround, .firstDollar = m_dollars.size()});
  }

  GroupOpener TakeOpener() {
    const auto* const found =
        std::ranges::find_if(kGroupOpeners, [this](const GroupOpener& o) { return m_cursor.TakeIf(o.text); });
    if (found != std::end(kGroupOpeners)) return *found;
    if (m_cursor.IsNext("(?")) m_cursor.Fail("(? does not open a group of XML Schema");
    m_cursor.Take(1);
    return {"(?:", false};
  }

  void CloseGroup() {
    if (m_groups.size() == 1) m_cursor.Fail("unmatched closing parenthesis");
    const Group closed = m_groups.back();
    m_groups.pop_back();
    Copy();
    if (closed.isLookaround) {
      m_dollars.resize(closed.firstDollar);
    } else if (!IsBranchEnd()) {
      MakeDollarsCharacters(closed.firstDollar);
    }
    Account((closed.size + kItemOverhead) * Quantifier());
  }

  // Decided: which of them are anchors, see docs/decisions.md.
  void Circumflex() {
    m_cursor.Take(1);
    Group& group = m_groups.back();
    if (group.isAtStart && group.isBranchEmpty && !IsQuantifier()) {
      m_out += "\\A";
      group.isBranchEmpty = false;
      return;
    }
    m_out += "\\^";
    EndAtom(kItemOverhead);
  }

  // Whether the value ends here shows when the groups around have closed; until then it is taken for the end.
  void Dollar() {
    m_cursor.Take(1);
    if (IsBranchEnd()) {
      m_dollars.push_back(m_out.size() + 1);
      m_out += "\\z";
      return;
    }
    m_out += "\\$";
    EndAtom(kItemOverhead);
  }

  void MakeDollarsCharacters(std::size_t first) {
    for (std::size_t i = first; i < m_dollars.size(); ++i) m_out[m_dollars[i]] = '$';
    m_dollars.resize(first);
  }

  void Atom() {
    const std::size_t before = m_out.size();
    switch (m_cursor.Peek()) {
      case '[':
        m_out += ClassTranslator(m_cursor, kMaxPatternNesting).Run();
        break;
      case '\\':
        m_out += Escape();
        break;
      case '.':
        m_cursor.Take(1);
        m_out += "[^\\n\\r]";
        break;
      default:
        Character();
    }
    EndAtom(m_out.size() - before + kItemOverhead);
  }

  std::string Escape() {
    if (IsPropertyNext(m_cursor)) return '[' + TakeProperty(m_cursor) + ']';
    const SetEscape* const set = FindSetEscape(m_cursor.Rest());
    if (set == nullptr) return TakeCharacterEscape(m_cursor);
    m_cursor.Take(2);
    return std::string(set->alone);
  }

  void Character() {
    if (IsQuantifier()) m_cursor.Fail("quantifier does not follow a repeatable item");
    const char c = m_cursor.Peek();
    if (c == '{' || c == '}' || c == ']') m_out += '\\';
    m_out += m_cursor.TakeCharacter();
  }

  void EndAtom(std::size_t size) {
    m_groups.back().isBranchEmpty = false;
    Quantifier();
    Account(size);
  }

  void Account(std::size_t size) {
    m_groups.back().size += size;
    if (m_groups.back().size > kMaxExpandedPattern) m_cursor.Fail("too large with its repetitions written out");
  }

  bool IsBranchEnd() const { return m_cursor.IsAtEnd() || m_cursor.Peek() == '|' || m_cursor.Peek() == ')'; }

  // A brace that no count follows is a character.
  bool IsQuantifier() const {
    const std::string_view rest = m_cursor.Rest();
    if (rest.empty()) return false;
    if (rest.front() == '{') return rest.size() > 1 && (IsDigit(rest[1]) || rest[1] == ',');
    return rest.front() == '*' || rest.front() == '+' || rest.front() == '?';
  }

  // Takes the quantifier that may stand here. Returns how often PCRE2 writes out a group before it.
  std::size_t Quantifier() {
    if (!IsQuantifier()) return 1;
    const bool isCounted = m_cursor.Peek() == '{';
    Copy();
    const std::size_t copies = isCounted ? TakeCounts() : 1;
    m_cursor.TakeIf("?");
    if (IsQuantifier()) m_cursor.Fail("a quantifier follows another");
    return copies;
  }

  // counts := number ["," [number]] "}"
  std::size_t TakeCounts() {
    if (!m_cursor.IsDigitNext()) m_cursor.Fail("a quantifier has no least count");
    const std::size_t least = TakeNumber();
    if (m_cursor.Peek() == ',') Copy();
    const std::size_t most = TakeNumber();
    if (m_cursor.Peek() != '}') m_cursor.Fail("missing } behind a quantifier");
    Copy();
    return std::max({least, most, std::size_t{1}});
  }

  std::size_t TakeNumber() {
    std::size_t number = 0;
    for (; m_cursor.IsDigitNext(); Copy()) {
      number = std::min(number * 10 + static_cast<std::size_t>(m_cursor.Peek() - '0'), kTooGreatCount);
    }
    return number;
  }

  void Copy() { m_out += m_cursor.Take(1); }

  Cursor m_cursor;
  std::string m_out;
  std::vector<Group> m_groups;
  std::vector<std::size_t> m_dollars;  // where in m_out stand the letters of those \z that a "$" became
};

}  // namespace

std::string TranslatePattern(std::string_view pattern) {
  static_cast<void>(ToWide(pattern));  // throws
  if (pattern.size() > kMaxPatternLength) ThrowInvalidPattern(pattern, "too long");
  return Translator(pattern).Run();
}

void ThrowInvalidPattern(std::string_view pattern, std::string_view reason) {
  throw COvException(FormatString(u"Invalid Regular Expression: %s Error: '%s'", pattern, reason));
}

}  // namespace OvXmlLib16
