#include <utility>
#include <vector>

#include "tools/Copiers.h"

namespace ovxml {

namespace {

using OvXmlLib16::CXmlWriter;
using OvXmlLib16::ItemType_string;

constexpr WStringView kWhiteSpace = u" \t\n\r";
constexpr WStringView kSectionStart = u"<![CDATA[";

// A piece of text beside child elements as it goes into formatted output. The writer puts a line end behind each child
// and indentation ahead of the next tag, so that formatting what was formatted changes nothing.
WString Tidied(const TextPiece& piece) {
  const std::size_t last = piece.text.find_last_not_of(kWhiteSpace);
  if (last == WStringView::npos) return {};
  const std::size_t first = piece.text.find_first_not_of(kWhiteSpace);
  WString text(piece.text.substr(first, last + 1 - first));
  if (first != 0 && !piece.behindChild) text.insert(0, 1, u' ');
  if (last + 1 != piece.text.size()) text += u' ';
  return text;
}

// What the writer cannot put into a value so that it reads back: a tab is written plainly and becomes a blank, a
// carriage return is not written at all.
bool NeedsReferences(WStringView value) { return value.find_first_of(u"\t\r") != WStringView::npos; }

WString Escaped(WStringView value) {
  WString text;
  for (const auto unit : value) {
    switch (unit) {
      case u'&':
        text += u"&amp;";
        break;
      case u'<':
        text += u"&lt;";
        break;
      case u'"':
        text += u"&quot;";
        break;
      case u'\t':
        text += u"&#9;";
        break;
      case u'\n':
        text += u"&#10;";
        break;
      case u'\r':
        text += u"&#13;";
        break;
      default:
        text += unit;
    }
  }
  return text;
}

/// Puts into the text what the writer leaves out, declarations below the root among it.
class XmlCopier : public DocumentEvents {
 public:
  XmlCopier(CXmlWriter& writer, const CopyPlan& plan)
      : m_writer(writer),
        m_namespaces(plan.namespaces),
        m_formatted(plan.formatted),
        m_default(m_namespaces.GetRootDefault()) {
    for (const auto& [uri, alias] : m_namespaces.GetAliases()) m_writer.AddNamespace(alias, uri);
    if (!m_default.empty()) m_writer.SetDefaultNamespace(m_default);
  }

  void OnStart(const CXmlElement& element) override {
    const WString& ns = element.GetNamespaceURI();
    const bool isRoot = m_depth++ == 0;
    const bool changesDefault = !isRoot && ns != m_default && m_namespaces.FindAlias(ns) == nullptr;
    if (changesDefault) ChangeDefault(ns);
    m_writer.StartElement(element.GetLocalName(), ns);
    // The writer declares nothing that changes below the root. To its text, a declaration is an attribute as any other.
    if (changesDefault) m_writer.WriteAttribute(u"xmlns", {}, ns, ItemType_string);
    if (isRoot) DeclareFurtherAliases();
    ForEachAttribute(element, [this](const CXmlAttribute& attribute) { Write(attribute); });
  }

  void OnText(const TextPiece& piece) override {
    if (!m_formatted || !(piece.behindChild || piece.beforeChild)) return Write(piece.text);
    Write(Tidied(piece));
  }

  void OnEnd(const CXmlElement&) override {
    m_writer.EndElement();
    --m_depth;
    if (m_changed.empty() || m_changed.back().depth != m_depth) return;
    m_default = std::move(m_changed.back().before);
    m_changed.pop_back();
    m_writer.SetDefaultNamespace(m_default);
  }

 private:
  struct Change {
    std::size_t depth;
    WString before;
  };

  // An element whose namespace has no alias: one that the document only has as a default, or none. The scope is that of
  // the parent, until the element has ended.
  void ChangeDefault(const WString& ns) {
    m_changed.push_back({m_depth - 1, std::exchange(m_default, ns)});
    m_writer.SetDefaultNamespace(ns);
  }

  // The writer keeps one alias for each namespace. Others may stand in values, as names of types do.
  void DeclareFurtherAliases() {
    for (const auto& [alias, uri] : m_namespaces.GetFurtherAliases()) {
      m_writer.WriteAttribute(u"xmlns:" + alias, {}, uri, ItemType_string);
    }
  }

  void Write(const CXmlAttribute& attribute) {
    const WStringView value = attribute.GetValueView();
    const WString& ns = attribute.GetNamespaceURI();
    const WString* const alias = NeedsReferences(value) ? m_namespaces.FindAlias(ns) : nullptr;
    if (!NeedsReferences(value) || (alias == nullptr && !ns.empty())) {
      return m_writer.WriteAttribute(attribute.GetLocalName(), ns, value, ItemType_string);
    }
    const WString prefix = alias == nullptr ? WString() : *alias + u':';
    m_writer.WriteInlineSchema(prefix + attribute.GetLocalName() + u"=\"" + Escaped(value) + u'"');
  }

  // The writer takes a text that begins with the marker of a section for one.
  void Write(WStringView text) {
    if (text.starts_with(kSectionStart)) {
      m_writer.WriteText(text.substr(0, 1), ItemType_string);
      text.remove_prefix(1);
    }
    m_writer.WriteText(text, ItemType_string);
  }

  CXmlWriter& m_writer;
  const Namespaces& m_namespaces;
  const bool m_formatted;
  std::size_t m_depth = 0;
  WString m_default;
  std::vector<Change> m_changed;
};

}  // namespace

std::unique_ptr<DocumentEvents> MakeXmlCopier(CXmlWriter& writer, const CopyPlan& plan) {
  return std::make_unique<XmlCopier>(writer, plan);
}

}  // namespace ovxml
