// A class whose content is an all-group, and one whose content is a choice.
#pragma once

#include "../BoundClass.h"

namespace delivery {

using namespace OvXmlLib16;
using namespace OvXmlLib16Data;

inline constexpr const WChar* kDeliveryNamespace = u"urn:example:delivery";

template <class Entry>
CElementInfo* NewValue(const WChar* name, int index, ItemType type) {
  return new Entry(name, kDeliveryNamespace, index, /*nillable=*/false, type, nullptr,
                   CWhitespaceUtils::WhitespaceRule_Collapse, {}, nullptr);
}
inline CParentElementInfo* NewInfo(const WChar* name, XmlElementGroupType group) {
  return new CParentElementInfo(group, XmlElementType_Element, name, kDeliveryNamespace,
                                /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none, nullptr,
                                false);
}

/// `place`: either the number of a locker or an address.
class CPlace : public BoundClass<CPlace> {
 public:
  static constexpr const WChar* kNamespace = kDeliveryNamespace;

  CPlace() { SetElementName(u"place"); }

  /// What is set, as the name of its element; empty for nothing.
  const WString& GetSelected() const { return m_selected; }
  std::int32_t GetLocker() const { return m_locker.value_or(0); }
  const WString& GetAddress() const { return m_address; }

  /// Throw COvInvalidStateException while something else is set. ClearLocker makes way for it.
  void SetLocker(std::int32_t number) {
    Choice_SetElementValid(true, u"locker", m_selected);
    m_locker = number;
  }
  void ClearLocker() {
    Choice_SetElementValid(false, u"locker", m_selected);
    m_locker.reset();
  }
  void SetAddress(const WString& address) {
    Choice_SetElementValid(true, u"address", m_selected);
    m_address = address;
  }

  static ClassTables MakeTables() {
    return {NewInfo(u"place", XmlElementGroupType_Choice),
            NewTable<CElementInfo>({NewValue<CElementInfoChoicePrimOpt>(u"locker", 0, ItemType_i4),
                                    NewValue<CElementInfoChoicePrimOpt>(u"address", 1, ItemType_string)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override {
    m_locker.reset();
    m_address.clear();
    m_selected.clear();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    if (!read) return index == 0 ? SetLocker(value.GetI4()) : SetAddress(value.GetString());
    if (index == 0) return Access<ItemType_i4>(m_locker, read, value);
    m_selected == u"address" ? value.SetString(m_address) : value.SetInvalid();
  }

 private:
  std::optional<std::int32_t> m_locker;
  WString m_address;
  WString m_selected;
};

/// The document element `delivery`: its children in any order, each at most once.
class CDelivery : public BoundClass<CDelivery> {
 public:
  static constexpr const WChar* kNamespace = kDeliveryNamespace;

  CDelivery() { SetElementName(u"delivery"); }

  WString parcel;
  std::optional<CDateTime> date;
  CPlace& GetPlace() const { return m_place.Get(); }

  static ClassTables MakeTables() {
    return {NewInfo(u"delivery", XmlElementGroupType_All),
            NewTable<CElementInfo>(
                {NewValue<CElementInfoAllPrimMnd>(u"parcel", 0, ItemType_string),
                 NewValue<CElementInfoAllPrimOpt>(u"date", 1, ItemType_date),
                 new CElementInfoAllClsMnd(u"place", kNamespace, 2, XmlElementType_Element, MakeNew<CPlace>,
                                           /*classId=*/0, /*contentRequired=*/true)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override {
    parcel.clear();
    date.reset();
    m_place.Reset();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    switch (index) {
      case 0:
        return Access<ItemType_string>(parcel, read, value);
      case 1:
        return Access<ItemType_date>(date, read, value);
      case 2:
        return value.SetXmlObject(&GetPlace());
    }
  }

 private:
  MadeOnUse<CPlace> m_place;
};

}  // namespace delivery
