#include "bench/peers/BoundReadings.h"

#include "bench/BoundOrders.h"

namespace OvXmlLib16::bench {
namespace {

using namespace OvXmlLib16Data;

/// A value that is there, nil, or missing.
struct NillableDecimal {
  std::optional<CDecimal> value;
  bool isNil = false;

  void Access(bool read, OvVariant& variant) {
    if (read) return isNil ? variant.SetNil() : value ? variant.Set<ItemType_decimal>(*value) : variant.SetInvalid();
    isNil = variant.IsNil();
    value.reset();
    if (!isNil) value = variant.Get<ItemType_decimal>();
  }
};

class CReadings : public orders::OrdersClass<CReadings> {
 public:
  CReadings() : OrdersClass(u"readings") {}

  static ClassTables MakeTables() {
    return {new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, u"readings", kNamespace,
                                   /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none,
                                   nullptr, false),
            NewTable<CElementInfo>(
                {NewValue<CElementInfoSeqPrimMnd>(u"required", 0), NewValue<CElementInfoSeqPrimOpt>(u"optional", 1)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override { m_values[0] = m_values[1] = {}; }
  void AccessProperty(int index, bool read, OvVariant& value) override { m_values[index].Access(read, value); }

 private:
  template <class Entry>
  static CElementInfo* NewValue(const WChar* name, int index) {
    return new Entry(name, kNamespace, index, /*nillable=*/true, ItemType_decimal, nullptr,
                     CWhitespaceUtils::WhitespaceRule_Collapse, {}, nullptr);
  }

  NillableDecimal m_values[2];
};

}  // namespace

void PassBoundReadings(std::string_view document, const Peer::TakeText& take) {
  const CSmartPtr<CReadings> readings(new CReadings);
  readings->FromXmlStream(reinterpret_cast<const unsigned char*>(document.data()), document.size());
  const CBinaryData bytes = readings->ToXmlStream(/*header=*/true, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF,
                                                  orders::COrders::MakeContext());
  take(TextOf(bytes));
}

}  // namespace OvXmlLib16::bench
