#include "ovxmllib/document/DocumentTree.h"

#include <algorithm>
#include <cstdlib>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

const unsigned char* Bytes(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

// The element behind `element` in document order below `root`, or null.
CXmlElement* NextInSubtree(CXmlElement* element, const CXmlElement* root) {
  if (element->GetFirstElement() != nullptr) return element->GetFirstElement();
  const CXmlElement* at = element;
  while (at != root && at->GetNextSiblingElement() == nullptr) at = at->GetParentElm();
  return at == root ? nullptr : at->GetNextSiblingElement();
}

}  // namespace

DocumentTree::DocumentTree(const CXmlDocument& owner, CXmlDocument::ElementComplete callback,
                           const CSerializationContext& context)
    : m_callback(callback),
      m_context(context),
      m_maxDepth(context.GetMaxElementDepth()),
      m_maxAttributes(context.GetMaxAttributesPerElement()),
      m_maxTextLength(context.GetMaxTextLength()),
      m_names(owner) {
  constexpr std::size_t kUsualDepth = 16;
  m_open.reserve(kUsualDepth);
}

void DocumentTree::Clear() noexcept {
  if (m_documentElement != nullptr) DropMade(m_documentElement);
  CountNodes();
  ForgetNodes(0, 0);
  m_attributesOfOpen = m_declarations = 0;
  m_documentElement = nullptr;
  m_lastAttribute = nullptr;
  m_open.clear();
  m_before.clear();
  m_namespaces.clear();
  m_names.Clear();
  m_pool.Clear();
}

// The nodes are counted by the document, not one by one.
void DocumentTree::CountNodes() noexcept {
  CXmlElement::Remember(CXmlElement::Record(), static_cast<std::int64_t>(m_elements - m_elementsCounted));
  CXmlElement::Remember(CXmlAttribute::Record(), static_cast<std::int64_t>(m_attributes - m_attributesCounted));
  m_elementsCounted = m_elements;
  m_attributesCounted = m_attributes;
}

// Of nodes that are counted.
void DocumentTree::ForgetNodes(std::size_t elementsLeft, std::size_t attributesLeft) noexcept {
  CXmlElement::Forget(CXmlElement::Record(), static_cast<std::int64_t>(m_elements - elementsLeft));
  CXmlElement::Forget(CXmlAttribute::Record(), static_cast<std::int64_t>(m_attributes - attributesLeft));
  m_elements = m_elementsCounted = elementsLeft;
  m_attributes = m_attributesCounted = attributesLeft;
}

void DocumentTree::NoteBeforeElement() {
  CXmlElement* const previousSibling = m_open.empty() ? nullptr : m_open.back().lastChild;
  m_before.push_back({previousSibling, m_pool.GetMark(), m_elements, m_attributes});
}

void DocumentTree::AddAttribute(const ExpandedName& name, std::string_view value) {
  CheckAttributeCount(m_attributesOfOpen);
  CXmlAttribute& attribute = MakeAttribute(name);
  if (value.empty()) return;
  WChar* const units = AllocateText(value.size());
  const std::size_t length = unicode::Utf8ToWide(Bytes(value), value.size(), units).written;
  CheckTextLength(length);
  attribute.m_value.Assign(units, length);
}

void DocumentTree::AppendText(std::string_view text) {
  OpenElement& open = m_open.back();
  TextSpan& held = open.element->m_text;
  const std::size_t before = held.View().size();
  if (before + text.size() > open.textCapacity) ReserveText(open, before + text.size());
  const std::size_t added = unicode::Utf8ToWideDroppingCr(Bytes(text), text.size(), held.Room() + before);
  CheckTextLength(before + added);
  held.Assign(held.Room(), before + added);
}

// Behind other text.
void DocumentTree::AppendMoreText(WStringView text) {
  OpenElement& open = m_open.back();
  TextSpan& held = open.element->m_text;
  const std::size_t before = held.View().size();
  CheckTextLength(before + text.size());
  if (before + text.size() > open.textCapacity) ReserveText(open, before + text.size());
  std::copy(text.begin(), text.end(), held.Room() + before);
  held.Assign(held.Room(), before + text.size());
}

// Room for the open element's text and more behind it: in place where nothing was allocated since, as in an element
// without children; else moved to twice the room, which keeps many small pieces linear.
void DocumentTree::ReserveText(OpenElement& open, std::size_t units) {
  constexpr std::size_t kUnit = sizeof(WChar);
  TextSpan& held = open.element->m_text;
  if (open.textCapacity != 0 && m_pool.Extend(held.Room(), open.textCapacity * kUnit, units * kUnit)) {
    open.textCapacity = units;
    return;
  }
  open.textCapacity = std::max(units, 2 * open.textCapacity);
  auto* const room = static_cast<WChar*>(m_pool.Allocate(open.textCapacity * kUnit));
  const WStringView text = held.View();
  std::copy(text.begin(), text.end(), room);
  held.Assign(room, text.size());
}

void DocumentTree::ThrowTooDeep(std::size_t limit) {
  throw COvException(FormatString(
      u"The elements are nested deeper than %d levels. CSerializationContext::SetMaxElementDepth sets this limit.",
      limit));
}

void DocumentTree::ThrowTooManyAttributes() const {
  throw COvException(
      FormatString(u"An element has more than %d attributes. "
                   u"CSerializationContext::SetMaxAttributesPerElement sets this limit.",
                   m_maxAttributes));
}

void DocumentTree::ThrowTextTooLong() const {
  throw COvException(FormatString(u"A text is longer than %d characters. "
                                  u"CSerializationContext::SetMaxTextLength sets this limit.",
                                  m_maxTextLength),
                     m_open.back().element->GetXPath());
}

void DocumentTree::EndElement() {
  CXmlElement* const ended = m_open.back().element;
  CloseElement();
  if (m_callback == nullptr) return;
  CountNodes();
  const BeforeElement before = m_before.back();
  m_before.pop_back();
  // Decided: the document element stays whatever the callback says, see docs/decisions.md.
  if (m_callback(ended) && !m_open.empty()) Drop(ended, before);
}

void DocumentTree::Drop(CXmlElement* ended, const BeforeElement& before) noexcept {
  OpenElement& above = m_open.back();
  above.lastChild = before.previousSibling;
  (above.lastChild != nullptr ? above.lastChild->m_pNextSibling : above.element->m_pFirstChild) = nullptr;
  DropMade(ended);
  ForgetNodes(before.elements, before.attributes);
  m_pool.Rewind(before.pool);
}

// Deletes the strings and lists that were made of the nodes below `root`, which is all that a node owns outside the
// pool.
void DocumentTree::DropMade(CXmlElement* root) noexcept {
  if (!m_anyMade.load(std::memory_order_relaxed)) return;
  for (CXmlElement* element = root; element != nullptr; element = NextInSubtree(element, root)) element->DropMade();
}

void DocumentTree::DeclareNamespace(std::string_view alias, std::string_view uri) {
  CheckAttributeCount(m_declarations);
  ++m_declarations;
  WString wideUri = ToWide(uri);
  const std::size_t limit = m_context.GetMaxNamespaceLength();
  if (limit != 0 && wideUri.size() > limit) {
    throw COvException(
        FormatString(u"A namespace URI is longer than %d characters. "
                     u"CSerializationContext::SetMaxNamespaceLength sets this limit.",
                     limit));
  }
  m_namespaces.insert_or_assign(ToWide(alias), std::move(wideUri));
}

// path = element-path [attribute-path], attribute-path = "/" [alias ":"] "@" name
DocumentTree::Spot DocumentTree::FindSpot(WStringView path) const {
  const std::size_t end = path.find(u'@') == WStringView::npos ? path.size() : path.rfind(u'/');
  const CXmlElement* const wanted = FindElement(path.substr(0, end));
  if (wanted == nullptr) return {};
  Spot spot;
  for (CXmlElement* at = m_documentElement; at != nullptr; at = NextInSubtree(at, m_documentElement)) {
    ++spot.element;
    if (at == wanted) break;
  }
  for (const CXmlAttribute* a = wanted->GetFirstAttribute(); end != path.size() && a != nullptr; a = a->m_pNext) {
    ++spot.attribute;
    if (a->GetXPath() == path) return spot;
  }
  return {spot.element, 0};
}

// path = 1*("/" qname ["[" position "]"])
const CXmlElement* DocumentTree::FindElement(WStringView path) const {
  const auto aliases = AliasesByNamespace();
  const CXmlElement* first = m_documentElement;
  const CXmlElement* found = nullptr;
  while (path.starts_with(u'/')) {
    path.remove_prefix(1);
    WStringView name = path.substr(0, path.find(u'/'));
    path.remove_prefix(name.size());
    std::size_t position = 1;
    if (const std::size_t bracket = name.find(u'['); bracket != WStringView::npos) {
      position = std::strtoul(ToUtf8(name.substr(bracket + 1)).c_str(), nullptr, 10);
      name = name.substr(0, bracket);
    }
    found = first;
    while (found != nullptr && (found->GetQName(aliases) != name || --position != 0)) found = found->m_pNextSibling;
    if (found == nullptr) return nullptr;
    first = found->m_pFirstChild;
  }
  return found;
}

const WString* DocumentTree::FindNamespace(WStringView alias) const {
  const auto found = m_namespaces.find(alias);
  return found == m_namespaces.end() ? nullptr : &found->second;
}

const WString* DocumentTree::FindAlias(WStringView uri) const {
  const auto found =
      std::find_if(m_namespaces.begin(), m_namespaces.end(), [&](const auto& entry) { return entry.second == uri; });
  return found == m_namespaces.end() ? nullptr : &found->first;
}

std::map<WStringView, WStringView> DocumentTree::AliasesByNamespace() const {
  std::map<WStringView, WStringView> aliases;
  for (const auto& [alias, uri] : m_namespaces) aliases.emplace(uri, alias);
  return aliases;
}

}  // namespace OvXmlLib16
