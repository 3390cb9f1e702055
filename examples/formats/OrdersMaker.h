// Orders in any number.
#pragma once

#include <chrono>
#include <initializer_list>
#include <random>

#include "../orders/Orders.h"

namespace orders {

/// Makes orders that differ as real ones do, and are the same in every run.
class OrdersMaker {
 public:
  void Make(COrders& document, int count) {
    document.GetHeader().sender = u"Oak & Elm Trading";
    document.GetHeader().receiver = u"Fischer & Söhne GmbH";
    document.GetHeader().created = CDateTime(u"2024-05-14T08:30:00Z");
    while (count-- > 0) Fill(document.GetOrders().Add());
  }

 private:
  int Below(unsigned limit) { return static_cast<int>(m_chance() % limit); }
  const WChar* Of(std::initializer_list<const WChar*> texts) {
    return texts.begin()[Below(static_cast<unsigned>(texts.size()))];
  }
  CDecimal Amount(unsigned limit) { return CDecimal(Below(limit)) / CDecimal(100); }

  void Fill(COrder& order) {
    order.id = 10'000'000 + Below(90'000'000);
    order.status = static_cast<OrderStatus>(Below(4));
    order.currency = Of({u"EUR", u"GBP", u"CHF"});
    order.placed =
        CDateTime::FromChrono(std::chrono::sys_seconds(std::chrono::seconds(1'700'000'000 + Below(30'000'000))));
    order.date = CDateTime(order.placed.GetYear(), order.placed.GetMonth(), order.placed.GetDay());
    CCustomer& customer = order.GetCustomer();
    customer.name = Of({u"Zoë Müller", u"Peter O'Brien", u"Aino Virtanen", u"Mary Smith", u"Carla Rossi"});
    customer.city = Of({u"Zürich", u"Manchester", u"Oulu", u"Genova", u"Bristol"});
    customer.country = Of({u"CH", u"GB", u"FI", u"IT"});
    order.GetPayment().SetCash(new CCash);
    for (int line = 1 + Below(6); line > 0; --line) order.total += Fill(order.GetItems().Add(), line);
  }
  CDecimal Fill(CItem& item, int line) {
    item.sku = FormatString(u"KX-%05d", Below(100'000));
    item.line = line;
    item.description = Of({u"Oak shelf 120 mm", u"Brass hinge", u"Kahvipöytä, mänty", u"Lamp \"Nova\" & shade"});
    item.quantity = 1 + Below(12);
    item.price = Amount(50'000);
    if (Below(4) == 0) item.discount = Amount(2'000);
    return item.price * CDecimal(item.quantity) - item.discount.value_or(CDecimal());
  }

  std::minstd_rand m_chance;
};

}  // namespace orders
