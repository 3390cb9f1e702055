#include "bench/OrdersBuilder.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <stdexcept>

#include "bench/OrdersByHandValues.h"

namespace OvXmlLib16::bench::byhand {

enum class Occurs { once, optional, repeated, choice };

struct ElementRule {
  Tag parent;
  Tag tag;
  std::string_view name;
  Occurs occurs;
};

namespace {

constexpr ElementRule kRules[] = {{Tag::document, Tag::orders, "orders", Occurs::once},
                                  {Tag::orders, Tag::header, "header", Occurs::once},
                                  {Tag::orders, Tag::order, "order", Occurs::repeated},
                                  {Tag::header, Tag::sender, "sender", Occurs::once},
                                  {Tag::header, Tag::receiver, "receiver", Occurs::once},
                                  {Tag::header, Tag::created, "created", Occurs::once},
                                  {Tag::header, Tag::sequence, "sequence", Occurs::once},
                                  {Tag::order, Tag::date, "date", Occurs::once},
                                  {Tag::order, Tag::placed, "placed", Occurs::once},
                                  {Tag::order, Tag::customer, "customer", Occurs::once},
                                  {Tag::order, Tag::cash, "cash", Occurs::choice},
                                  {Tag::order, Tag::card, "card", Occurs::choice},
                                  {Tag::order, Tag::invoice, "invoice", Occurs::choice},
                                  {Tag::order, Tag::item, "item", Occurs::repeated},
                                  {Tag::order, Tag::total, "total", Occurs::once},
                                  {Tag::order, Tag::note, "note", Occurs::optional},
                                  {Tag::customer, Tag::name, "name", Occurs::once},
                                  {Tag::customer, Tag::city, "city", Occurs::once},
                                  {Tag::customer, Tag::country, "country", Occurs::once},
                                  {Tag::card, Tag::number, "number", Occurs::once},
                                  {Tag::card, Tag::holder, "holder", Occurs::once},
                                  {Tag::card, Tag::expires, "expires", Occurs::once},
                                  {Tag::invoice, Tag::due, "due", Occurs::once},
                                  {Tag::invoice, Tag::reference, "reference", Occurs::once},
                                  {Tag::item, Tag::description, "description", Occurs::once},
                                  {Tag::item, Tag::quantity, "quantity", Occurs::once},
                                  {Tag::item, Tag::price, "price", Occurs::once},
                                  {Tag::item, Tag::discount, "discount", Occurs::optional}};

constexpr std::size_t kTagCount = static_cast<std::size_t>(Tag::note) + 1;

/// The first rule of each parent; null for an element without children, which holds text.
constexpr auto kFirstRules = [] {
  std::array<const ElementRule*, kTagCount> first{};
  for (const ElementRule& rule : kRules) {
    const ElementRule*& entry = first[static_cast<std::size_t>(rule.parent)];
    if (entry == nullptr) entry = &rule;
  }
  return first;
}();

const ElementRule* FirstRuleOf(Tag tag) { return kFirstRules[static_cast<std::size_t>(tag)]; }

bool IsRuleOf(const ElementRule* rule, Tag parent) {
  return rule != nullptr && rule != std::end(kRules) && rule->parent == parent;
}

int AttributesOf(Tag tag) { return tag == Tag::order ? 3 : tag == Tag::item ? 2 : 0; }

[[noreturn]] void Refuse(std::string_view what, std::string_view name) {
  throw std::runtime_error(std::string(what).append(" '").append(name).append("'"));
}

}  // namespace

OrdersBuilder::OrdersBuilder() { m_frames.push_back({Tag::document, FirstRuleOf(Tag::document)}); }

void OrdersBuilder::StartElement(std::string_view name) {
  const Tag tag = Expect(name).tag;
  m_frames.push_back({tag, FirstRuleOf(tag)});
  m_text.clear();
  Make(tag);
}

void OrdersBuilder::Text(std::string_view piece) {
  if (FirstRuleOf(m_frames.back().tag) == nullptr) m_text += piece;
}

void OrdersBuilder::EndElement() {
  const Frame& frame = m_frames.back();
  CheckComplete(frame);
  Assign(frame.tag);
  m_frames.pop_back();
}

const ElementRule& OrdersBuilder::Expect(std::string_view name) {
  Frame& frame = m_frames.back();
  for (; IsRuleOf(frame.next, frame.tag); ++frame.next, frame.repeats = false) {
    const ElementRule& rule = *frame.next;
    if (rule.name == name) {
      frame.repeats = rule.occurs == Occurs::repeated;
      if (!frame.repeats) ++frame.next;
      return rule;
    }
    if (rule.occurs == Occurs::once || (rule.occurs == Occurs::repeated && !frame.repeats)) break;
  }
  Refuse("unexpected element", name);
}

void OrdersBuilder::CheckComplete(const Frame& frame) const {
  if (frame.attributes != AttributesOf(frame.tag)) Refuse("missing attribute", "");
  for (const ElementRule* rule = frame.next; IsRuleOf(rule, frame.tag); ++rule) {
    const bool cameBefore = frame.repeats && rule == frame.next;
    if (rule->occurs != Occurs::optional && !cameBefore) Refuse("missing element", rule->name);
  }
}

void OrdersBuilder::Attribute(std::string_view name, std::string_view value) {
  Frame& frame = m_frames.back();
  ++frame.attributes;
  if (frame.tag == Tag::order) {
    if (name == "id") return Parse(value, CurrentOrder().id);
    if (name == "status") return Parse(value, CurrentOrder().status);
    if (name == "currency") return Parse(value, CurrentOrder().currency);
  } else if (frame.tag == Tag::item) {
    if (name == "sku") return Parse(value, CurrentItem().sku);
    if (name == "line") return Parse(value, CurrentItem().line);
  }
  Refuse("unknown attribute", name);
}

template <class Payment>
Payment& OrdersBuilder::PaymentAs() {
  return std::get<Payment>(CurrentOrder().payment);
}

void OrdersBuilder::Make(Tag tag) {
  switch (tag) {
    case Tag::order:
      return void(m_orders.orders.emplace_back());
    case Tag::item:
      // Behind the choice: an item is the first that shows that no payment was there.
      if (CurrentOrder().payment.index() == 0) Refuse("missing element", "cash");
      return void(CurrentOrder().items.emplace_back());
    case Tag::cash:
    case Tag::card:
    case Tag::invoice:
      if (CurrentOrder().payment.index() != 0) Refuse("a second payment before", "item");
      if (tag == Tag::cash) return void(CurrentOrder().payment.emplace<Cash>());
      if (tag == Tag::card) return void(CurrentOrder().payment.emplace<Card>());
      return void(CurrentOrder().payment.emplace<Invoice>());
    default:
      return;
  }
}

void OrdersBuilder::Assign(Tag tag) {
  switch (tag) {
    case Tag::sender:
      return Parse(m_text, m_orders.header.sender);
    case Tag::receiver:
      return Parse(m_text, m_orders.header.receiver);
    case Tag::created:
      return Parse(m_text, m_orders.header.created);
    case Tag::sequence:
      return Parse(m_text, m_orders.header.sequence);
    case Tag::date:
      return Parse(m_text, CurrentOrder().date);
    case Tag::placed:
      return Parse(m_text, CurrentOrder().placed);
    case Tag::name:
      return Parse(m_text, CurrentOrder().customer.name);
    case Tag::city:
      return Parse(m_text, CurrentOrder().customer.city);
    case Tag::country:
      return Parse(m_text, CurrentOrder().customer.country);
    case Tag::number:
      return Parse(m_text, PaymentAs<Card>().number);
    case Tag::holder:
      return Parse(m_text, PaymentAs<Card>().holder);
    case Tag::expires:
      return Parse(m_text, PaymentAs<Card>().expires);
    case Tag::due:
      return Parse(m_text, PaymentAs<Invoice>().due);
    case Tag::reference:
      return Parse(m_text, PaymentAs<Invoice>().reference);
    case Tag::description:
      return Parse(m_text, CurrentItem().description);
    case Tag::quantity:
      return Parse(m_text, CurrentItem().quantity);
    case Tag::price:
      return Parse(m_text, CurrentItem().price);
    case Tag::discount:
      return Parse(m_text, CurrentItem().discount);
    case Tag::total:
      return Parse(m_text, CurrentOrder().total);
    case Tag::note:
      return Parse(m_text, CurrentOrder().note);
    default:
      return;
  }
}

}  // namespace OvXmlLib16::bench::byhand
