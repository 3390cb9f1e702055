#include "Orders.h"

#include <iterator>

namespace orders {

using namespace OvXmlLib16Data;

namespace {

// What all classes of the schema have in common: a sequence unless said otherwise, and no attribute that is unknown.
CParentElementInfo* NewInfo(const WChar* name, XmlElementGroupType group = XmlElementGroupType_Sequence,
                            XmlElementType type = XmlElementType_Element) {
  return new CParentElementInfo(group, type, name, kOrdersNamespace,
                                /*failIfAttributeUnknown=*/type == XmlElementType_Element,
                                /*hasBaseClasses=*/false, -1, ItemType_none, nullptr, false);
}

constexpr CWhitespaceUtils::WhitespaceRule RuleOf(ItemType type) {
  return type == ItemType_string ? CWhitespaceUtils::WhitespaceRule_Preserve
                                 : CWhitespaceUtils::WhitespaceRule_Collapse;
}

// An entry for a value, mandatory or optional. Amounts are written with two decimal places, "388.70".
template <class Entry>
CElementInfo* NewValue(const WChar* name, int index, ItemType type, const CPrimitiveRestrictions& facets = {}) {
  const WChar* const format = type == ItemType_decimal ? u"2" : nullptr;
  return new Entry(name, kOrdersNamespace, index, /*nillable=*/false, type, format, RuleOf(type), facets, nullptr);
}

CAttributeInfo* NewAttribute(const WChar* name, int index, ItemType type, const CPrimitiveRestrictions& facets = {}) {
  return new CAttributeInfoPrimitive(name, u"", index, /*optional=*/false, type, nullptr, RuleOf(type), facets,
                                     nullptr);
}

CAttributeInfo** NoAttributes() { return NewTable<CAttributeInfo>({}); }

CPrimitiveRestrictions LengthOf(std::int32_t length) {
  CPrimitiveRestrictions facets;
  facets.m_length = length;
  return facets;
}

CPrimitiveRestrictions AtLeast(const WChar* value) {
  CPrimitiveRestrictions facets;
  facets.m_minInclusive = value;
  return facets;
}

constexpr const WChar* kStatusTexts[] = {u"open", u"packed", u"shipped", u"cancelled"};

const WChar* StatusToText(int status) {
  if (status < 0 || status >= static_cast<int>(std::size(kStatusTexts))) {
    throw COvInvalidValueException(FormatString(u"%d is no status.", status));
  }
  return kStatusTexts[status];
}

int StatusFromText(const WChar* text) {
  for (std::size_t i = 0; i < std::size(kStatusTexts); ++i) {
    if (WStringView(text) == kStatusTexts[i]) return static_cast<int>(i);
  }
  throw COvInvalidValueException(FormatString(u"[%s] is no status.", text));
}

}  // namespace

ClassTables CHeader::MakeTables() {
  return {NewInfo(u"header"),
          NewTable<CElementInfo>({NewValue<CElementInfoSeqPrimMnd>(u"sender", 0, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"receiver", 1, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"created", 2, ItemType_datetime),
                                  NewValue<CElementInfoSeqPrimMnd>(u"sequence", 3, ItemType_i4)}),
          NoAttributes()};
}

void CHeader::Init() {
  sender.clear();
  receiver.clear();
  created = CDateTime(CDateTime::dt_dateTime);
  sequence = 0;
}

void CHeader::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_string>(sender, read, value);
    case 1:
      return Access<ItemType_string>(receiver, read, value);
    case 2:
      return Access<ItemType_datetime>(created, read, value);
    case 3:
      return Access<ItemType_i4>(sequence, read, value);
  }
}

ClassTables CCustomer::MakeTables() {
  return {NewInfo(u"customer"),
          NewTable<CElementInfo>({NewValue<CElementInfoSeqPrimMnd>(u"name", 0, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"city", 1, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"country", 2, ItemType_string)}),
          NoAttributes()};
}

void CCustomer::Init() {
  name.clear();
  city.clear();
  country.clear();
}

void CCustomer::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_string>(name, read, value);
    case 1:
      return Access<ItemType_string>(city, read, value);
    case 2:
      return Access<ItemType_string>(country, read, value);
  }
}

ClassTables CCash::MakeTables() { return {NewInfo(u"cash"), NewTable<CElementInfo>({}), NoAttributes()}; }

ClassTables CCard::MakeTables() {
  return {NewInfo(u"card"),
          NewTable<CElementInfo>({NewValue<CElementInfoSeqPrimMnd>(u"number", 0, ItemType_ui8),
                                  NewValue<CElementInfoSeqPrimMnd>(u"holder", 1, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"expires", 2, ItemType_yearMonth)}),
          NoAttributes()};
}

void CCard::Init() {
  number = 0;
  holder.clear();
  expires = CDateTime(CDateTime::dt_gYearMonth);
}

void CCard::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_ui8>(number, read, value);
    case 1:
      return Access<ItemType_string>(holder, read, value);
    case 2:
      return Access<ItemType_yearMonth>(expires, read, value);
  }
}

ClassTables CInvoice::MakeTables() {
  return {NewInfo(u"invoice"),
          NewTable<CElementInfo>({NewValue<CElementInfoSeqPrimMnd>(u"due", 0, ItemType_date),
                                  NewValue<CElementInfoSeqPrimMnd>(u"reference", 1, ItemType_string)}),
          NoAttributes()};
}

void CInvoice::Init() {
  due = CDateTime(CDateTime::dt_date);
  reference.clear();
}

void CInvoice::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_date>(due, read, value);
    case 1:
      return Access<ItemType_string>(reference, read, value);
  }
}

ClassTables CPayment::MakeTables() {
  const auto newMember = [](const WChar* name, int index, ClassFactory factory) {
    return new CElementInfoChoiceClsOpt(name, kOrdersNamespace, index, XmlElementType_Element, factory, /*classId=*/0);
  };
  return {NewInfo(u"payment", XmlElementGroupType_Choice, XmlElementType_Pseudo),
          NewTable<CElementInfo>({newMember(u"cash", 0, MakeNew<CCash>), newMember(u"card", 1, MakeNew<CCard>),
                                  newMember(u"invoice", 2, MakeNew<CInvoice>)}),
          NoAttributes()};
}

void CPayment::Init() {
  m_cash = nullptr;
  m_card = nullptr;
  m_invoice = nullptr;
  m_selected.clear();
}

template <class Member>
void CPayment::Set(CSmartPtr<Member>& property, const WChar* name, const CSmartPtr<Member>& value) {
  Throw_IfElementNameDiffers(value, name);
  Choice_SelectElement(name, value, m_selected);
  property = value;
}

void CPayment::SetCash(const CSmartPtr<CCash>& cash) { Set(m_cash, u"cash", cash); }
void CPayment::SetCard(const CSmartPtr<CCard>& card) { Set(m_card, u"card", card); }
void CPayment::SetInvoice(const CSmartPtr<CInvoice>& invoice) { Set(m_invoice, u"invoice", invoice); }

void CPayment::AccessProperty(int index, bool read, OvVariant& value) {
  const auto access = [&]<class Member>(CSmartPtr<Member>& property, const WChar* name) {
    if (read) return value.SetXmlObject(property);
    const CSmartPtr<CXmlObjectBase> object = value.GetXmlObject();
    Set(property, name, CSmartPtr<Member>(static_cast<Member*>(static_cast<CXmlObjectBase*>(object))));
  };
  switch (index) {
    case 0:
      return access(m_cash, u"cash");
    case 1:
      return access(m_card, u"card");
    case 2:
      return access(m_invoice, u"invoice");
  }
}

ClassTables CItem::MakeTables() {
  return {NewInfo(u"item"),
          NewTable<CElementInfo>({NewValue<CElementInfoSeqPrimMnd>(u"description", 2, ItemType_string),
                                  NewValue<CElementInfoSeqPrimMnd>(u"quantity", 3, ItemType_i4, AtLeast(u"1")),
                                  NewValue<CElementInfoSeqPrimMnd>(u"price", 4, ItemType_decimal),
                                  NewValue<CElementInfoSeqPrimOpt>(u"discount", 5, ItemType_decimal)}),
          NewTable<CAttributeInfo>({NewAttribute(u"sku", 0, ItemType_string), NewAttribute(u"line", 1, ItemType_i4)})};
}

void CItem::Init() {
  sku.clear();
  line = 0;
  description.clear();
  quantity = 1;
  price = CDecimal();
  discount.reset();
}

void CItem::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_string>(sku, read, value);
    case 1:
      return Access<ItemType_i4>(line, read, value);
    case 2:
      return Access<ItemType_string>(description, read, value);
    case 3:
      return Access<ItemType_i4>(quantity, read, value);
    case 4:
      return Access<ItemType_decimal>(price, read, value);
    case 5:
      return Access<ItemType_decimal>(discount, read, value);
  }
}

ClassTables COrder::MakeTables() {
  return {NewInfo(u"order"),
          NewTable<CElementInfo>(
              {NewValue<CElementInfoSeqPrimMnd>(u"date", 3, ItemType_date),
               NewValue<CElementInfoSeqPrimMnd>(u"placed", 4, ItemType_datetime),
               new CElementInfoSeqClsMnd(u"customer", kOrdersNamespace, 5, XmlElementType_Element, MakeNew<CCustomer>,
                                         /*classId=*/0, /*contentRequired=*/false),
               new CElementInfoSeqClsMnd(u"payment", kOrdersNamespace, 6, XmlElementType_Pseudo, MakeNew<CPayment>,
                                         /*classId=*/0, /*contentRequired=*/true),
               new CElementInfoSeqClsCol(u"item", kOrdersNamespace, 7, XmlElementType_Element),
               NewValue<CElementInfoSeqPrimMnd>(u"total", 8, ItemType_decimal),
               NewValue<CElementInfoSeqPrimOpt>(u"note", 9, ItemType_string)}),
          NewTable<CAttributeInfo>(
              {NewAttribute(u"id", 0, ItemType_i4),
               new CAttributeInfoEnum(u"status", u"", 1, /*optional=*/false, StatusToText, StatusFromText, nullptr),
               NewAttribute(u"currency", 2, ItemType_string, LengthOf(3))})};
}

void COrder::Init() {
  id = 0;
  status = OrderStatus::open;
  currency.clear();
  date = CDateTime(CDateTime::dt_date);
  placed = CDateTime(CDateTime::dt_dateTime);
  m_customer.Reset();
  m_payment.Reset();
  m_items.Reset();
  total = CDecimal();
  note.reset();
}

void COrder::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      return Access<ItemType_i4>(id, read, value);
    case 1:
      return read ? value.SetI4(static_cast<int>(status)) : void(status = static_cast<OrderStatus>(value.GetI4()));
    case 2:
      return Access<ItemType_string>(currency, read, value);
    case 3:
      return Access<ItemType_date>(date, read, value);
    case 4:
      return Access<ItemType_datetime>(placed, read, value);
    case 5:
      return value.SetXmlObject(&GetCustomer());
    case 6:
      return value.SetXmlObject(&GetPayment());
    case 7:
      return value.SetXmlCollection(&GetItems());
    case 8:
      return Access<ItemType_decimal>(total, read, value);
    case 9:
      return Access<ItemType_string>(note, read, value);
  }
}

ClassTables COrders::MakeTables() {
  return {NewInfo(u"orders"),
          NewTable<CElementInfo>(
              {new CElementInfoSeqClsMnd(u"header", kOrdersNamespace, 0, XmlElementType_Element, MakeNew<CHeader>,
                                         /*classId=*/0, /*contentRequired=*/false),
               new CElementInfoSeqClsCol(u"order", kOrdersNamespace, 1, XmlElementType_Element)}),
          NoAttributes()};
}

void COrders::Init() {
  m_header.Reset();
  m_orders.Reset();
}

void COrders::AccessProperty(int index, bool, OvVariant& value) {
  switch (index) {
    case 0:
      return value.SetXmlObject(&GetHeader());
    case 1:
      return value.SetXmlCollection(&GetOrders());
  }
}

CSerializationContext COrders::MakeContext() {
  CSerializationContext context;
  context.SetDefaultNamespaceURI(kOrdersNamespace);
  return context;
}

}  // namespace orders
