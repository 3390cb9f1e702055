// The ordered store of bound objects.
#pragma once

#include <cstddef>
#include <memory>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/collections/XmlCollectionBase.h"

namespace OvXmlLib16 {

/// One place in a CXmlCollection, which owns it.
struct CNode {
  CSmartPtr<CXmlObjectBase> pItem;  ///< keeps the item alive; never null
  CNode* pNext = nullptr;           ///< the place behind, null at the tail
  CNode* pPrev = nullptr;           ///< the place ahead, null at the head

  static void* operator new(std::size_t size);
  static void operator delete(void* node) noexcept;
};

/// Bound objects in order, in a doubly linked list of references.
///
/// An object may stand in several collections, and in one collection several times. Adding at either end or next to a
/// known node and removing a known node take constant time; finding one by index or by item takes linear time, so that
/// a loop over all items uses iterators. Descendants supply ToXml_Int and FromXml_Int and offer the protected
/// operations with the type of their items; begin and end are `COvIterator<T>(GetHead())` and `COvIterator<T>()`.
///
/// An insertion tells the listeners OnCollectionAdd, adds the item, and tells OnCollectionAddComplete and
/// OnCollectionChange; what a listener throws at OnCollectionAdd keeps the item out. A removal tells
/// OnCollectionRemove, removes, and tells OnCollectionRemoveComplete and OnCollectionChange; its index is not told.
///
/// Items must not be null. An item that nobody else refers to is deleted with its place, trees of collections without
/// recursion. An insertion that fails takes no reference: the caller holds one while it adds a new object.
class OVXMLLIB_API CXmlCollection : public CXmlCollectionBase {
 public:
  /// Clears the collection, which the listeners hear of. A COvException that one throws goes unheard, the remaining
  /// items are then removed silently; any other exception ends the program.
  ~CXmlCollection() override;

  int GetCount() const override { return m_count; }
  void Clear() override;
  void Remove(int index) override;

 protected:
  CXmlCollection() = default;
  /// As CXmlCollectionBase.
  CXmlCollection(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs);

  /// Writes the attributes of each item.
  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const override;
  using CXmlCollectionBase::AttributesToXml_Int;

  /// Adds an item behind the last one.
  void AppendItem(CXmlObjectBase* item);
  /// The same with a node that has its item already.
  void AppendNode(std::unique_ptr<CNode> node);
  /// Adds an item ahead of the first one.
  void PrependItem(CXmlObjectBase* item);
  /// Adds an item in front of the one at `index`, or behind the last one when `index` is the count. Throws
  /// COvInvalidParamException at any other index, before any event.
  void AddItemAt(int index, CXmlObjectBase* item);
  /// Adds an item behind the first place of `existing`, or ahead of all when `existing` is null. Throws
  /// COvInvalidParamException, after OnCollectionAdd, when `existing` is not here.
  void AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item);
  /// Adds an item in front of the first place of `existing`, or behind all when `existing` is null. Throws as
  /// AddAfterItem does.
  void AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item);

  /// The first node, or null.
  CNode* GetHead() const noexcept { return m_pHead; }
  /// The node of an index. Throws COvInvalidParamException at an index that no item has.
  CNode* GetNodeAtIndex(int index) const;
  /// The first node that holds `item` itself, not one equal to it. Throws COvInvalidParamException when there is none.
  CNode* GetNodeForItem(const CXmlObjectBase* item) const;
  /// Removes a node of this collection and its reference.
  void RemoveNode(CNode* node);

 private:
  template <class FindPlace>
  void Insert(CXmlObjectBase* item, const FindPlace& findPlace);
  void Link(std::unique_ptr<CNode> node, CNode* next) noexcept;
  void Unlink(CNode* node) noexcept;
  void ClearAtDestruction() noexcept;

  CNode* m_pHead = nullptr;  // owned, as are all nodes
  CNode* m_pTail = nullptr;
  int m_count = 0;
};

}  // namespace OvXmlLib16
