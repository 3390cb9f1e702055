#include "ovxmllib/document/XmlWriter.h"

#include <cassert>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlWriterContext.h"

namespace OvXmlLib16 {

CXmlWriter::CXmlWriter(ClassType& record)
    : CInstanceMonitor(record), m_documentScope(std::make_unique<NamespaceScope>()) {
  m_documentScope->Set(kXmlNamespace, u"xml");
}

CXmlWriter::~CXmlWriter() = default;

void CXmlWriter::Open() {}

void CXmlWriter::Close() {
  if (m_pContext != nullptr) throw COvException(u"An Element has not been closed.");
}

void CXmlWriter::SetDefaultNamespace(WStringView ns) {
  m_pContext != nullptr ? m_pContext->SetDefaultNamespace(ns) : m_documentScope->SetDefaultNamespace(ns);
}

void CXmlWriter::AddNamespace(WStringView alias, WStringView ns) {
  m_pContext != nullptr ? m_pContext->SetNamespaceMapValue(ns, alias) : m_documentScope->Set(ns, alias);
}

void CXmlWriter::WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) {
  StartElement(name, ns);
  WriteText(text, type);
  EndElement();
}

void CXmlWriter::SetArrayState(int state) noexcept {
  if (m_pContext != nullptr) m_pContext->arrayState = state;
}

CXmlWriter::CXmlWriterContext& CXmlWriter::AddContext(CXmlWriterContext*& place, CXmlWriterContext* parent) {
  place = m_contexts.emplace_back(std::make_unique<CXmlWriterContext>(parent)).get();
  return *place;
}

void CXmlWriter::CheckInStartTag() const {
  assert(m_pContext != nullptr && "m_pContext != 0");
  if (!m_pContext->bInStartTag) throw COvException(u"Attributes must be added before elements");
}

}  // namespace OvXmlLib16
