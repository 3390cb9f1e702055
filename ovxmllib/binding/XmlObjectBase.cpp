#include "ovxmllib/binding/XmlObjectBase.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/ObjectMemory.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/foundation/KeptNames.h"
#include "ovxmllib/platform/MessageBox.h"
#include "ovxmllib/values/NamespaceList.h"

namespace OvXmlLib16 {

namespace {

constexpr int kMajor = 16;
constexpr int kMinor = 1;

constinit std::atomic<int> g_generatorMajor = 0;
constinit std::atomic<int> g_generatorMinor = 0;
constinit std::atomic<bool> g_versionTested = false;

bool IsVersionRight() noexcept { return g_generatorMajor == kMajor && g_generatorMinor == kMinor; }

void ShowVersionMismatch() {
  platform::ShowMessageBox(u"Version Mismatch Error",
                           FormatString(u"Please ensure your generated code is the same version as this library "
                                        u"(Ovalin Runtime: v%d.%d, Generator: v%d.%d).",
                                        kMajor, kMinor, g_generatorMajor.load(), g_generatorMinor.load()));
}

// Names hold no U+0000, so that a terminated text ends no later than the difference is found.
bool IsName(const WString& name, const WChar* expected) noexcept {
  if (expected == nullptr) return name.empty();
  const WChar* const units = name.data();
  const std::size_t length = name.size();
#pragma GCC unroll 4
  for (std::size_t i = 0; i < length; ++i) {
    if (units[i] != expected[i]) return false;
  }
  return expected[length] == 0;
}

void FireRemoval(IEventSink* sink, CXmlObjectBase* collection, IEventSink::MsgType type, int index) {
  sink->OnEvent(collection->GetBase(), type, index == -1 ? nullptr : &index);
}

}  // namespace

void* CXmlObjectBase::operator new(std::size_t bytes) { return AllocateBoundObject(bytes); }
void* CXmlObjectBase::operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  try {
    return AllocateBoundObject(bytes);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* CXmlObjectBase::operator new(std::size_t bytes, std::align_val_t alignment) {
  return ::operator new(bytes, alignment);
}
void CXmlObjectBase::operator delete(void* object) noexcept { FreeObject(object); }
void CXmlObjectBase::operator delete(void* object, std::align_val_t alignment) noexcept {
  ::operator delete(object, alignment);
}

void CXmlObjectBase::Register(int major, int minor) noexcept {
  g_generatorMajor = major;
  g_generatorMinor = minor;
}

void CXmlObjectBase::CheckVersion() {
  if (IsVersionRight()) return;
  ShowVersionMismatch();
  throw COvException(FormatString(u"Wrong Version (Ovalin Runtime: v%d.%d, Generator: v%d.%d)", kMajor, kMinor,
                                  g_generatorMajor.load(), g_generatorMinor.load()));
}

CXmlObjectBase::CXmlObjectBase() {
  if (g_versionTested.load(std::memory_order_relaxed) || g_versionTested.exchange(true)) return;
  if (!IsVersionRight()) ShowVersionMismatch();
}

CXmlObjectBase::CXmlObjectBase(const CXmlObjectBase& other)
    : m_strElementName(other.m_strElementName.View()), m_readsOwnElement(other.m_readsOwnElement) {}

CXmlObjectBase& CXmlObjectBase::operator=(const CXmlObjectBase& other) {
  m_strElementName.Assign(other.m_strElementName.View());
  return *this;
}

CXmlObjectBase::~CXmlObjectBase() = default;

void CXmlObjectBase::SetElementName(const WChar* name) {
  const std::size_t* const kept = name == nullptr || *name == 0 ? nullptr : FindKeptName(name);
  kept != nullptr ? void(m_strElementName = CompactText(kept)) : SetElementName(ViewOf(name));
}

void CXmlObjectBase::SetElementName(WStringView name) {
  if (name.empty()) return void(m_strElementName = CompactText());
  const std::size_t* const kept = FindKeptName(name);
  if (kept != nullptr) return void(m_strElementName = CompactText(kept));
  if (!AreSame(name, m_strElementName.View())) m_strElementName = CompactText(name);
}

void CXmlObjectBase::TakeElementName(const CXmlElement& element) {
  if (!m_strElementName.IsKeptAt(element.GetKeptLocalName())) SetElementName(WStringView(element.GetLocalName()));
}

void CXmlObjectBase::OnEvent(CXmlObjectBase*, IEventSink::MsgType, void*) {}

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter*, const CSerializationContext&) const {}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                         const CSerializationContext& context) {
  object->AttributesToXml_Int(writer, context);
}

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const WChar* ns,
                               const CSerializationContext& context, bool optionalChoice) {
  object->ToXml_Int(writer, isRoot, ns, context, optionalChoice);
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* child,
                                         const CSerializationContext& context) {
  return object->FromXml_Int(parent, child, context, /*optionalChoice=*/false);
}

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* sink, CXmlObjectBase* collection) {
  sink->OnEvent(collection->GetBase(), IEventSink::OnCollectionChange, nullptr);
}
void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* sink, CXmlObjectBase* collection, void* item) {
  sink->OnEvent(collection->GetBase(), IEventSink::OnCollectionAdd, item);
}
void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlObjectBase* collection, void* item) {
  sink->OnEvent(collection->GetBase(), IEventSink::OnCollectionAddComplete, item);
}
void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* sink, CXmlObjectBase* collection, int index) {
  FireRemoval(sink, collection, IEventSink::OnCollectionRemove, index);
}
void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlObjectBase* collection, int index) {
  FireRemoval(sink, collection, IEventSink::OnCollectionRemoveComplete, index);
}

bool CXmlObjectBase::DoesElementNameMatch(const CSerializationContext& context, const CXmlElement* element,
                                          const WChar* name, const WChar* ns) {
  if (!IsName(element->GetLocalName(), name)) return false;
  return context.GetIgnoreNamespaces() || IsName(element->GetNamespaceURI(), ns);
}

void CXmlObjectBase::Throw_IfElementNameDiffers(const CXmlObjectBase* object, const WChar* name) {
  if (object == nullptr) return;
  const WStringView actual = object->GetBase()->m_strElementName.View();
  if (actual == ViewOf(name)) return;
  throw COvInvalidParamException(
      FormatString(u"This property requires an element with the name %s the element being set has the element name %s",
                   name, actual));
}

void CXmlObjectBase::Throw_IfPropertyIsNull(const CXmlObjectBase* object, const WChar* name) {
  if (object != nullptr) return;
  // Deliberate: the message says "node".
  throw COvInvalidParamException(FormatString(u"The Property [%s] is mandatory, it may node be NULL", name));
}

bool CXmlObjectBase::IsNamespaceValid(const WChar* ns, const WChar* allowed, const WChar* target) {
  return IsNamespaceInList(ViewOf(ns), ViewOf(allowed), ViewOf(target));
}

void CXmlObjectBase::TestNamespace(const WChar* ns, const WChar* allowed, const WChar* target) {
  OvXmlLib16::TestNamespace(ViewOf(ns), ViewOf(allowed), ViewOf(target));
}

}  // namespace OvXmlLib16
