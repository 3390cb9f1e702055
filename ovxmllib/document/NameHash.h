// The hash of names of a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace OvXmlLib16 {

/// Seeded once per process, so that a document cannot be made whose names collide. The first call throws what
/// std::random_device throws.
std::uint64_t HashName(std::string_view name);

/// For standard containers.
struct NameHash {
  std::size_t operator()(std::string_view name) const { return HashName(name); }
};

}  // namespace OvXmlLib16
