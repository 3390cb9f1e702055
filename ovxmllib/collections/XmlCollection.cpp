#include "ovxmllib/collections/XmlCollection.h"

#include <cassert>
#include <utility>

#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

// Nodes that are to be deleted.
struct Deletion {
  bool isRunning = false;
  CNode* waiting = nullptr;  // owned, linked by pNext
};

constinit thread_local Deletion t_deletion;

// Deletes a chain of nodes. Each may take its item along, that item's collections, their nodes and so on down: those
// below wait in a list for the one on top, so that the stack does not grow with the depth of a tree.
void DeleteNodes(CNode* first, CNode* last) noexcept {
  Deletion& deletion = t_deletion;
  last->pNext = deletion.waiting;
  deletion.waiting = first;
  if (deletion.isRunning) return;
  deletion.isRunning = true;
  while (deletion.waiting != nullptr) {
    CNode* const next = deletion.waiting;
    deletion.waiting = next->pNext;
    delete next;
  }
  deletion.isRunning = false;
}

}  // namespace

void* CNode::operator new(std::size_t size) { return AllocateObject(size); }
void CNode::operator delete(void* node) noexcept { FreeObject(node); }

CXmlCollection::CXmlCollection(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs) {}

CXmlCollection::~CXmlCollection() {
  if (HasListeners()) ClearAtDestruction();
  if (m_pHead != nullptr) DeleteNodes(m_pHead, m_pTail);
}

void CXmlCollection::ClearAtDestruction() noexcept {
  // A listener may hold the source for a moment; letting go of it must not delete it once more.
  AddRef();
  try {
    CXmlCollection::Clear();
  } catch (const COvException&) {
    // Decided: the rest goes silently, see docs/decisions.md.
  }
}

void CXmlCollection::Clear() {
  while (m_count >= 1) Remove(0);
}

void CXmlCollection::Remove(int index) { RemoveNode(GetNodeAtIndex(index)); }

void CXmlCollection::AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const {
  for (const CNode* node = m_pHead; node != nullptr; node = node->pNext) {
    AttributesToXml_Int(node->pItem, writer, context);
  }
}

// The one order of an insertion. `findPlace` gives the node that will stand behind the item, null for the tail.
template <class FindPlace>
void CXmlCollection::Insert(CXmlObjectBase* item, const FindPlace& findPlace) {
  assert(item != nullptr && "item != 0");
  FireOnCollectionAdd(item);
  CNode* const next = findPlace();
  auto node = std::make_unique<CNode>();
  node->pItem = item;
  Link(std::move(node), next);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::AppendItem(CXmlObjectBase* item) {
  Insert(item, [] { return nullptr; });
}

void CXmlCollection::AppendNode(std::unique_ptr<CNode> node) {
  CXmlObjectBase* const item = node->pItem;
  FireOnCollectionAdd(item);
  Link(std::move(node), nullptr);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::PrependItem(CXmlObjectBase* item) {
  Insert(item, [this] { return m_pHead; });
}

void CXmlCollection::AddItemAt(int index, CXmlObjectBase* item) {
  CheckInsertionIndex(index);
  if (index == m_count) return AppendItem(item);
  Insert(item, [=, this] { return GetNodeAtIndex(index); });
}

void CXmlCollection::AddAfterItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
  if (existing == nullptr) return PrependItem(item);
  Insert(item, [=, this] { return GetNodeForItem(existing)->pNext; });
}

void CXmlCollection::AddBeforeItem(const CXmlObjectBase* existing, CXmlObjectBase* item) {
  if (existing == nullptr) return AppendItem(item);
  Insert(item, [=, this] { return GetNodeForItem(existing); });
}

CNode* CXmlCollection::GetNodeAtIndex(int index) const {
  CheckIndex(index);
  CNode* node = nullptr;
  if (index < m_count / 2) {
    node = m_pHead;
    for (int i = 0; i < index; ++i) node = node->pNext;
  } else {
    node = m_pTail;
    for (int i = m_count - 1; i > index; --i) node = node->pPrev;
  }
  assert(node != nullptr && "pNode != 0");
  return node;
}

CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* item) const {
  const CXmlObjectBase* const wanted = item->GetBase();
  for (CNode* node = m_pHead; node != nullptr; node = node->pNext) {
    if (node->pItem->GetBase() == wanted) return node;
  }
  throw COvInvalidParamException(u"The object was not found in the collection");
}

void CXmlCollection::RemoveNode(CNode* node) {
  // The index would have to be counted.
  constexpr int kUnknownIndex = -1;
  FireOnCollectionRemove(kUnknownIndex);
  Unlink(node);
  FireOnCollectionRemoveComplete(kUnknownIndex);
  FireOnCollectionChange();
}

void CXmlCollection::Link(std::unique_ptr<CNode> place, CNode* next) noexcept {
  CNode* const node = place.release();
  CNode* const previous = next == nullptr ? m_pTail : next->pPrev;
  node->pNext = next;
  node->pPrev = previous;
  (previous == nullptr ? m_pHead : previous->pNext) = node;
  (next == nullptr ? m_pTail : next->pPrev) = node;
  ++m_count;
}

void CXmlCollection::Unlink(CNode* node) noexcept {
  assert((node->pNext != nullptr || m_pTail == node) && "m_pTail == pNode");
  (node->pPrev == nullptr ? m_pHead : node->pPrev->pNext) = node->pNext;
  (node->pNext == nullptr ? m_pTail : node->pNext->pPrev) = node->pPrev;
  --m_count;
  DeleteNodes(node, node);
}

}  // namespace OvXmlLib16
