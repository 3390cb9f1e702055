// The limits on what a document may cost, as options.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "ovxmllib/ovxmllib.h"

namespace ovxml {

struct Limit {
  const char* option;
  const char* setter;  ///< the member of CSerializationContext, which the library's messages name
  const char* help;
  void (*set)(OvXmlLib16::CSerializationContext&, std::uint64_t);
};

/// Every limit that is a number; 0 switches one off.
std::span<const Limit> Limits();

/// The option that permits or refuses a DOCTYPE, and what the library's messages call it.
inline constexpr const char* kDoctypeOption = "--doctype";
inline constexpr const char* kDoctypeSetter = "SetAllowDoctype";

/// Puts options into a message in the place of the library's setters. False when it names none: then it tells of no
/// limit that can be set.
bool NameOptions(std::string& message);

}  // namespace ovxml
