#include "ovxmllib/values/OvVariant.h"

#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/XmlCollectionBase.h"
#include "ovxmllib/values/PrimitiveText.h"

namespace OvXmlLib16 {

namespace {

[[noreturn]] void ThrowNoText(ItemType type) {
  throw COvException(FormatString(u"Invalid Type %d to convert to string", type));
}

}  // namespace

OvVariant& OvVariant::operator=(OvVariant&& other) noexcept {
  if (this == &other) return *this;
  Clear();
  Swap(other);
  return *this;
}

void OvVariant::Swap(OvVariant& other) noexcept {
  std::swap(m_isNil, other.m_isNil);
  std::swap(m_type, other.m_type);
  m_value.swap(other.m_value);
}

void OvVariant::Clear() noexcept {
  m_value.emplace<std::monostate>();
  m_type = ItemType_none;
  m_isNil = false;
}

void OvVariant::ClearForReuse() noexcept {
  constexpr std::size_t kLargeText = 4096;  // code units
  if (auto* text = std::get_if<WString>(&m_value); text != nullptr) {
    if (text->capacity() > kLargeText) return Clear();
    text->clear();
  } else if (std::holds_alternative<CSmartPtr<CXmlObjectBase>>(m_value) ||
             std::holds_alternative<CBinaryData>(m_value) || std::holds_alternative<CDecimal>(m_value) ||
             std::holds_alternative<CBigInteger>(m_value)) {
    return Clear();
  }
  m_type = ItemType_none;
  m_isNil = false;
}

void OvVariant::SetNil() noexcept {
  m_value.emplace<std::monostate>();
  m_isNil = true;
}

WString OvVariant::GetType() const {
  WString name;
  const auto takeName = [&](auto row) { name = row.kName; };
  if (!VisitPrimitive(m_type, takeName)) throw COvException(FormatString(u"Invalid Type %d", m_type));
  return name;
}

WString OvVariant::ToString(const WChar* format) const {
  WString text;
  AppendTo(text, ViewOf(format));
  return text;
}

void OvVariant::AppendTo(WString& out, WStringView format) const {
  const auto append = [&](auto row) { AppendPrimitive<row.kType>(Get<row.kType>(), format, out); };
  if (!VisitPrimitive(m_type, append)) ThrowNoText(m_type);
}

void OvVariant::FromString(WStringView text, ItemType type, CWhitespaceUtils::WhitespaceRule rule) {
  const auto read = [&](auto row) {
    WString scratch;
    const WStringView normalised = CWhitespaceUtils::ApplyRule(rule, text, scratch);
    if constexpr (row.kType == ItemType_string) {
      Set<ItemType_string>(normalised);
    } else {
      Set<row.kType>(ParsePrimitive<row.kType>(normalised));
    }
  };
  if (!VisitPrimitive(type, read)) ThrowNoText(type);
}

void OvVariant::SetXmlObject(CXmlObjectBase* object) {
  m_value = CSmartPtr<CXmlObjectBase>(object);
  m_type = ItemType_XmlObjectBase;
  m_isNil = false;
}

CSmartPtr<CXmlObjectBase> OvVariant::GetXmlObject() const {
  assert(m_type == ItemType_XmlObjectBase || m_type == ItemType_XmlCollection);
  const auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_value);
  return object == nullptr ? CSmartPtr<CXmlObjectBase>() : *object;
}

CSmartPtr<CXmlObjectBase> OvVariant::TakeXmlObject() noexcept {
  assert(m_type == ItemType_XmlObjectBase || m_type == ItemType_XmlCollection);
  auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_value);
  return object == nullptr ? CSmartPtr<CXmlObjectBase>() : std::move(*object);
}

void OvVariant::SetXmlCollection(CXmlCollectionBase* collection) {
  SetXmlObject(collection);
  m_type = ItemType_XmlCollection;
}

CSmartPtr<CXmlCollectionBase> OvVariant::GetXmlCollection() const {
  const auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_value);
  const bool isCollection = m_type == ItemType_XmlCollection && object != nullptr;
  assert(isCollection && *object != nullptr);
  return isCollection ? static_cast<CXmlCollectionBase*>(static_cast<CXmlObjectBase*>(*object)) : nullptr;
}

}  // namespace OvXmlLib16
