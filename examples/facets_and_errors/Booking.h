// A booking: values with facets, one of them checked by its setter.
#pragma once

#include "../BoundClass.h"

namespace booking {

using namespace OvXmlLib16;
using namespace OvXmlLib16Data;

inline constexpr const WChar* kBookingNamespace = u"urn:example:booking";

inline CPrimitiveRestrictions Pattern(const WChar* pattern) {
  CPrimitiveRestrictions facets;
  facets.m_pattern = pattern;
  return facets;
}
inline CPrimitiveRestrictions Between(const WChar* least, const WChar* most) {
  CPrimitiveRestrictions facets;
  facets.m_minInclusive = least;
  facets.m_maxInclusive = most;
  return facets;
}

/// `seat`: a row between 1 and 60, a letter from A to F.
class CSeat : public BoundClass<CSeat> {
 public:
  static constexpr const WChar* kNamespace = kBookingNamespace;
  static constexpr const WChar* kName = u"seat";
  static constexpr int kMinOccurs = 1;

  CSeat() { SetElementName(kName); }

  std::int32_t row = 1;
  WString letter = u"A";

  static ClassTables MakeTables() {
    const auto rule = CWhitespaceUtils::WhitespaceRule_Collapse;
    return {new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, kName, kNamespace,
                                   /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none,
                                   nullptr, false),
            NewTable<CElementInfo>(
                {new CElementInfoSeqPrimMnd(u"row", kNamespace, 0, /*nillable=*/false, ItemType_i4, nullptr, rule,
                                            Between(u"1", u"60"), nullptr),
                 new CElementInfoSeqPrimMnd(u"letter", kNamespace, 1, /*nillable=*/false, ItemType_string, nullptr,
                                            rule, Pattern(u"[A-F]"), nullptr)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override {
    row = 1;
    letter = u"A";
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 0 ? Access<ItemType_i4>(row, read, value) : Access<ItemType_string>(letter, read, value);
  }
};

/// `booking`: an attribute `code` and at least one seat. The setter of the code does its own checking.
class CBooking : public BoundClass<CBooking> {
 public:
  static constexpr const WChar* kNamespace = kBookingNamespace;

  CBooking() { SetElementName(u"booking"); }

  const WString& GetCode() const { return m_code; }
  void SetCode(const WString& code) {
    if (code.starts_with(u"X")) throw COvInvalidParamException(u"Codes that begin with X are reserved.");
    m_code = code;
  }
  ObjectCol<CSeat>& GetSeats() const { return m_seats.Get(); }

  static ClassTables MakeTables() {
    return {new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, u"booking", kNamespace,
                                   /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none,
                                   nullptr, false),
            NewTable<CElementInfo>({new CElementInfoSeqClsCol(u"seat", kNamespace, 1, XmlElementType_Element)}),
            NewTable<CAttributeInfo>({new CAttributeInfoPrimitive(u"code", u"", 0, /*optional=*/false, ItemType_string,
                                                                  nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                                                                  Pattern(u"[A-Z]{3}-\\d{4}"), nullptr)})};
  }

 protected:
  void Init() override {
    m_code.clear();
    m_seats.Reset();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    if (index == 1) return value.SetXmlCollection(&GetSeats());
    read ? value.SetString(m_code) : SetCode(value.GetString());
  }

 private:
  WString m_code;
  MadeOnUse<ObjectCol<CSeat>> m_seats;
};

}  // namespace booking
