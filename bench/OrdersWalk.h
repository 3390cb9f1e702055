// The plain structs, written in order to a sink of XML or of JSON.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "bench/OrdersByHandValues.h"

namespace OvXmlLib16::bench::byhand {

inline constexpr std::string_view kNamespace = "urn:example:orders";

/// What is written in place of each character; empty where the character stands for itself.
using Replacements = std::array<std::string_view, 256>;

inline void AppendEscaped(std::string& out, std::string_view text, const Replacements& replacements) {
  std::size_t done = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view replacement = replacements[static_cast<unsigned char>(text[i])];
    if (replacement.empty()) continue;
    out.append(text, done, i - done).append(replacement);
    done = i + 1;
  }
  out.append(text, done);
}

/// Writes the children of an order that say how it is paid.
template <class Sink>
void WalkPayment(Sink& sink, const Order& order) {
  if (std::holds_alternative<Cash>(order.payment)) return sink.Empty("cash");
  if (const Card* card = std::get_if<Card>(&order.payment)) {
    sink.Begin("card");
    sink.EndOfAttributes();
    sink.Leaf("number", card->number);
    sink.Leaf("holder", card->holder);
    sink.Leaf("expires", card->expires);
    sink.End("card");
  } else if (const Invoice* invoice = std::get_if<Invoice>(&order.payment)) {
    sink.Begin("invoice");
    sink.EndOfAttributes();
    sink.Leaf("due", invoice->due);
    sink.Leaf("reference", invoice->reference);
    sink.End("invoice");
  }
}

template <class Sink>
void WalkItem(Sink& sink, const Item& item) {
  sink.BeginEntry("item");
  sink.Attribute("sku", item.sku);
  sink.Attribute("line", item.line);
  sink.EndOfAttributes();
  sink.Leaf("description", item.description);
  sink.Leaf("quantity", item.quantity);
  sink.Leaf("price", item.price);
  if (item.discount) sink.Leaf("discount", *item.discount);
  sink.End("item");
}

template <class Sink>
void WalkOrder(Sink& sink, const Order& order) {
  sink.BeginEntry("order");
  sink.Attribute("id", order.id);
  sink.Attribute("status", order.status);
  sink.Attribute("currency", order.currency);
  sink.EndOfAttributes();
  sink.Leaf("date", order.date);
  sink.Leaf("placed", order.placed);
  sink.Begin("customer");
  sink.EndOfAttributes();
  sink.Leaf("name", order.customer.name);
  sink.Leaf("city", order.customer.city);
  sink.Leaf("country", order.customer.country);
  sink.End("customer");
  WalkPayment(sink, order);
  sink.BeginArray("item");
  for (const Item& item : order.items) WalkItem(sink, item);
  sink.EndArray();
  sink.Leaf("total", order.total);
  if (order.note) sink.Leaf("note", *order.note);
  sink.End("order");
}

template <class Sink>
void WalkOrders(Sink& sink, const Orders& orders) {
  sink.Begin("orders");
  sink.Attribute("xmlns", kNamespace);
  sink.EndOfAttributes();
  sink.Begin("header");
  sink.EndOfAttributes();
  sink.Leaf("sender", orders.header.sender);
  sink.Leaf("receiver", orders.header.receiver);
  sink.Leaf("created", orders.header.created);
  sink.Leaf("sequence", orders.header.sequence);
  sink.End("header");
  sink.BeginArray("order");
  for (const Order& order : orders.orders) WalkOrder(sink, order);
  sink.EndArray();
  sink.End("orders");
}

}  // namespace OvXmlLib16::bench::byhand
