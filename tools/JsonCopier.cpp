#include <array>
#include <vector>

#include "tools/Copiers.h"

namespace ovxml {

namespace {

using OvXmlLib16::CXmlWriter;
using OvXmlLib16::ItemType;
using OvXmlLib16::ItemType_integer;
using OvXmlLib16::ItemType_string;

constexpr int kBegins = 1, kHasEnded = 3;  // as CXmlWriter::SetArrayState takes them

// What stands for a character in a string (RFC 8259, section 7).
WString Escaped(OvXmlLib16::WChar unit) {
  constexpr WStringView kDigits = u"0123456789ABCDEF";
  switch (unit) {
    case u'"':
    case u'\\':
      return {u'\\', unit};
    case u'\n':
      return u"\\n";
    case u'\t':
      return u"\\t";
    default:
      return unit < u' ' ? WString(u"\\u00") + kDigits[unit >> 4] + kDigits[unit & 15] : WString(1, unit);
  }
}

WString Quoted(WStringView text) {
  WString quoted(1, u'"');
  for (const auto unit : text) quoted += Escaped(unit);
  return quoted += u'"';
}

/// Keeps text beside elements until they have ended.
class JsonCopier : public DocumentEvents {
 public:
  JsonCopier(CXmlWriter& writer, const CopyPlan& plan) : m_writer(writer), m_runs(plan.runs) {
    plan.namespaces.DeclareAtRoot(writer);
  }

  void OnStart(const CXmlElement& element) override {
    const std::size_t number = m_started++;
    if (m_runs.IsContinued(number) && !m_runs.Continues(number)) m_writer.SetArrayState(kBegins);
    m_writer.StartElement(element.GetLocalName(), element.GetNamespaceURI());
    m_open.push_back({number, {}});
    ForEachAttribute(element, [this](const CXmlAttribute& attribute) {
      WriteString(attribute.GetValueView(), [&](WStringView value, ItemType type) {
        m_writer.WriteAttribute(attribute.GetLocalName(), attribute.GetNamespaceURI(), value, type);
      });
    });
  }

  void OnText(const TextPiece& piece) override {
    if (!piece.behindChild && !piece.beforeChild) return WriteText(piece.text);
    if (piece.text.find_first_not_of(u" \t\r\n") != WStringView::npos) m_open.back().text += piece.text;
  }

  void OnEnd(const CXmlElement&) override {
    const Open& open = m_open.back();
    if (!open.text.empty()) WriteText(open.text);
    m_writer.EndElement();
    if (m_runs.Continues(open.number) && !m_runs.IsContinued(open.number)) m_writer.SetArrayState(kHasEnded);
    m_open.pop_back();
  }

 private:
  struct Open {
    std::size_t number;
    WString text;  // beside elements, so far
  };

  void WriteText(WStringView text) {
    WriteString(text, [this](WStringView value, ItemType type) { m_writer.WriteText(value, type); });
  }

  // The library writes a line feed in a string as it is, which is no JSON and does not read back. What it takes for a
  // number goes out unchanged.
  template <class Write>
  static void WriteString(WStringView text, const Write& write) {
    if (text.find(u'\n') == WStringView::npos) return write(text, ItemType_string);
    write(Quoted(text), ItemType_integer);
  }

  CXmlWriter& m_writer;
  const SiblingRuns& m_runs;
  std::size_t m_started = 0;
  std::vector<Open> m_open;  // the root first
};

}  // namespace

std::unique_ptr<DocumentEvents> MakeJsonCopier(CXmlWriter& writer, const CopyPlan& plan) {
  return std::make_unique<JsonCopier>(writer, plan);
}

}  // namespace ovxml
