// The tree under construction: what a document's readers fill, and what its lookups read.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/NameTable.h"
#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

/// Owns the elements, attributes, text and names of one document and the elements that are open while it is read. It
/// holds the limits of the context, for every format alike. Text comes in as UTF-8, which the reader has checked.
///
/// A failure leaves the tree as far as it was built, good for Clear and destruction only.
class DocumentTree {
 public:
  /// `owner` and `context` are not owned; `callback` may be null.
  DocumentTree(const CXmlDocument& owner, CXmlDocument::ElementComplete callback, const CSerializationContext& context);
  ~DocumentTree() { Clear(); }
  DocumentTree(const DocumentTree&) = delete;
  DocumentTree& operator=(const DocumentTree&) = delete;

  /// Drops everything.
  void Clear() noexcept;

  /// The name for `qualified`, which is as NameTable takes it, until the tree is cleared. Throws COvException beyond
  /// the limit on names.
  const ExpandedName& InternName(std::string_view qualified) {
    return m_names.Intern(qualified, m_context.GetMaxNameLength());
  }
  /// The same for a namespace URI, which may be empty, and a local name.
  const ExpandedName& InternName(std::string_view uri, std::string_view local) {
    return m_names.Intern(uri, local, m_context.GetMaxNameLength());
  }

  /// Opens an element: the document element if there is none, else the next child of the open one. The name is one of
  /// this tree. Throws COvException beyond the limit on depth.
  void StartElement(const ExpandedName& name);
  /// Adds an attribute to the element that was opened last, before anything else happens to it. The name is one of this
  /// tree. Throws COvException beyond the limits on attributes and text.
  void AddAttribute(const ExpandedName& name, std::string_view value);
  /// Appends to the text of the open element, without any U+000D. Throws COvException beyond the limit on text.
  void AppendText(std::string_view text);

  /// \name For a reader of documents that repeat texts by number
  /// Texts are kept once, in memory that lives as long as the tree, where several nodes may share them.
  /// \{
  /// Memory for `units` code units. Throws std::bad_alloc.
  WChar* AllocateText(std::size_t units) { return static_cast<WChar*>(m_pool.Allocate(units * sizeof(WChar))); }
  /// The same, with room for `room` units, a multiple of four and not less, until the tree is next asked for anything.
  WChar* AllocateText(std::size_t units, std::size_t room) {
    return static_cast<WChar*>(m_pool.Allocate(units * sizeof(WChar), room * sizeof(WChar)));
  }
  /// As the operations above. `text` and `value` lie in memory of AllocateText. A text that comes first is not copied.
  void AddAttribute(const ExpandedName& name, WStringView value);
  void AppendText(WStringView text);
  /// Adds a child of the open element that has no attributes and no children, and `text`. The reader has called
  /// CheckDepth. The callback is not asked.
  void AddLeaf(const ExpandedName& name, WStringView text);
  /// Ends the open element; returns whether another one is open. The callback is not asked.
  bool CloseElement() noexcept {
    m_open.pop_back();
    if (m_open.empty()) CountNodes();
    return !m_open.empty();
  }
  /// \}

  /// Ends the open element, asks the callback, and drops the element if it says so. Passes on what the callback throws.
  void EndElement();

  /// Maps an alias to a namespace from now on; a declaration of the element that is opened next. Throws COvException
  /// beyond the limits on namespaces and attributes.
  void DeclareNamespace(std::string_view alias, std::string_view uri);

  /// Throws as opening another element would, for a reader that looks at its content first.
  void CheckDepth() const {
    if (m_open.size() >= m_maxDepth && m_maxDepth != 0) ThrowTooDeep(m_maxDepth);
  }
  /// What the limit on depth throws, for a reader that has it too.
  [[noreturn]] static void ThrowTooDeep(std::size_t limit);
  /// What the limit on attributes throws, for a reader that sees early that an element has too many.
  [[noreturn]] void ThrowTooManyAttributes() const;

  CXmlElement* GetDocumentElement() const noexcept { return m_documentElement; }
  std::size_t GetElementCount() const noexcept { return m_elements; }

  /// A place in the document: the element by its number in document order, and its attribute by its number; both from
  /// 1, 0 for none.
  struct Spot {
    std::size_t element = 0;
    std::size_t attribute = 0;
  };
  /// What has this path, as CXmlElement::GetXPath and CXmlAttribute::GetXPath give it.
  Spot FindSpot(WStringView path) const;
  /// Makes the start of the spot's element throw a COvException, to which the reader adds the place of the spot.
  void StopAt(const Spot& spot) noexcept { m_stopAt = spot; }
  /// The attribute whose place is wanted when the reader is stopped, or 0.
  std::size_t GetAttributeToStopAt() const noexcept { return m_stopAt.attribute; }
  bool StopsEarly() const noexcept { return m_stopAt.element != 0; }
  /// Whether nobody notices when a document is read into it, dropped, and read once more.
  bool ReadsUnseen() const noexcept { return m_callback == nullptr && !StopsEarly(); }

  const WString* FindNamespace(WStringView alias) const;
  /// Null when no alias has the namespace.
  const WString* FindAlias(WStringView uri) const;

  /// Every namespace with the alias that FindAlias gives. The views are valid until the next declaration.
  std::map<WStringView, WStringView> AliasesByNamespace() const;

  /// Called by a node of which a string or list is made, so that Clear knows that there is something to look for. Any
  /// thread may call it.
  void NoteMade() noexcept {
    if (!m_anyMade.load(std::memory_order_relaxed)) m_anyMade.store(true, std::memory_order_relaxed);
  }

 private:
  // An element without its end tag yet, and what only an open element needs.
  struct OpenElement {
    CXmlElement* element;
    CXmlElement* lastChild;
    std::size_t textCapacity;  // code units where its text lies; 0 where others may share them
  };
  // What it takes to drop an open element, which only the callback can wish.
  struct BeforeElement {
    CXmlElement* previousSibling;  // null for a first child
    NodePool::Mark pool;
    std::size_t elements, attributes;
  };

  const CXmlElement* FindElement(WStringView path) const;
  CXmlElement* MakeElement(OpenElement* above, const ExpandedName& name);
  CXmlAttribute& MakeAttribute(const ExpandedName& name);
  void NoteBeforeElement();
  void AppendMoreText(WStringView text);
  void CountNodes() noexcept;
  void ForgetNodes(std::size_t elementsLeft, std::size_t attributesLeft) noexcept;
  void Drop(CXmlElement* ended, const BeforeElement& before) noexcept;
  void DropMade(CXmlElement* root) noexcept;
  void ReserveText(OpenElement& open, std::size_t units);
  void CheckAttributeCount(std::size_t before) const {
    if (before >= m_maxAttributes && m_maxAttributes != 0) ThrowTooManyAttributes();
  }
  void CheckTextLength(std::size_t units) const {
    if (units > m_maxTextLength && m_maxTextLength != 0) ThrowTextTooLong();
  }
  [[noreturn]] void ThrowTextTooLong() const;

  const CXmlDocument::ElementComplete m_callback;
  const CSerializationContext& m_context;
  const std::size_t m_maxDepth;
  const std::size_t m_maxAttributes;
  const std::size_t m_maxTextLength;

  NodePool m_pool;
  NameTable m_names;
  std::map<WString, WString, std::less<>> m_namespaces;  // alias to URI
  std::vector<OpenElement> m_open;                       // the document element first
  std::vector<BeforeElement> m_before;                   // of the open elements, when there is a callback
  CXmlElement* m_documentElement = nullptr;              // in the pool
  CXmlAttribute* m_lastAttribute = nullptr;              // of the element opened last
  std::size_t m_started = 0;                             // elements so far, counted when there is m_stopAt
  Spot m_stopAt;
  std::size_t m_elements = 0;           // in the tree
  std::size_t m_attributes = 0;         // in the tree
  std::size_t m_elementsCounted = 0;    // of these, by the instance monitor
  std::size_t m_attributesCounted = 0;  // of these, by the instance monitor
  std::size_t m_attributesOfOpen = 0;   // of the element opened last, its declarations counted
  std::size_t m_declarations = 0;       // of the element to be opened next
  std::atomic<bool> m_anyMade = false;
};

// Here for the readers to inline: this is what reading a document comes to.

inline CXmlElement* DocumentTree::MakeElement(OpenElement* above, const ExpandedName& name) {
  if (StopsEarly() && ++m_started == m_stopAt.element) throw COvException(u"Here.");
  auto* const made =
      new (m_pool.Allocate(sizeof(CXmlElement))) CXmlElement(above == nullptr ? nullptr : above->element, name);
  ++m_elements;
  if (above == nullptr) {
    m_documentElement = made;
  } else {
    (above->lastChild != nullptr ? above->lastChild->m_pNextSibling : above->element->m_pFirstChild) = made;
    above->lastChild = made;
  }
  return made;
}

inline void DocumentTree::StartElement(const ExpandedName& name) {
  CheckDepth();
  if (m_callback != nullptr) NoteBeforeElement();
  m_open.push_back({MakeElement(m_open.empty() ? nullptr : &m_open.back(), name), nullptr, 0});
  m_lastAttribute = nullptr;
  m_attributesOfOpen = std::exchange(m_declarations, 0);
}

inline void DocumentTree::AddLeaf(const ExpandedName& name, WStringView text) {
  CheckTextLength(text.size());
  MakeElement(&m_open.back(), name)->m_text.Assign(text.data(), text.size());
}

inline CXmlAttribute& DocumentTree::MakeAttribute(const ExpandedName& name) {
  CXmlElement* const element = m_open.back().element;
  auto* const attribute = new (m_pool.Allocate(sizeof(CXmlAttribute))) CXmlAttribute(element, name);
  ++m_attributes;
  ++m_attributesOfOpen;
  (m_lastAttribute != nullptr ? m_lastAttribute->m_pNext : element->m_pFirstAttribute) = attribute;
  m_lastAttribute = attribute;
  return *attribute;
}

inline void DocumentTree::AddAttribute(const ExpandedName& name, WStringView value) {
  CheckAttributeCount(m_attributesOfOpen);
  CheckTextLength(value.size());
  MakeAttribute(name).m_value.Assign(value.data(), value.size());
}

inline void DocumentTree::AppendText(WStringView text) {
  OpenElement& open = m_open.back();
  if (!open.element->m_text.View().empty()) return AppendMoreText(text);
  CheckTextLength(text.size());
  open.textCapacity = 0;
  open.element->m_text.Assign(text.data(), text.size());
}

}  // namespace OvXmlLib16
