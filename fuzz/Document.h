// What the XML targets share: the options of reading in an input, what a read ends in, and the application's callback.
#pragma once

#include <string_view>

#include "fuzz/Input.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlEscape.h"
// A fuzz target is one file, and builds without the tests.
#include "tests/support/AnyObject.cpp"  // NOLINT(bugprone-suspicious-include)

namespace OvXmlLib16::fuzz {

using test::AnyObject;
using Tree = CSmartPtr<AnyObject>;

/// Takes two bytes: switches, and what the limits are if one of them sets limits that small documents pass.
inline CSerializationContext TakeContext(Input& input) {
  const unsigned switches = input.TakeByte(), limits = input.TakeByte();
  CSerializationContext context;
  if ((switches & 0x04) != 0) context.SetUntrustedInput();
  context.SetStripCDATA((switches & 0x01) == 0);
  if ((switches & 0x02) != 0) context.SetSchemaType(SchemaType_NoNamespaces);
  if ((switches & 0x08) != 0) {
    context.SetMaxElementDepth(limits & 7);
    context.SetMaxAttributesPerElement(limits >> 3 & 3);
    context.SetMaxNameLength(limits >> 5 & 3);
    context.SetMaxTextLength(limits >> 7 != 0 ? 20 : 0);
  }
  if ((switches & 0x10) != 0) context.SetMaxInputBytes(8 * (limits + 1));
  if ((switches & 0x20) != 0) context.SetMaxDecompressedBytes(8 * (limits + 1));
  if ((switches & 0x40) != 0) context.SetAllowDoctype(false);
  return context;
}

/// What reading a document ends in.
struct Outcome {
  Tree tree;        ///< null: it failed
  WString message;  ///< without the path
  WString path;     ///< knows nothing of elements that were dropped
  std::uint64_t line = 0, column = 0;

  bool IsSameFailure(const Outcome& other) const {
    return message == other.message && line == other.line && column == other.column;
  }
  bool operator==(const Outcome& other) const {
    if (tree == nullptr || other.tree == nullptr) return tree == other.tree && IsSameFailure(other);
    return *tree == *other.tree;
  }
};

/// The outcome of `read`, which fills the object that it is given. A failure must say what and where.
template <class Read>
Outcome OutcomeOf(const Read& read) {
  Outcome outcome{Tree(new AnyObject), {}, {}};
  const auto failure = FailureOf([&] { read(*outcome.tree); });
  if (!failure) return outcome;
  const WString message = failure->GetMessage();
  const WString path = failure->GetPath();
  outcome = {{}, message.substr(0, message.find(u"\nPath: ")), path, failure->GetLine(), failure->GetColumn()};
  Require(!message.empty(), "a failure has a message");
  const std::size_t place = outcome.message.rfind(u" at line ");
  if (place != WString::npos) {
    const std::uint64_t line = std::strtoull(ToUtf8(outcome.message.substr(place + 9)).c_str(), nullptr, 10);
    Require(line == outcome.line && outcome.column != 0, "the message tells the line of the place");
  }
  return outcome;
}

/// An application that looks at each element as it ends and drops some. Elements are numbered in the order in which
/// they end. One at a time reads documents.
class Application {
 public:
  static constexpr std::size_t kNever = ~std::size_t{0};

  /// What is thrown at an element.
  struct Stop {
    std::size_t at;
  };

  /// Drops the elements whose number, modulo 8, has its bit in `drops`, and throws Stop at the number `stopAt`.
  explicit Application(unsigned drops, std::size_t stopAt = kNever) : m_drops(drops), m_stopAt(stopAt) {
    s_current = this;
  }
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application() { s_current = nullptr; }

  bool Drops(std::size_t number) const { return (m_drops >> number % 8 & 1) != 0; }
  /// How many elements have ended.
  std::size_t CountEnded() const { return m_ended; }

  /// For CXmlDocument.
  static bool OnComplete(CXmlElement* element) {
    RequireSound(*element);
    const std::size_t number = s_current->m_ended;
    if (number == s_current->m_stopAt) throw Stop{number};
    s_current->m_ended = number + 1;
    // Makes the strings and lists that dropping has to find.
    const bool isSound =
        number >= 50 || (element->GetXPath().starts_with(u'/') && element->GetText() == element->GetTextView());
    Require(isSound, "an element that ends has a path and its text");
    return s_current->Drops(number);
  }

 private:
  static void RequireSound(const CXmlElement& element) {
    CheckCharacters(element.GetTextView());
    Require(element.GetTextView().find(u'\r') == WStringView::npos, "an element's text has no U+000D");
    for (const CXmlElement* child = element.GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      Require(child->GetParentElm() == &element, "a child knows its parent");
    }
    for (const CXmlAttribute* attribute : element.GetAttributes()) {
      const WString& value = element.GetAttribute(attribute->GetLocalName(), attribute->GetNamespaceURI());
      Require(&value == &attribute->GetValue(), "no two attributes of an element have the same name");
    }
  }

  static inline Application* s_current = nullptr;

  const unsigned m_drops;
  const std::size_t m_stopAt;
  std::size_t m_ended = 0;
};

}  // namespace OvXmlLib16::fuzz
