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

template <ItemType kType>
void Print(const OvVariant& value, WStringView format, WString& out) {
  AppendPrimitive<kType>(value.Get<kType>(), format, out);
}

// By type.
constexpr auto kPrinters = MakePrimitiveTable([](auto row) { return &Print<row.kType>; });

}  // namespace

OvVariant::OvVariant(const OvVariant& other)
    : m_isNil(other.m_isNil),
      m_owns(other.m_owns),
      m_form(other.m_form == kLentText ? kFormOf<WString> : other.m_form),
      m_type(other.m_type),
      m_text(m_form == kFormOf<WString> ? other.GetStringView() : WStringView()),
      m_dateTime(other.m_dateTime),
      m_decimal(other.m_decimal),
      m_owned(other.m_owned) {}

OvVariant& OvVariant::operator=(OvVariant&& other) noexcept {
  if (this == &other) return *this;
  Clear();
  Swap(other);
  return *this;
}

void OvVariant::Swap(OvVariant& other) noexcept {
  OwnText();
  other.OwnText();
  std::swap(m_isNil, other.m_isNil);
  std::swap(m_owns, other.m_owns);
  std::swap(m_form, other.m_form);
  std::swap(m_type, other.m_type);
  m_text.swap(other.m_text);
  std::swap(m_dateTime, other.m_dateTime);
  std::swap(m_decimal, other.m_decimal);
  m_owned.swap(other.m_owned);
}

void OvVariant::DestroyOwned() noexcept {
  m_owned.emplace<Scalar>();
  if (m_decimal.IsLong()) m_decimal = CDecimal();
  m_owns = false;
}

void OvVariant::FreeText() noexcept { WString().swap(m_text); }

void OvVariant::Clear() noexcept {
  HoldNothing(ItemType_none, /*isNil=*/false);
  FreeText();
}

void OvVariant::SetNil() noexcept { HoldNothing(m_type, /*isNil=*/true); }

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
  if (!IsPrimitive(m_type)) ThrowNoText(m_type);
  kPrinters[static_cast<std::size_t>(m_type)](*this, format, out);
}

// Takes a number as most are written, in which a whitespace rule has nothing to look for. False for others.
template <ItemType kType>
bool OvVariant::TakeShort(WStringView text) {
  using Value = typename Primitive<kType>::Value;
  if constexpr (kType == ItemType_decimal) {
    if (m_owns || !m_decimal.ParseShort(text)) return false;
    NoteHeld<kType>();
    return true;
  } else if constexpr (primitive_detail::kIsIntegerText<kType>) {
    Value number = 0;
    if (!ReadShortInteger(text, number)) return false;
    Set<kType>(number);
    return true;
  } else {
    return false;
  }
}

template <ItemType kType>
void OvVariant::Read(OvVariant& value, WStringView text, CWhitespaceUtils::WhitespaceRule rule) {
  if (value.TakeShort<kType>(text)) return;
  WString scratch;
  const WStringView normalised = CWhitespaceUtils::ApplyRule(rule, text, scratch);
  if constexpr (kType != ItemType_string) {
    value.Set<kType>(ParsePrimitive<kType>(normalised));
  } else if (!scratch.empty()) {
    value.Set<kType>(std::move(scratch));
  } else {
    value.ReferTo(normalised);
  }
}

void OvVariant::FromString(WStringView text, ItemType type, CWhitespaceUtils::WhitespaceRule rule) {
  ReferTo(text, type, rule);
  if (m_form != kLentText) return;
  // Where there is no memory for the copy, nothing refers to the text any more.
  HoldNothing(ItemType_none, /*isNil=*/false);
  Set<ItemType_string>(m_lent);
}

void OvVariant::ReferTo(WStringView text, ItemType type, CWhitespaceUtils::WhitespaceRule rule) {
  static constexpr auto kReaders = MakePrimitiveTable([](auto row) { return &Read<row.kType>; });
  if (!IsPrimitive(type)) ThrowNoText(type);
  kReaders[static_cast<std::size_t>(type)](*this, text, rule);
}

void OvVariant::SetXmlObject(CXmlObjectBase* object) {
  CSmartPtr<CXmlObjectBase> reference(object);
  HoldNothing(ItemType_XmlObjectBase, /*isNil=*/false);
  m_owned = std::move(reference);
  m_owns = true;
}

CSmartPtr<CXmlObjectBase> OvVariant::GetXmlObject() const {
  assert(m_type == ItemType_XmlObjectBase || m_type == ItemType_XmlCollection);
  const auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_owned);
  return object == nullptr ? CSmartPtr<CXmlObjectBase>() : *object;
}

CSmartPtr<CXmlObjectBase> OvVariant::TakeXmlObject() noexcept {
  assert(m_type == ItemType_XmlObjectBase || m_type == ItemType_XmlCollection);
  auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_owned);
  return object == nullptr ? CSmartPtr<CXmlObjectBase>() : std::move(*object);
}

void OvVariant::SetXmlCollection(CXmlCollectionBase* collection) {
  SetXmlObject(collection);
  m_type = ItemType_XmlCollection;
}

CSmartPtr<CXmlCollectionBase> OvVariant::GetXmlCollection() const {
  const auto* object = std::get_if<CSmartPtr<CXmlObjectBase>>(&m_owned);
  const bool isCollection = m_type == ItemType_XmlCollection && object != nullptr;
  assert(isCollection && *object != nullptr);
  return isCollection ? static_cast<CXmlCollectionBase*>(static_cast<CXmlObjectBase*>(*object)) : nullptr;
}

}  // namespace OvXmlLib16
