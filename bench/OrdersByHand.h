// The orders documents in plain structs, read and written by hand: what a programmer does who has no data binder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace OvXmlLib16::bench::byhand {

/// Minutes east of UTC; none for a local time.
using Zone = std::optional<std::int16_t>;

struct Date {
  std::int16_t year = 1;
  std::uint8_t month = 1, day = 1;
  Zone zone;
};

struct DateTime {
  std::int16_t year = 1;
  std::uint8_t month = 1, day = 1, hour = 0, minute = 0, second = 0;
  std::uint32_t nanoseconds = 0;
  Zone zone;
};

struct YearMonth {
  std::int16_t year = 1;
  std::uint8_t month = 1;
  Zone zone;
};

/// A decimal number, exactly: `digits` divided by ten to the power of `places`.
struct Amount {
  std::int64_t digits = 0;
  std::uint8_t places = 0;
};

struct Header {
  std::string sender, receiver;
  DateTime created;
  std::int32_t sequence = 0;
};

struct Customer {
  std::string name, city, country;
};

struct Cash {};

struct Card {
  std::uint64_t number = 0;
  std::string holder;
  YearMonth expires;
};

struct Invoice {
  Date due;
  std::string reference;
};

struct Item {
  std::string sku;
  std::int32_t line = 0;
  std::string description;
  std::int32_t quantity = 1;
  Amount price;
  std::optional<Amount> discount;
};

enum class Status : std::uint8_t { open, packed, shipped, cancelled };

struct Order {
  std::int32_t id = 0;
  Status status = Status::open;
  std::string currency;
  Date date;
  DateTime placed;
  Customer customer;
  std::variant<std::monostate, Cash, Card, Invoice> payment;
  std::vector<Item> items;
  Amount total;
  std::optional<std::string> note;
};

struct Orders {
  Header header;
  std::vector<Order> orders;
};

/// Reads a document with Expat. Throws `std::runtime_error` for what is not well-formed, an element or attribute that
/// is unknown, missing or out of place, and a value that cannot be read.
Orders ReadXml(std::string_view document);

/// UTF-8 with an XML declaration, indented by tabs, as the documents are.
std::string WriteXml(const Orders& orders);

/// `{"orders":{"@xmlns":...,"header":{...},"order":[...]}}` without white space: attributes are named "@name", repeated
/// elements make an array, numbers stand without quotation marks, an empty element is null.
std::string WriteJson(const Orders& orders);

}  // namespace OvXmlLib16::bench::byhand
