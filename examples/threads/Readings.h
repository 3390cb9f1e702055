// The readings of a sensor, many in one document.
#pragma once

#include "../BoundClass.h"

namespace readings {

using namespace OvXmlLib16;
using namespace OvXmlLib16Data;

inline constexpr const WChar* kReadingsNamespace = u"urn:example:readings";

inline CParentElementInfo* NewInfo(const WChar* name) {
  return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, name, kReadingsNamespace,
                                /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none, nullptr,
                                false);
}

/// `reading`: a moment and a temperature in degrees Celsius.
class CReading : public BoundClass<CReading> {
 public:
  static constexpr const WChar* kNamespace = kReadingsNamespace;
  static constexpr const WChar* kName = u"reading";
  static constexpr int kMinOccurs = 0;

  CReading() { SetElementName(kName); }

  CDateTime at = CDateTime(CDateTime::dt_dateTime);
  double celsius = 0;

  static ClassTables MakeTables() {
    const auto rule = CWhitespaceUtils::WhitespaceRule_Collapse;
    return {NewInfo(kName),
            NewTable<CElementInfo>({new CElementInfoSeqPrimMnd(u"celsius", kNamespace, 1, /*nillable=*/false,
                                                               ItemType_r8, nullptr, rule, {}, nullptr)}),
            NewTable<CAttributeInfo>({new CAttributeInfoPrimitive(u"at", u"", 0, /*optional=*/false, ItemType_datetime,
                                                                  nullptr, rule, {}, nullptr)})};
  }

 protected:
  void Init() override {
    at = CDateTime(CDateTime::dt_dateTime);
    celsius = 0;
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 0 ? Access<ItemType_datetime>(at, read, value) : Access<ItemType_r8>(celsius, read, value);
  }
};

/// The document element `readings`.
class CReadings : public BoundClass<CReadings> {
 public:
  static constexpr const WChar* kNamespace = kReadingsNamespace;

  CReadings() { SetElementName(u"readings"); }

  ObjectCol<CReading>& GetReadings() const { return m_readings.Get(); }

  static ClassTables MakeTables() {
    return {NewInfo(u"readings"),
            NewTable<CElementInfo>({new CElementInfoSeqClsCol(u"reading", kNamespace, 0, XmlElementType_Element)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override { m_readings.Reset(); }
  void AccessProperty(int, bool, OvVariant& value) override { value.SetXmlCollection(&GetReadings()); }

 private:
  MadeOnUse<ObjectCol<CReading>> m_readings;
};

}  // namespace readings
