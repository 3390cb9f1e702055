#include "ovxmllib/collections/ValueCollections.h"

#include <functional>
#include <memory>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/values/PrimitiveText.h"
#include "ovxmllib/values/ValueChecks.h"

namespace OvXmlLib16 {

namespace {

// What a collection of dates asks of a value's kind.
template <ItemType kType>
struct DateRow;
// clang-format off
template <> struct DateRow<ItemType_datetime> { static constexpr auto kKind = CDateTime::dt_dateTime; static constexpr WStringView kMessage = u"Dates added to this collection must be of type dt_dateTime"; };
template <> struct DateRow<ItemType_date> { static constexpr auto kKind = CDateTime::dt_date; static constexpr WStringView kMessage = u"Dates added to this collection must be of type dt_date"; };
template <> struct DateRow<ItemType_yearMonth> { static constexpr auto kKind = CDateTime::dt_gYearMonth; static constexpr WStringView kMessage = u"Dates added to this collection must be of type dt_gYearMonth"; };
template <> struct DateRow<ItemType_time> { static constexpr auto kKind = CDateTime::dt_time; static constexpr WStringView kMessage = u"Dates added to this collection must be of type dt_time"; };
template <> struct DateRow<ItemType_monthDay> { static constexpr auto kKind = CDateTime::dt_gMonthDay; static constexpr WStringView kMessage = u"Dates added to this collection must be of type dt_gMonthDay"; };
// clang-format on

template <ItemType kType>
WString ClassName() {
  return WString(u"C").append(Primitive<kType>::kName).append(u"Col");
}

template <ItemType kType>
typename Primitive<kType>::Value ParseByRule(WStringView text, CWhitespaceUtils::WhitespaceRule rule) {
  WString scratch;
  return ParsePrimitive<kType>(CWhitespaceUtils::ApplyRule(rule, text, scratch));
}

}  // namespace

template <class T>
int ValueItems<T>::GetCount() const {
  return static_cast<int>(end() - begin());
}

template <class T>
void ValueItems<T>::Clear() {
  while (GetCount() >= 1) Remove(0);
}

template <class T>
void ValueItems<T>::Remove(int index) {
  FireOnCollectionRemove(index);
  CheckIndex(index);
  Erase(index);
  FireOnCollectionRemoveComplete(index);
  FireOnCollectionChange();
}

// Values at the front are given up where they are until they make up half, so that clearing takes linear time though
// the listeners see each value go.
template <class T>
void ValueItems<T>::Erase(int index) {
  if (index > 0) {
    m_items.erase(begin() + index);
    return;
  }
  static_cast<void>(std::exchange(*begin(), T()));
  ++m_removed;
  if (m_removed < end() - begin()) return;
  m_items.erase(m_items.begin(), begin());
  m_removed = 0;
}

template <class T>
T ValueItems<T>::GetItem(int index) const {
  CheckIndex(index);
  return begin()[index];
}

template <class T>
bool ValueItems<T>::IsOwn(const T& value) const noexcept {
  if constexpr (std::is_arithmetic_v<T>) return false;  // it is a copy already
  const std::less<const T*> isLess;
  const T* const address = std::addressof(value);
  return !m_items.empty() && !isLess(address, &m_items.front()) && !isLess(&m_items.back(), address);
}

template <class T>
template <class Value, class Check>
void ValueItems<T>::Insert(int index, Value&& value, const Check& check) {
  if (IsOwn(value)) return Insert(index, T(value), check);  // it would move away under the listeners
  void* const data = const_cast<T*>(std::addressof(value));
  FireOnCollectionAdd(data);
  CheckInsertionIndex(index);
  check(std::as_const(value));
  if (HasListeners()) {
    m_items.insert(begin() + index, T(value));  // they are shown the value once more
  } else {
    m_items.insert(begin() + index, std::forward<Value>(value));
  }
  FireOnCollectionAddComplete(data);
  FireOnCollectionChange();
}

template <class T>
template <ItemType kType>
void ValueItems<T>::CheckValue(const T& value) const {
  if (HasFacets(m_restrictions)) CheckPrimitive<kType>(GetElementName(), value, m_restrictions);
}

template <class T>
template <class Print>
void ValueItems<T>::Write(CXmlWriter* writer, const CSerializationContext& context, ItemType type,
                          const Print& print) const {
  ValidateCount(context);
  const WString name = GetElementName();
  WString scratch;
  for (const T& value : *this) {
    scratch.clear();
    writer->WriteTextElement(name, m_strNamespace, print(value, scratch), type);
  }
}

template <ItemType kType>
ValueCollection<kType>::ValueCollection(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs,
                                        const WChar* pattern, std::int32_t minLength, std::int32_t maxLength,
                                        const WChar* minInclusive, const WChar* maxInclusive, const WChar* minExclusive,
                                        const WChar* maxExclusive, std::int32_t length, std::int32_t totalDigits,
                                        std::int32_t fractionDigits, CWhitespaceUtils::WhitespaceRule rule,
                                        const WChar* formatOverride)
    : ValueItems<T>(kType, elementName, ns, minOccurs, maxOccurs, pattern, minLength, maxLength, minInclusive,
                    maxInclusive, minExclusive, maxExclusive, length, totalDigits, fractionDigits, rule,
                    formatOverride),
      CInstanceMonitor(Record()) {}

template <ItemType kType>
ValueCollection<kType>::~ValueCollection() = default;

template <ItemType kType>
CInstanceMonitor::ClassType& ValueCollection<kType>::Record() {
  static ClassType& record = FindClass(ClassName<kType>().c_str());
  return record;
}

template <ItemType kType>
template <class Value>
void ValueCollection<kType>::InsertChecked(int index, Value&& value) {
  this->Insert(index, std::forward<Value>(value), [this](const T& added) { this->template CheckValue<kType>(added); });
}

template <ItemType kType>
void ValueCollection<kType>::Add(Parameter value) {
  InsertChecked(this->GetCount(), std::forward<Parameter>(value));
}

template <ItemType kType>
void ValueCollection<kType>::AddAt(int index, Parameter value) {
  InsertChecked(index, std::forward<Parameter>(value));
}

template <ItemType kType>
void ValueCollection<kType>::AddFromString(WStringView text) {
  InsertChecked(this->GetCount(), ParseByRule<kType>(text, this->m_whitespaceRule));
}

template <ItemType kType>
void ValueCollection<kType>::ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context,
                                       bool) const {
  this->Write(writer, context, kType, [this](const T& value, WString& scratch) -> WStringView {
    if constexpr (kType == ItemType_string) return value;
    AppendPrimitive<kType>(value, this->m_strFormatOverride, scratch);
    return scratch;
  });
}

CdatetimeBaseCol::~CdatetimeBaseCol() = default;

void CdatetimeBaseCol::Add(const CDateTime& value) { AddAt(GetCount(), value); }

CDateTime CdatetimeBaseCol::Item(int index) const { return GetItem(index); }

void CdatetimeBaseCol::BaseAddAt(int index, const CDateTime& value) {
  Insert(index, value, [](const CDateTime&) {});
}

// Deliberate: every kind is written as ItemType_datetime.
void CdatetimeBaseCol::ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context,
                                 bool) const {
  Write(writer, context, ItemType_datetime,
        [this](const CDateTime& value, WString& scratch) -> WStringView { return scratch = ItemToString(value); });
}

template <ItemType kType>
DateCollection<kType>::DateCollection(const WChar* elementName, const WChar* ns, int minOccurs, int maxOccurs,
                                      const WChar* pattern, std::int32_t minLength, std::int32_t maxLength,
                                      const WChar* minInclusive, const WChar* maxInclusive, const WChar* minExclusive,
                                      const WChar* maxExclusive, std::int32_t length, std::int32_t totalDigits,
                                      std::int32_t fractionDigits, CWhitespaceUtils::WhitespaceRule rule,
                                      const WChar* formatOverride)
    : CdatetimeBaseCol(kType, elementName, ns, minOccurs, maxOccurs, pattern, minLength, maxLength, minInclusive,
                       maxInclusive, minExclusive, maxExclusive, length, totalDigits, fractionDigits, rule,
                       formatOverride),
      CInstanceMonitor(Record()) {}

template <ItemType kType>
DateCollection<kType>::~DateCollection() = default;

template <ItemType kType>
CInstanceMonitor::ClassType& DateCollection<kType>::Record() {
  static ClassType& record = FindClass(ClassName<kType>().c_str());
  return record;
}

template <ItemType kType>
void DateCollection<kType>::AddAt(int index, const CDateTime& value) {
  using Row = DateRow<kType>;
  if (value.GetType() != Row::kKind) throw COvInvalidParamException(WString(Row::kMessage));
  CheckValue<kType>(value);
  BaseAddAt(index, value);
}

template <ItemType kType>
WString DateCollection<kType>::ItemToString(const CDateTime& value) const {
  WString text;
  AppendPrimitive<kType>(value, text);
  return text;
}

template <ItemType kType>
void DateCollection<kType>::AddFromString(WStringView text) {
  Add(ParseByRule<kType>(text, m_whitespaceRule));
}

// As the base does it, without a string for each value.
template <ItemType kType>
void DateCollection<kType>::ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context,
                                      bool) const {
  Write(writer, context, ItemType_datetime, [](const CDateTime& value, WString& scratch) -> WStringView {
    AppendPrimitive<kType>(value, scratch);
    return scratch;
  });
}

// clang-format off
template class ValueItems<CBinaryData>;
template class ValueItems<std::int8_t>;
template class ValueItems<std::int16_t>;
template class ValueItems<std::int32_t>;
template class ValueItems<std::int64_t>;
template class ValueItems<std::uint8_t>;
template class ValueItems<std::uint16_t>;
template class ValueItems<std::uint32_t>;
template class ValueItems<std::uint64_t>;
template class ValueItems<float>;
template class ValueItems<double>;
template class ValueItems<CDateTimeSpan>;
template class ValueItems<CDateTime>;
template class ValueItems<WString>;
template class ValueItems<bool>;
template class ValueItems<CDecimal>;
template class ValueItems<CBigInteger>;
template class ValueCollection<ItemType_hexBinary>;
template class ValueCollection<ItemType_base64Binary>;
template class ValueCollection<ItemType_i1>;
template class ValueCollection<ItemType_i2>;
template class ValueCollection<ItemType_i4>;
template class ValueCollection<ItemType_i8>;
template class ValueCollection<ItemType_ui1>;
template class ValueCollection<ItemType_ui2>;
template class ValueCollection<ItemType_ui4>;
template class ValueCollection<ItemType_ui8>;
template class ValueCollection<ItemType_r4>;
template class ValueCollection<ItemType_r8>;
template class ValueCollection<ItemType_duration>;
template class ValueCollection<ItemType_year>;
template class ValueCollection<ItemType_month>;
template class ValueCollection<ItemType_day>;
template class ValueCollection<ItemType_string>;
template class ValueCollection<ItemType_boolean>;
template class ValueCollection<ItemType_decimal>;
template class ValueCollection<ItemType_integer>;
template class DateCollection<ItemType_datetime>;
template class DateCollection<ItemType_date>;
template class DateCollection<ItemType_yearMonth>;
template class DateCollection<ItemType_time>;
template class DateCollection<ItemType_monthDay>;
// clang-format on

}  // namespace OvXmlLib16
