#include "ovxmllib/collections/XmlCollectionBase.h"

#include <cstddef>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

CXmlCollectionBase::CXmlCollectionBase(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs)
    : m_strNamespace(ViewOf(ns)), m_minOccurs(minOccurs), m_maxOccurs(maxOccurs) {
  SetElementName(elementName);
}

CXmlCollectionBase::~CXmlCollectionBase() = default;

WString CXmlCollectionBase::GetTargetNamespace() const {
  throw COvException(
      u"CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program logic error)");
}

void CXmlCollectionBase::ValidateCount(const CSerializationContext& context) const {
  if (context.GetIgnoreInvalidCollectionCounts()) return;
  const int count = GetCount();
  if (m_maxOccurs != -1 && count > m_maxOccurs) {
    throw COvValidationException(FormatString(u"The Maximum number of [%s] elements allowed in this collection is %d",
                                              GetElementName(), m_maxOccurs),
                                 WString());
  }
  if (count < m_minOccurs) {
    throw COvValidationException(FormatString(u"The Minimum number of [%s] elements allowed in this collection is %d",
                                              GetElementName(), m_minOccurs),
                                 WString());
  }
}

bool CXmlCollectionBase::IsValidCount(const CSerializationContext& context) const {
  if (context.GetIgnoreInvalidCollectionCounts()) return true;
  const int count = GetCount();
  return count >= m_minOccurs && (m_maxOccurs == -1 || count <= m_maxOccurs);
}

void CXmlCollectionBase::AddEventListener(IEventSink* sink) {
  if (m_listeners == nullptr) m_listeners = std::make_unique<std::vector<IEventSink*>>();
  m_listeners->push_back(sink);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* sink) {
  if (m_listeners != nullptr) std::erase(*m_listeners, sink);
}

// By index, since a listener may add and remove listeners. Decided: see docs/decisions.md.
template <class Tell>
void CXmlCollectionBase::ForEachListener(const Tell& tell) {
  for (std::size_t i = 0; i < m_listeners->size(); ++i) tell((*m_listeners)[i]);
}

void CXmlCollectionBase::TellChange() {
  ForEachListener([this](IEventSink* sink) { FireOnCollectionChangeEvent(sink, this); });
}
void CXmlCollectionBase::TellAdd(void* item) {
  ForEachListener([=, this](IEventSink* sink) { FireOnCollectionAddEvent(sink, this, item); });
}
void CXmlCollectionBase::TellAddComplete(void* item) {
  ForEachListener([=, this](IEventSink* sink) { FireOnCollectionAddCompleteEvent(sink, this, item); });
}
void CXmlCollectionBase::TellRemove(int index) {
  ForEachListener([=, this](IEventSink* sink) { FireOnCollectionRemoveEvent(sink, this, index); });
}
void CXmlCollectionBase::TellRemoveComplete(int index) {
  ForEachListener([=, this](IEventSink* sink) { FireOnCollectionRemoveCompleteEvent(sink, this, index); });
}

void CXmlCollectionBase::ThrowNoSuchIndex(int index) const {
  throw COvInvalidParamException(FormatString(u"Index %d is out of range, use 0 - %d", index, GetCount() - 1));
}

void CXmlCollectionBase::ThrowNoInsertionIndex() { throw COvInvalidParamException(u"Index out of range"); }

}  // namespace OvXmlLib16
