// How applications walk over a collection of bound objects.
#pragma once

#include <cassert>
#include <cstddef>
#include <iterator>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/XmlCollection.h"

namespace OvXmlLib16 {

/// A forward iterator over the items of a collection of T, which are had as `T*`:
///
///     for (CElement* element : *elements) element->SetText(u"");
///     const auto isEmpty = [](CElement* element) { return element->GetText().empty(); };
///     const auto found = std::find_if(elements->begin(), elements->end(), isEmpty);
///     if (found != elements->end()) found->SetText(u"none");
///
/// It stays valid until its item is removed from the collection; items that come and go around it do no harm. The items
/// belong to the collection: to keep one for longer, put it into a CSmartPtr.
template <class T>
class COvIterator {
 public:
  using iterator_concept = std::forward_iterator_tag;
  // What is had by `*` is a value, which the older algorithms know of input iterators alone.
  using iterator_category = std::input_iterator_tag;
  using value_type = T*;
  using difference_type = std::ptrdiff_t;
  using pointer = T*;
  using reference = T*;

  /// The end of every collection.
  COvIterator() noexcept = default;
  /// At a node, or at the end when it is null.
  explicit COvIterator(CNode* node) noexcept : m_pNode(node) {}

  /// The item; the iterator must not stand at the end.
  T* operator*() const noexcept {
    assert(m_pNode != nullptr && "m_pNode != 0");
    return static_cast<T*>(static_cast<CXmlObjectBase*>(m_pNode->pItem));
  }
  /// Leads to the item's members.
  T* operator->() const noexcept { return **this; }

  /// Goes on to the next item or to the end. Throws COvException at the end.
  COvIterator& operator++() {
    if (m_pNode == nullptr) throw COvException(u"No More Elements in the Collection");
    m_pNode = m_pNode->pNext;
    return *this;
  }
  COvIterator operator++(int) {
    const COvIterator before = *this;
    ++*this;
    return before;
  }

  /// Whether both stand on the same node, or both at the end.
  bool operator==(const COvIterator&) const noexcept = default;

 private:
  CNode* m_pNode = nullptr;  // not owned
};

}  // namespace OvXmlLib16
