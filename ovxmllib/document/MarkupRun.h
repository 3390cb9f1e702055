// Markup of a text format on its way to the stream.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/foundation/PlainRun.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/foundation/UnitCopy.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// For markup that goes out as it is: nothing is escaped, U+0000 and unpaired surrogates are refused.
struct UnescapedRules {
  template <class Units>
  Units FindOdd(const Units& units) const noexcept {
    return units < plainrun::Each<Units>(1);
  }
  bool IsPlain(WChar c) const noexcept { return c != 0; }
  WStringView Replace(WStringView text, std::size_t i) const { Refuse(text, i); }
  bool IsAllowed(WChar) const noexcept { return true; }
  [[noreturn]] void Refuse(WStringView text, std::size_t i) const { unicode::ThrowUnwritable(text, i); }
};

/// Markup put together in memory that has room for it: kRoomySlack units more than what is put. `Unit` is WChar, or
/// char for UTF-8.
template <class Unit>
class MarkupText {
 public:
  using View = std::basic_string_view<Unit>;

  explicit MarkupText(Unit* start) noexcept : m_end(start) {}
  MarkupText(const MarkupText&) = delete;
  MarkupText& operator=(const MarkupText&) = delete;

  /// Behind what was put.
  Unit* GetEnd() const noexcept { return m_end; }

  /// An ASCII character.
  MarkupText& operator<<(char c) noexcept {
    *m_end++ = static_cast<Unit>(c);
    return *this;
  }
  /// A few ASCII characters.
  MarkupText& Put(WStringView few) noexcept {
    Unit* end = m_end;  // which a byte that is written might be a part of, for all the compiler knows
    for (const WChar unit : few) *end++ = static_cast<Unit>(unit);
    m_end = end;
    return *this;
  }
  /// What the writer keeps in the stream's own form, with kRoomySlack units behind it.
  MarkupText& PutKept(View roomy) noexcept {
    std::memcpy(m_end, roomy.data(), kRoomySlack * sizeof(Unit));
    if (roomy.size() > kRoomySlack) std::memcpy(m_end, roomy.data(), roomy.size() * sizeof(Unit));
    m_end += roomy.size();
    return *this;
  }
  /// A name, or other text, goes out as it is. Throws COvInvalidValueException at what no document can hold; the
  /// stream's buffer does so when it is encoded.
  MarkupText& PutName(WStringView name) {
    m_end = PutUnescaped(m_end, name);
    return *this;
  }
  MarkupText& PutName(const PreparedName& name) {
    if constexpr (std::is_same_v<Unit, char>) {
      if (!name.GetUtf8Name().empty()) return PutKept(name.GetUtf8Name());
    }
    return PutName(WStringView(name.GetLocalName()));
  }
  /// A prefix, which may be empty, and what it qualifies: a text or a prepared name.
  template <class Name>
  MarkupText& PutName(WStringView prefix, const Name& local) {
    if (!prefix.empty()) PutName(prefix) << ':';
    return PutName(local);
  }
  /// A text, or a part of it. Throws what the rules throw.
  template <class Rules>
  MarkupText& PutText(WStringView text, const Rules& rules) {
    return PutText(text, 0, text.size(), rules);
  }
  template <class Rules>
  MarkupText& PutText(WStringView text, std::size_t begin, std::size_t end, const Rules& rules) {
    m_end = plainrun::PutEscaped(m_end, text, begin, end, rules);
    return *this;
  }

 private:
  // Out of line: names come at many places.
  static WChar* PutUnescaped(WChar* out, WStringView text) noexcept { return CopyUnits(out, text); }
  static char* PutUnescaped(char* out, WStringView text);

  Unit* m_end;
};

/// Markup put together in the stream itself: one check for room for all its pieces.
template <class Unit>
class MarkupRun : public MarkupText<Unit> {
 public:
  /// `markup` units at most go out as they are, `text` units at most escaped.
  MarkupRun(CTextStream& stream, std::size_t markup, std::size_t text)
      : MarkupText<Unit>(Reserve(stream, markup, plainrun::kMostPerUnit * text + kRoomySlack)), m_stream(stream) {}
  ~MarkupRun() {
    if constexpr (std::is_same_v<Unit, char>) {
      m_stream.CommitUtf8(this->GetEnd());
    } else {
      m_stream.Commit(this->GetEnd());
    }
  }

 private:
  static Unit* Reserve(CTextStream& stream, std::size_t markup, std::size_t more) {
    if constexpr (std::is_same_v<Unit, char>) {
      return stream.ReserveUtf8(unicode::kMaxUtf8PerUnit * markup + more);
    } else {
      return stream.Reserve(markup + more);
    }
  }

  CTextStream& m_stream;
};

/// What is written again and again, ready in the form of the stream: indentation, at any depth, and what leads it.
class Indentation {
 public:
  /// `lead` comes first, then `indent` once for each level.
  Indentation(WStringView lead, WStringView indent) : m_lead(lead), m_indent(indent) {}
  void Set(WStringView lead, WStringView indent);
  /// One level.
  const WString& GetIndent() const noexcept { return m_indent; }

  /// For MarkupText::PutKept; nothing at a negative depth. Valid until the next call. Throws
  /// COvInvalidValueException for a text that has no UTF-8.
  template <class Unit>
  std::basic_string_view<Unit> Get(int depth) {
    Form<Unit>& form = GetForm<Unit>();
    if (form.ready.empty() || depth > form.maxDepth) Grow(form, depth);
    return {form.ready.data(), depth < 0 ? 0 : form.lead + static_cast<std::size_t>(depth) * form.indent};
  }

 private:
  // Made when it is asked for.
  template <class Unit>
  struct Form {
    std::size_t lead = 0, indent = 0;  // lengths
    int maxDepth = 0;
    std::basic_string<Unit> ready;  // at the maximal depth, with kRoomySlack behind
  };

  template <class Unit>
  Form<Unit>& GetForm() noexcept {
    if constexpr (std::is_same_v<Unit, char>) {
      return m_utf8;
    } else {
      return m_wide;
    }
  }
  template <class Unit>
  void Grow(Form<Unit>& form, int depth) const;

  WString m_lead, m_indent;
  Form<WChar> m_wide;
  Form<char> m_utf8;
};

/// The longest text that a run takes; longer ones go out piece by piece.
inline constexpr std::size_t kMostInRun = 256;

/// Calls `write` with a unit of the form that the stream wants: `[&]<class Unit>(Unit) { MarkupRun<Unit> ... }`.
template <class Write>
void InFormOf(const CTextStream& stream, Write&& write) {
  stream.GetEncoding() == XmlEncoding_UTF8 ? write(char{}) : write(WChar{});
}

/// Writes text of any length by the rules, between a few ASCII characters of markup.
template <class Rules>
void WriteEscaped(CTextStream& stream, WStringView before, WStringView text, WStringView after, const Rules& rules) {
  std::size_t begin = 0;
  do {
    const std::size_t end = plainrun::EndOfPiece(text, begin, kMostInRun);
    InFormOf(stream, [&]<class Unit>(Unit) {
      MarkupRun<Unit> run(stream, before.size() + after.size(), end - begin);
      run.Put(before).PutText(text, begin, end, rules);
      if (end == text.size()) run.Put(after);
    });
    before = {};
    begin = end;
  } while (begin != text.size());
}

/// Writes markup of any length that goes out as it is.
inline void WriteUnescaped(CTextStream& stream, WStringView text) {
  WriteEscaped(stream, {}, text, {}, UnescapedRules());
}

}  // namespace OvXmlLib16
