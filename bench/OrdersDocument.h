// Generated business documents: the same bytes on every machine, in any size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib16::bench {

/// The seed of the documents whose figures are quoted; any other value gives another document of the same kind. With
/// this one the smallest document already has a card, a discount, an entity and text outside ASCII.
inline constexpr std::uint64_t kOrdersSeed = 406;

/// Makes an "orders" document: a header and `order` elements in the default namespace `urn:example:orders`, with
/// attributes, dates, decimals, integers, a choice of payment, repeated items, notes, entities and a little text
/// outside ASCII. UTF-8 with an XML declaration and no byte order mark, indented by one tab a level, lines ended by LF.
///
/// The document is always whole and holds at least one order with one item (650 to 900 bytes); beyond that
/// its length is within 600 bytes of `wantedBytes`. It depends on the two arguments only, not on locale, clock or
/// platform; documents of different sizes share no more than their beginning. Throws `std::bad_alloc`.
std::string MakeOrdersDocument(std::size_t wantedBytes, std::uint64_t seed = kOrdersSeed);

/// FNV-1a, 64 bits: tells whether two runs measured the same document.
std::uint64_t DocumentChecksum(std::string_view document) noexcept;

}  // namespace OvXmlLib16::bench
