// What all fuzz targets share: taking an input apart, and saying what does not hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16::fuzz {

using Bytes = std::span<const unsigned char>;

/// Ends the process, which is how a fuzz target reports a fault, unless `holds`.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", what);
  std::abort();
}

/// At the end of a run, when it holds no object of the library any more.
inline void RequireNothingLeft() {
  const WString report = CInstanceMonitor::DumpState();
  const bool isClean = report.find(u"-->") == WString::npos && report.find(u"= -") == WString::npos;
  Require(isClean, "nothing is left behind, and nothing was taken off twice");
}

/// The bytes of one input, taken from the front: options first, then the data that they are for.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

  bool IsEmpty() const { return m_rest.empty(); }
  /// The next byte; 0 when there is none.
  unsigned TakeByte() { return m_rest.empty() ? 0 : Take(1).front(); }
  /// The next two bytes as a number, the high one first.
  unsigned TakePair() {
    const unsigned high = TakeByte();
    return high << 8 | TakeByte();
  }
  /// The next bytes, fewer at the end.
  Bytes Take(std::size_t count) {
    const Bytes taken = m_rest.first(std::min(count, m_rest.size()));
    m_rest = m_rest.subspan(taken.size());
    return taken;
  }
  /// All that is left.
  Bytes TakeRest() { return Take(m_rest.size()); }

 private:
  Bytes m_rest;
};

/// Memory of exactly this many elements, so that a sanitizer sees an access beyond its end.
template <class T>
std::unique_ptr<T[]> ExactRoom(std::size_t count) {
  return std::make_unique_for_overwrite<T[]>(count);
}

/// A text in memory of exactly its length.
class ExactText {
 public:
  explicit ExactText(WStringView text) : m_units(ExactRoom<WChar>(text.size())), m_length(text.size()) {
    std::copy(text.begin(), text.end(), m_units.get());
  }
  WStringView View() const { return {m_units.get(), m_length}; }

 private:
  std::unique_ptr<WChar[]> m_units;
  std::size_t m_length;
};

/// Two bytes a code unit, low byte first; an odd byte at the end is left out.
inline WString UnitsOf(Bytes bytes) {
  WString text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<WChar>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  return text;
}

inline Bytes BytesOf(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}
inline std::string_view CharactersOf(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline Bytes BytesOf(const CBinaryData& data) { return {data.GetData(), data.GetLength()}; }

inline bool AreEqual(Bytes a, Bytes b) { return std::equal(a.begin(), a.end(), b.begin(), b.end()); }

/// The Exception that `call` throws, or nothing. Whatever else it throws ends the process.
template <class Exception = COvException, class Call>
std::optional<Exception> FailureOf(const Call& call) {
  try {
    call();
  } catch (const Exception& exception) {
    return exception;
  }
  return std::nullopt;
}

}  // namespace OvXmlLib16::fuzz
