#include "ovxmllib/document/SharedName.h"

#include "ovxmllib/document/NameTable.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/document/XmlElement.h"

namespace OvXmlLib16 {

namespace {

const SharedName& Shared(const ExpandedName& name) { return name.shared.Get(name.localName, *name.namespaceURI); }

}  // namespace

const SharedName& SharedName::Of(const CXmlElement& element) { return Shared(element.Name()); }
const SharedName& SharedName::Of(const CXmlAttribute& attribute) { return Shared(attribute.Name()); }

const SharedName& SharedNameSlot::Make(WStringView localName, WStringView ns) const {
  const SharedName* const made = new SharedName(localName, ns);
  made->AddRef();
  const SharedName* expected = nullptr;
  if (m_made.compare_exchange_strong(expected, made, std::memory_order_acq_rel)) return *made;
  made->Release();  // another thread was first
  return *expected;
}

}  // namespace OvXmlLib16
