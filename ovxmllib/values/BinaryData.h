// A buffer of bytes that is cheap to copy: the value of base64Binary and hexBinary, and what documents as bytes travel
// in.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CBinaryDataBlock;

/// Any number of bytes. Copies share one block of memory; whatever changes a copy gives it a block of its own first.
///
/// Lengths and indexes count bytes. Text is stored as its UTF-16 code units, two bytes each with the low byte first and
/// without terminator; nothing is converted. Everything that needs memory may throw std::bad_alloc, and then leaves the
/// value as it was unless said otherwise. One object belongs to one thread at a time; copies of it may live on others.
class OVXMLLIB_API CBinaryData {
 public:
  /// Empty data.
  CBinaryData() noexcept = default;
  /// Shares the other's bytes; nothing is copied.
  CBinaryData(const CBinaryData& other) noexcept;
  /// Takes the other's bytes and leaves it empty.
  CBinaryData(CBinaryData&& other) noexcept;
  /// With `adopt`, takes over `bytes`, which come from `new unsigned char[]`: from the call on they belong to the
  /// object and are freed even if the constructor throws. Without it, copies them. A length of 0 gives empty data and
  /// leaves the pointer alone: it stays the caller's.
  CBinaryData(unsigned char* bytes, std::size_t length, bool adopt);
  /// Copies `length` bytes.
  CBinaryData(const unsigned char* bytes, std::size_t length);
  /// The code units of a terminated text; null counts as empty.
  CBinaryData(const WChar* text);
  virtual ~CBinaryData();

  /// Shares the other's bytes; assigning an object to itself changes nothing.
  CBinaryData& operator=(const CBinaryData& other) noexcept;
  /// Takes the other's bytes and leaves it empty.
  CBinaryData& operator=(CBinaryData&& other) noexcept;

  /// Makes the data empty.
  void Clear() noexcept;

  /// The bytes for reading, owned by this object and valid until it changes; null when empty.
  const unsigned char* GetData() const noexcept;
  /// The bytes for writing, no longer shared with any copy; null when empty. Valid until this object changes or is
  /// copied: a copy made afterwards would see what is written.
  unsigned char* GetData();
  /// The number of bytes.
  std::size_t GetLength() const noexcept;
  /// True when there are no bytes.
  bool IsEmpty() const noexcept { return m_pBlock == nullptr; }

  /// Gives the bytes to the caller, who frees them with `delete[]`, and makes the data empty; null when it was empty.
  /// Copies keep theirs. Bytes that were not adopted are copied.
  unsigned char* ReleaseData();

  /// Adds one byte, or one code unit as two bytes.
  void Append(unsigned char byte);
  void Append(WChar unit);
  /// Adds bytes, which may be this object's own. A length of 0 does nothing.
  void Append(const unsigned char* bytes, std::size_t length);
  /// Adds the code units of a text; a null pointer counts as empty.
  void Append(const WChar* text);
  void Append(WStringView text);
  /// Adds the other's bytes; `data.Append(data)` doubles it.
  void Append(const CBinaryData& other);

  /// Replaces the data by a copy of bytes, which may be this object's own. A length of 0 makes it empty.
  void SetBuffer(const unsigned char* bytes, std::size_t length);
  /// Replaces the data by the code units of a terminated text; null counts as empty.
  void SetBuffer(const WChar* text);

  /// Replaces the data by what base64 text stands for (RFC 4648, section 4). Padding and whitespace (space, tab, CR,
  /// LF) may stand anywhere, and bits that fill no byte are dropped. Text with any other character gives empty data and
  /// raises nothing: a caller that must tell looks at GetLength.
  void SetAsBase64(const WChar* text) { SetAsBase64(ViewOf(text)); }
  void SetAsBase64(WStringView text);
  /// The data in base64, padded, without line ends; "" when empty.
  WString GetAsBase64() const;

  /// Replaces the data by what hexadecimal text stands for, two digits a byte, the high one first, in either case.
  /// Throws COvException at an odd number of characters and at one that is no digit, whitespace among them, and then
  /// leaves the data empty.
  void SetAsHexString(const WChar* text) { SetAsHexString(ViewOf(text)); }
  void SetAsHexString(WStringView text);
  /// The data in upper case hexadecimal digits; "" when empty.
  WString GetAsHexString() const;
  /// The same for bytes held elsewhere; "" for a null pointer.
  static WString GetAsHexString(const unsigned char* bytes, std::size_t length);

  /// The same bytes. The empty data equals only itself.
  bool operator==(const CBinaryData& other) const noexcept;

  /// One byte. Throws COvException at an index that is not below the length.
  unsigned char operator[](std::size_t index) const;
  /// One byte for writing, no longer shared with any copy; the reference is valid as long as the pointer of GetData.
  unsigned char& operator[](std::size_t index);

 private:
  // They write straight into the end of the block.
  friend class COvZip;
  friend class CTextStream;

  // Makes the data `room` bytes longer and returns where the new ones begin; what stands in them is undefined. The room
  // must not be 0.
  unsigned char* Extend(std::size_t room);
  // The same for all the room that there is, `least` at least; GetLength tells how much.
  void ExtendToCapacity(std::size_t least);
  // Cuts the data to its first `length` bytes, keeping the memory for what Extend asks next. Only after Extend, while
  // the data has not been copied; `length` is not above the present one.
  void Shrink(std::size_t length) noexcept;

  void Detach();
  void Reset(CBinaryDataBlock* block) noexcept;

  CBinaryDataBlock* m_pBlock = nullptr;  // one reference is owned; null: no bytes
};

}  // namespace OvXmlLib16
