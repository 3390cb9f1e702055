#include "ovxmllib/foundation/KeptNames.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kPlaces = 512;  // a power of two
constexpr std::size_t kLongest = 64;  // code units

// Each place takes the first name that comes to it and never gives it up; a name tries some in a row.
constexpr std::size_t kTries = 4;
constinit std::array<std::atomic<const std::size_t*>, kPlaces> g_places{};

// Four units at a time, the last four also where they overlap others.
std::size_t HashOf(WStringView name) noexcept {
  constexpr std::size_t kBlock = 4;
  constexpr std::uint64_t kOddConstant = 0x9E37'79B9'7F4A'7C15u;  // 2^64 divided by the golden ratio
  std::uint64_t hash = name.size();
  const auto mix = [&](std::uint64_t word) { hash = (std::rotl(hash, 29) ^ word) * kOddConstant; };
  if (name.size() < kBlock) {
    for (const WChar unit : name) mix(unit);
  } else {
    const auto mixBlock = [&](std::size_t at) {
      std::uint64_t word;
      std::memcpy(&word, name.data() + at, sizeof word);
      mix(word);
    };
    for (std::size_t i = 0; i + kBlock < name.size(); i += kBlock) mixBlock(i);
    mixBlock(name.size() - kBlock);
  }
  return static_cast<std::size_t>(hash >> 32);
}

bool Holds(const std::size_t* kept, WStringView name) noexcept {
  return AreSame({reinterpret_cast<const WChar*>(kept + 1), *kept}, name);
}

// Whether it is the name. Names hold no U+0000, so that a terminated text ends no later than the difference is found.
bool Holds(const std::size_t* kept, const WChar* name) noexcept {
  const auto* const units = reinterpret_cast<const WChar*>(kept + 1);
  const std::size_t length = *kept;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < length; ++i) {
    if (units[i] != name[i]) return false;
  }
  return name[length] == 0;
}

// What was found for texts, by the places where they lie. Texts change: each is compared.
constinit std::array<std::atomic<const std::size_t*>, 512> g_found{};

std::atomic<const std::size_t*>& FoundFor(const WChar* name) noexcept {
  return g_found[reinterpret_cast<std::uintptr_t>(name) / sizeof(WChar) % g_found.size()];
}

constexpr std::size_t kEmptyName = 0;

std::atomic<const std::size_t*>& PlaceOf(std::size_t number) noexcept { return g_places[number % kPlaces]; }

// What the place, which was empty, keeps from now on: this name, or another thread's that was first.
const std::size_t* KeepAt(std::atomic<const std::size_t*>& place, WStringView name) {
  void* const memory = ::operator new(sizeof(std::size_t) + name.size() * sizeof(WChar));
  auto* const made = new (memory) std::size_t(name.size());
  std::memcpy(made + 1, name.data(), name.size() * sizeof(WChar));
  const std::size_t* kept = nullptr;
  if (place.compare_exchange_strong(kept, made, std::memory_order_acq_rel, std::memory_order_acquire)) return made;
  ::operator delete(memory);
  return kept;
}

}  // namespace

const std::size_t* FindKeptName(const WChar* name) {
  std::atomic<const std::size_t*>& found = FoundFor(name);
  const std::size_t* kept = found.load(std::memory_order_acquire);
  if (kept != nullptr && Holds(kept, name)) return kept;
  kept = FindKeptName(WStringView(name));
  if (kept != nullptr) found.store(kept, std::memory_order_release);
  return kept;
}

const std::size_t* LookForKeptName(WStringView name) noexcept {
  if (name.empty()) return &kEmptyName;
  if (name.size() > kLongest) return nullptr;
  const std::size_t hash = HashOf(name);
  for (std::size_t i = 0; i < kTries; ++i) {
    const std::size_t* const kept = PlaceOf(hash + i).load(std::memory_order_acquire);
    if (kept == nullptr) return nullptr;
    if (Holds(kept, name)) return kept;
  }
  return nullptr;
}

const std::size_t* FindKeptName(WStringView name) {
  if (name.empty()) return &kEmptyName;
  if (name.size() > kLongest) return nullptr;
  const std::size_t hash = HashOf(name);
  for (std::size_t i = 0; i < kTries; ++i) {
    std::atomic<const std::size_t*>& place = PlaceOf(hash + i);
    const std::size_t* kept = place.load(std::memory_order_acquire);
    if (kept == nullptr) kept = KeepAt(place, name);
    if (Holds(kept, name)) return kept;
  }
  return nullptr;
}

}  // namespace OvXmlLib16
