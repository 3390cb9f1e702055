#include "ovxmllib/document/XmlWriter.h"

#include <cassert>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/PreparedName.h"
#include "ovxmllib/document/XmlWriterContext.h"

namespace OvXmlLib16 {

CXmlWriter::CXmlWriter(ClassType& record)
    : CInstanceMonitor(record), m_documentScope(std::make_unique<NamespaceScope>()) {}

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

void CXmlWriter::WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) {
  WriteTextElement(name.GetLocalName(), name.GetNamespace(), text, type);
}

void CXmlWriter::WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type) {
  WriteAttribute(name.GetLocalName(), name.GetNamespace(), value, type);
}

void CXmlWriter::StartPrepared(const PreparedName& name) { StartElement(name.GetLocalName(), name.GetNamespace()); }

const PreparedName* CXmlWriter::FindAnnounced(WStringView name, const WChar* ns) const noexcept {
  const bool isIt =
      m_announced != nullptr && m_announced->GetNamespace().c_str() == ns && AreSame(m_announced->GetLocalName(), name);
  return isIt ? m_announced : nullptr;
}

void CXmlWriter::SetArrayState(int state) noexcept {
  if (m_pContext != nullptr) m_pContext->arrayState = state;
}

CXmlWriter::CXmlWriterContext& CXmlWriter::AddContext(CXmlWriterContext*& place, CXmlWriterContext* parent) {
  constexpr std::size_t kUsualDepth = 8;
  if (m_contexts.empty()) m_contexts.reserve(kUsualDepth);
  place = m_contexts.emplace_back(std::make_unique<CXmlWriterContext>(parent)).get();
  return *place;
}

void CXmlWriter::CheckInStartTag() const {
  assert(m_pContext != nullptr && "m_pContext != 0");
  if (!m_pContext->bInStartTag) throw COvException(u"Attributes must be added before elements");
}

}  // namespace OvXmlLib16
