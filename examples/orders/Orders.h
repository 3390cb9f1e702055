// The classes of the orders documents (namespace urn:example:orders), as a generator would make them of a schema.
#pragma once

#include <cstdint>
#include <optional>

#include "../BoundClass.h"

namespace orders {

using namespace OvXmlLib16;

inline constexpr const WChar* kOrdersNamespace = u"urn:example:orders";

/// A class of this document, for the element `elementName` or for a group that is part of another's element.
template <class Class>
class OrdersClass : public BoundClass<Class> {
 public:
  static constexpr const WChar* kNamespace = kOrdersNamespace;

 protected:
  explicit OrdersClass(const WChar* elementName) { this->SetElementName(elementName); }
};

/// `header`: who sent the orders, when.
class CHeader : public OrdersClass<CHeader> {
 public:
  CHeader() : OrdersClass(u"header") {}

  WString sender, receiver;
  CDateTime created = CDateTime(CDateTime::dt_dateTime);
  std::int32_t sequence = 0;

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;
};

/// `customer`.
class CCustomer : public OrdersClass<CCustomer> {
 public:
  CCustomer() : OrdersClass(u"customer") {}

  WString name, city, country;

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;
};

/// `cash`: an element without content.
class CCash : public OrdersClass<CCash> {
 public:
  CCash() : OrdersClass(u"cash") {}

  static ClassTables MakeTables();

 protected:
  void Init() override {}
  void AccessProperty(int, bool, OvVariant&) override {}
};

/// `card`.
class CCard : public OrdersClass<CCard> {
 public:
  CCard() : OrdersClass(u"card") {}

  std::uint64_t number = 0;
  WString holder;
  CDateTime expires = CDateTime(CDateTime::dt_gYearMonth);

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;
};

/// `invoice`.
class CInvoice : public OrdersClass<CInvoice> {
 public:
  CInvoice() : OrdersClass(u"invoice") {}

  CDateTime due = CDateTime(CDateTime::dt_date);
  WString reference;

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;
};

/// How an order is paid: one of `cash`, `card` and `invoice`, which stand in the order's element.
class CPayment : public OrdersClass<CPayment> {
 public:
  CPayment() : OrdersClass(u"") {}

  /// The one that is set; the others are null.
  CCash* GetCash() const { return m_cash; }
  CCard* GetCard() const { return m_card; }
  CInvoice* GetInvoice() const { return m_invoice; }
  /// Throw COvInvalidStateException while another one is set; null takes a member back.
  void SetCash(const CSmartPtr<CCash>& cash);
  void SetCard(const CSmartPtr<CCard>& card);
  void SetInvoice(const CSmartPtr<CInvoice>& invoice);

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;

 private:
  template <class Member>
  void Set(CSmartPtr<Member>& property, const WChar* name, const CSmartPtr<Member>& value);

  CSmartPtr<CCash> m_cash;
  CSmartPtr<CCard> m_card;
  CSmartPtr<CInvoice> m_invoice;
  WString m_selected;  // the name of the member that is set
};

/// `item`: a line of an order.
class CItem : public OrdersClass<CItem> {
 public:
  static constexpr const WChar* kName = u"item";
  static constexpr int kMinOccurs = 1;

  CItem() : OrdersClass(kName) {}

  WString sku;
  std::int32_t line = 0;
  WString description;
  std::int32_t quantity = 1;
  CDecimal price;
  std::optional<CDecimal> discount;

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;
};

enum class OrderStatus : std::int32_t { open, packed, shipped, cancelled };

/// `order`.
class COrder : public OrdersClass<COrder> {
 public:
  static constexpr const WChar* kName = u"order";
  static constexpr int kMinOccurs = 1;

  COrder() : OrdersClass(kName) {}

  std::int32_t id = 0;
  OrderStatus status = OrderStatus::open;
  WString currency;
  CDateTime date = CDateTime(CDateTime::dt_date);
  CDateTime placed = CDateTime(CDateTime::dt_dateTime);
  CDecimal total;
  std::optional<WString> note;

  CCustomer& GetCustomer() const { return m_customer.Get(); }
  CPayment& GetPayment() const { return m_payment.Get(); }
  ObjectCol<CItem>& GetItems() const { return m_items.Get(); }

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;

 private:
  MadeOnUse<CCustomer> m_customer;
  MadeOnUse<CPayment> m_payment;
  MadeOnUse<ObjectCol<CItem>> m_items;
};

/// `orders`: the document element.
class COrders : public OrdersClass<COrders> {
 public:
  COrders() : OrdersClass(u"orders") {}

  CHeader& GetHeader() const { return m_header.Get(); }
  ObjectCol<COrder>& GetOrders() const { return m_orders.Get(); }

  /// A context that writes the documents in their usual form, with the namespace as the default one.
  static CSerializationContext MakeContext();

  static ClassTables MakeTables();

 protected:
  void Init() override;
  void AccessProperty(int index, bool read, OvVariant& value) override;

 private:
  MadeOnUse<CHeader> m_header;
  MadeOnUse<ObjectCol<COrder>> m_orders;
};

}  // namespace orders
