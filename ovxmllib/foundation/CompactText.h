// A text that costs its owner one pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// A text for objects of which there are millions: nothing when it is empty, else a length with the code units behind
/// it. They lie in a block of their own or, for an object whose text seldom changes, in the same block as the object.
class CompactText {
 public:
  constexpr CompactText() noexcept = default;
  /// In a block of its own. Throws std::bad_alloc.
  explicit CompactText(WStringView text) : m_place(text.empty() ? 0 : PlaceIn(::operator new(SizeOf(text)), text)) {}
  /// In the RoomFor(text) bytes at `room`, which the caller owns and which outlive this text; they are aligned for
  /// std::size_t. Throws std::bad_alloc, for a text that gets a block of its own all the same.
  CompactText(WStringView text, void* room)
      : CompactText(RoomFor(text) == 0 ? CompactText(text) : CompactText(PlaceIn(room, text) | kBorrowed)) {}
  /// Refers to a length with the code units behind it that live as long as the process.
  explicit CompactText(const std::size_t* kept) noexcept
      : m_place(reinterpret_cast<std::uintptr_t>(kept) | kBorrowed) {}
  CompactText(CompactText&& other) noexcept : m_place(std::exchange(other.m_place, 0)) {}
  CompactText& operator=(CompactText&& other) noexcept {
    std::swap(m_place, other.m_place);
    return *this;
  }
  ~CompactText() {
    if (m_place != 0 && (m_place & kBorrowed) == 0) ::operator delete(reinterpret_cast<void*>(m_place));
  }

  /// How much room behind an object a text wants. Long texts want none, lest the memory of one that was replaced be
  /// kept as long as the object.
  static std::size_t RoomFor(WStringView text) noexcept {
    return text.empty() || text.size() > kMostBeside ? 0 : SizeOf(text);
  }

  bool IsEmpty() const noexcept { return m_place == 0; }
  /// Whether it refers to this length.
  bool IsKeptAt(const std::size_t* kept) const noexcept {
    return m_place == (reinterpret_cast<std::uintptr_t>(kept) | kBorrowed);
  }
  /// Valid until the text is replaced.
  WStringView View() const noexcept {
    if (m_place == 0) return {};
    const auto* length = reinterpret_cast<const std::size_t*>(m_place & ~kBorrowed);
    return {reinterpret_cast<const WChar*>(length + 1), *length};
  }
  WString String() const { return WString(View()); }

  /// Replaces the text; it may be a part of this one. Throws std::bad_alloc and then changes nothing.
  void Assign(WStringView text) {
    if (text != View()) *this = CompactText(text);
  }

 private:
  static constexpr std::uintptr_t kBorrowed = 1;
  static constexpr std::size_t kMostBeside = 256;  // code units

  explicit CompactText(std::uintptr_t place) noexcept : m_place(place) {}

  static std::size_t SizeOf(WStringView text) noexcept { return sizeof(std::size_t) + text.size() * sizeof(WChar); }
  static std::uintptr_t PlaceIn(void* room, WStringView text) noexcept {
    auto* const length = new (room) std::size_t(text.size());
    std::memcpy(length + 1, text.data(), text.size() * sizeof(WChar));
    return reinterpret_cast<std::uintptr_t>(room);
  }

  std::uintptr_t m_place = 0;  // the length's address; its lowest bit is kBorrowed when the memory is not owned
};

}  // namespace OvXmlLib16
