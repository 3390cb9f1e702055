#include "ovxmllib/values/BinaryData.h"

#include <array>
#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/values/Base64.h"
#include "ovxmllib/values/BinaryDataBlock.h"

namespace OvXmlLib16 {

namespace {

// Writes code units low byte first.
void PutUnits(WStringView text, unsigned char* out) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(out, text.data(), text.size() * sizeof(WChar));
  } else {
    for (const WChar unit : text) {
      *out++ = static_cast<unsigned char>(unit);
      *out++ = static_cast<unsigned char>(unit >> 8);
    }
  }
}

constexpr std::uint8_t kNoHexDigit = 0xFF;

constexpr auto kHexValues = [] {
  std::array<std::uint8_t, 128> values{};
  values.fill(kNoHexDigit);
  for (std::uint8_t i = 0; i < 10; ++i) values[std::size_t{'0'} + i] = i;
  for (std::uint8_t i = 10; i < 16; ++i) values[std::size_t{'A'} + i - 10] = values[std::size_t{'a'} + i - 10] = i;
  return values;
}();

constexpr std::uint8_t HexValueOf(WChar c) noexcept { return c < kHexValues.size() ? kHexValues[c] : kNoHexDigit; }

[[noreturn]] void ThrowNoHexDigit(WChar c) { throw COvException(FormatString(u"Invalid char in hex string [%c]", c)); }

// Both digits of every byte.
constexpr auto kHexPairs = [] {
  constexpr WStringView kDigits = u"0123456789ABCDEF";
  std::array<std::array<WChar, 2>, 256> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = {kDigits[i >> 4], kDigits[i & 0xF]};
  return pairs;
}();

[[noreturn]] void ThrowOutOfRange(std::size_t index) {
  throw COvException(FormatString(u"Index Out of range [%d]", index));
}

}  // namespace

CBinaryData::CBinaryData(const CBinaryData& other) noexcept : m_pBlock(other.m_pBlock) {
  if (m_pBlock != nullptr) m_pBlock->AddRef();
}

CBinaryData::CBinaryData(CBinaryData&& other) noexcept : m_pBlock(std::exchange(other.m_pBlock, nullptr)) {}

CBinaryData::CBinaryData(unsigned char* bytes, std::size_t length, bool adopt) {
  if (length == 0) return;
  m_pBlock = adopt ? CBinaryDataBlock::Adopt(bytes, length) : CBinaryDataBlock::Copy(bytes, length);
}

CBinaryData::CBinaryData(const unsigned char* bytes, std::size_t length) {
  if (length != 0) m_pBlock = CBinaryDataBlock::Copy(bytes, length);
}

CBinaryData::CBinaryData(const WChar* text) { Append(ViewOf(text)); }

CBinaryData::~CBinaryData() { Clear(); }

CBinaryData& CBinaryData::operator=(const CBinaryData& other) noexcept { return *this = CBinaryData(other); }

CBinaryData& CBinaryData::operator=(CBinaryData&& other) noexcept {
  Reset(std::exchange(other.m_pBlock, nullptr));
  return *this;
}

void CBinaryData::Reset(CBinaryDataBlock* block) noexcept {
  CBinaryDataBlock* const old = std::exchange(m_pBlock, block);
  if (old != nullptr) old->Release();
}

void CBinaryData::Clear() noexcept { Reset(nullptr); }

void CBinaryData::Detach() {
  if (m_pBlock != nullptr && m_pBlock->IsShared()) m_pBlock = m_pBlock->Detach();
}

const unsigned char* CBinaryData::GetData() const noexcept {
  return m_pBlock == nullptr ? nullptr : m_pBlock->GetData();
}

unsigned char* CBinaryData::GetData() {
  Detach();
  return m_pBlock == nullptr ? nullptr : m_pBlock->GetData();
}

std::size_t CBinaryData::GetLength() const noexcept { return m_pBlock == nullptr ? 0 : m_pBlock->GetLength(); }

unsigned char* CBinaryData::ReleaseData() {
  if (m_pBlock == nullptr) return nullptr;
  Detach();
  unsigned char* const bytes = m_pBlock->ReleaseData();
  m_pBlock = nullptr;
  return bytes;
}

unsigned char* CBinaryData::Extend(std::size_t room) {
  assert(room > 0);
  if (m_pBlock == nullptr) {
    m_pBlock = CBinaryDataBlock::Make(room);
    return m_pBlock->GetData();
  }
  Detach();
  return m_pBlock->Extend(room);
}

void CBinaryData::ExtendToCapacity(std::size_t least) {
  Extend(least);
  m_pBlock->ExtendToCapacity();
}

void CBinaryData::Shrink(std::size_t length) noexcept { length == 0 ? Clear() : m_pBlock->Shrink(length); }

void CBinaryData::Append(unsigned char byte) { *Extend(1) = byte; }

void CBinaryData::Append(WChar unit) { Append(WStringView(&unit, 1)); }

void CBinaryData::Append(const unsigned char* bytes, std::size_t length) {
  if (length == 0) return;
  if (m_pBlock == nullptr) {
    m_pBlock = CBinaryDataBlock::Copy(bytes, length);
    return;
  }
  // `bytes` may stand in a shared block, which goes with its last reference: others may give theirs up at any time.
  const CBinaryData shared = m_pBlock->IsShared() ? *this : CBinaryData();
  Detach();
  m_pBlock->Append(bytes, length);
}

void CBinaryData::Append(const WChar* text) { Append(ViewOf(text)); }

void CBinaryData::Append(WStringView text) {
  if (!text.empty()) PutUnits(text, Extend(text.size() * sizeof(WChar)));
}

void CBinaryData::Append(const CBinaryData& other) {
  if (IsEmpty()) {
    *this = other;
  } else {
    Append(other.GetData(), other.GetLength());
  }
}

void CBinaryData::SetBuffer(const unsigned char* bytes, std::size_t length) { *this = CBinaryData(bytes, length); }

void CBinaryData::SetBuffer(const WChar* text) { *this = CBinaryData(text); }

void CBinaryData::SetAsBase64(WStringView text) {
  auto bytes = std::make_unique_for_overwrite<unsigned char[]>(CBase64::GetDecodedRoom(text.size()));
  const std::size_t length = CBase64().Decode(text, bytes.get());
  Reset(length == 0 ? nullptr : CBinaryDataBlock::Adopt(bytes.release(), length));
}

WString CBinaryData::GetAsBase64() const {
  WString result(CBase64::GetEncodedLength(GetLength()), u'\0');
  CBase64().Encode(GetData(), GetLength(), result.data());
  return result;
}

void CBinaryData::SetAsHexString(WStringView text) {
  Clear();
  if (text.size() % 2 != 0) throw COvException(u"Invalid length in hex string");
  if (text.empty()) return;
  const std::size_t length = text.size() / 2;
  auto bytes = std::make_unique_for_overwrite<unsigned char[]>(length);
  for (std::size_t i = 0; i < length; ++i) {
    const std::uint8_t high = HexValueOf(text[2 * i]), low = HexValueOf(text[2 * i + 1]);
    if ((high | low) == kNoHexDigit) ThrowNoHexDigit(high == kNoHexDigit ? text[2 * i] : text[2 * i + 1]);
    bytes[i] = static_cast<unsigned char>((high << 4) | low);
  }
  m_pBlock = CBinaryDataBlock::Adopt(bytes.release(), length);
}

WString CBinaryData::GetAsHexString() const { return GetAsHexString(GetData(), GetLength()); }

WString CBinaryData::GetAsHexString(const unsigned char* bytes, std::size_t length) {
  if (bytes == nullptr) return {};
  WString result(length * 2, u'\0');
  for (std::size_t i = 0; i < length; ++i) {
    std::memcpy(result.data() + 2 * i, kHexPairs[bytes[i]].data(), sizeof kHexPairs[0]);
  }
  return result;
}

bool CBinaryData::operator==(const CBinaryData& other) const noexcept {
  if (m_pBlock == other.m_pBlock) return true;
  if (GetLength() != other.GetLength()) return false;
  return std::memcmp(GetData(), other.GetData(), GetLength()) == 0;
}

unsigned char CBinaryData::operator[](std::size_t index) const {
  if (index >= GetLength()) ThrowOutOfRange(index);
  return m_pBlock->GetData()[index];
}

unsigned char& CBinaryData::operator[](std::size_t index) {
  if (index >= GetLength()) ThrowOutOfRange(index);
  Detach();
  return m_pBlock->GetData()[index];
}

}  // namespace OvXmlLib16
