#include "ovxmllib/foundation/KeptNames.h"

#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <new>

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kPlaces = 512;  // a power of two
constexpr std::size_t kLongest = 64;  // code units

// Each place takes the first name that comes to it and never gives it up.
constinit std::array<std::atomic<const std::size_t*>, kPlaces> g_places{};

std::size_t PlaceOf(WStringView name) noexcept {
  std::size_t hash = name.size();
  for (const WChar unit : name) hash = hash * 31 + unit;
  return (hash ^ (hash >> 9)) & (kPlaces - 1);
}

bool Holds(const std::size_t* kept, WStringView name) noexcept {
  return AreSame({reinterpret_cast<const WChar*>(kept + 1), *kept}, name);
}

}  // namespace

const std::size_t* FindKeptName(WStringView name) {
  if (name.empty() || name.size() > kLongest) return nullptr;
  std::atomic<const std::size_t*>& place = g_places[PlaceOf(name)];
  const std::size_t* kept = place.load(std::memory_order_acquire);
  if (kept == nullptr) {
    void* const memory = ::operator new(sizeof(std::size_t) + name.size() * sizeof(WChar));
    auto* const made = new (memory) std::size_t(name.size());
    std::memcpy(made + 1, name.data(), name.size() * sizeof(WChar));
    if (place.compare_exchange_strong(kept, made, std::memory_order_acq_rel, std::memory_order_acquire)) return made;
    ::operator delete(memory);
  }
  return Holds(kept, name) ? kept : nullptr;
}

}  // namespace OvXmlLib16
