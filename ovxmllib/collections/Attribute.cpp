#include "ovxmllib/collections/Attribute.h"

#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/SharedName.h"
#include "ovxmllib/document/XmlWriter.h"

namespace OvXmlLib16 {

CAttribute::CAttribute(const WChar* name, const WChar* value, const WChar* ns)
    : CInstanceMonitor(Record()), m_name(new SharedName(ViewOf(name), ViewOf(ns))), m_value(ViewOf(value)) {}

// For memory with room behind the object.
CAttribute::CAttribute(const SharedName& name, WStringView value)
    : CInstanceMonitor(Record()), m_name(&name), m_value(value, this + 1) {}

CAttribute::~CAttribute() = default;

CInstanceMonitor::ClassType& CAttribute::Record() {
  static ClassType& record = FindClass(u"CAttribute");
  return record;
}

CAttribute* CAttribute::Make(const SharedName& name, WStringView value) {
  return new (ObjectRoom{CompactText::RoomFor(value)}) CAttribute(name, value);
}

void* CAttribute::operator new(std::size_t size) { return AllocateObjectApart(size); }
void* CAttribute::operator new(std::size_t size, ObjectRoom room) { return AllocateObject(size + room.bytes); }
void CAttribute::operator delete(void* object) noexcept { FreeObject(object); }
void CAttribute::operator delete(void* object, ObjectRoom) noexcept { FreeObject(object); }

WString CAttribute::GetName() const { return m_name->localName; }
WString CAttribute::GetNamespace() const { return m_name->namespaceURI; }
void CAttribute::SetName(const WChar* name) { m_name = new SharedName(ViewOf(name), m_name->namespaceURI); }
void CAttribute::SetNamespace(const WChar* ns) { m_name = new SharedName(m_name->localName, ViewOf(ns)); }

CSmartPtr<CAttribute> CAttribute::Clone() const { return Make(*m_name.operator->(), m_value.View()); }

void CAttribute::ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext&, bool) const {
  writer->WriteAttribute(m_name->localName, m_name->namespaceURI, m_value.View(), ItemType_string);
}

CXmlElement* CAttribute::FromXml_Int(CXmlElement*, CXmlElement*, const CSerializationContext&, bool) {
  throw COvException(u"This should be done by the collection");
}

}  // namespace OvXmlLib16
