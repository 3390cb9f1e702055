// Makes the plain structs of the events of a parser, of XML or of JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bench/OrdersByHand.h"

namespace OvXmlLib16::bench::byhand {

/// The elements of the documents; `document` is what the document element stands in.
enum class Tag : std::uint8_t {
  document,
  orders,
  header,
  sender,
  receiver,
  created,
  sequence,
  order,
  date,
  placed,
  customer,
  name,
  city,
  country,
  cash,
  card,
  number,
  holder,
  expires,
  invoice,
  due,
  reference,
  item,
  description,
  quantity,
  price,
  discount,
  total,
  note
};

/// Which element may stand where: a row for each, in the order of the schema, those of one parent together.
struct ElementRule;

/// Checks the order of elements and what must be there. All members throw `std::runtime_error` for what does not fit.
class OrdersBuilder {
 public:
  OrdersBuilder();

  /// Begins a child of the open element.
  void StartElement(std::string_view name);
  /// An attribute of the open element, which has no children yet.
  void Attribute(std::string_view name, std::string_view value);
  /// A piece of the open element's text; text between children does not count.
  void Text(std::string_view piece);
  /// Ends the open element.
  void EndElement();

  /// The result, once.
  Orders Take() { return std::move(m_orders); }

 private:
  struct Frame {
    Tag tag;
    const ElementRule* next;  // the first child that may still come
    bool repeats = false;     // `next` is a repeated element that came before
    int attributes = 0;       // how many came; none comes twice
  };

  const ElementRule& Expect(std::string_view name);
  void CheckComplete(const Frame& frame) const;
  void Make(Tag tag);
  void Assign(Tag tag);
  template <class Payment>
  Payment& PaymentAs();

  Order& CurrentOrder() { return m_orders.orders.back(); }
  Item& CurrentItem() { return CurrentOrder().items.back(); }

  Orders m_orders;
  std::vector<Frame> m_frames;
  std::string m_text;
};

}  // namespace OvXmlLib16::bench::byhand
