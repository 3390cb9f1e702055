// The sink of the text writers: collects text and gives it as a string or as encoded bytes.
#pragma once

#include <cstddef>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/StringBuffer.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// Output to memory. Call Open, then any number of Write and Flush, then Close, and take the result; destruction is
/// safe at any point. Lengths count UTF-16 code units. Belongs to the thread of its writer.
///
/// With an encoding, each Flush turns what is buffered into bytes while it is still in the processor's cache, so that a
/// large document is never held as text; without one, Flush leaves the text alone. A writer that has UTF-8 to give for
/// UTF-8 writes it in place (ReserveUtf8), which spares the way through the buffer.
///
/// Every way out of the stream guards against text that no document can hold: at U+0000 and at an unpaired surrogate
/// Flush, GetString, GetText and GetBytes throw COvInvalidValueException, which names the position in all that was
/// written. The stream is then good for destruction or another Open only.
class CTextStream : public CInstanceMonitor {
 public:
  /// With XmlEncoding_None the result is text alone. Any number is taken; GetBytes refuses what is no encoding.
  explicit CTextStream(XmlEncoding encoding = XmlEncoding_None) : CTextStream(encoding, Record()) {}
  CTextStream(const CTextStream&) = delete;
  CTextStream& operator=(const CTextStream&) = delete;
  ~CTextStream() override;

  /// Drops whatever the stream holds.
  virtual void Open();
  /// Nothing is left to do for output to memory.
  virtual void Close();
  /// Encodes what is buffered, if there is an encoding. Of a pair of surrogates that is not complete yet the first
  /// waits for the second.
  virtual void Flush();

  /// Adds one unit, which may be half of a surrogate pair.
  void Write(WChar unit) { m_buffer.Append(unit); }
  /// Adds a text.
  void Write(WStringView text) { m_buffer.Append(text); }

  /// Room for `units` units, to be written in place; Commit gets their end, before anything else is called.
  WChar* Reserve(std::size_t units) { return m_buffer.Reserve(units); }
  void Commit(WChar* end) noexcept { m_buffer.Commit(end); }

  /// \name UTF-8 written in place
  /// Only for streams of XmlEncoding_UTF8; it comes behind all that was written before, in whatever way. What is
  /// written has to be sound: nothing looks at it again.
  /// \{
  /// Room for `bytes` bytes; CommitUtf8 gets their end, before anything else is called. Flushes what stands in the
  /// buffer, and throws as Flush does.
  char* ReserveUtf8(std::size_t bytes) {
    if (bytes > static_cast<std::size_t>(m_roomEnd - m_room) || m_buffer.GetLength() != 0) OpenRoom(bytes);
    return m_room;
  }
  void CommitUtf8(char* end) noexcept { m_room = end; }
  /// \}

  /// What was written since the last Flush that took it: units, and bytes that were written in place.
  std::size_t GetBufferedLength() const noexcept {
    return m_buffer.GetLength() + static_cast<std::size_t>(m_room - m_roomStart);
  }
  XmlEncoding GetEncoding() const noexcept { return m_encoding; }

  /// The whole text, terminated; owned by the stream and valid until its next change. What was encoded already is
  /// decoded again, so with an encoding ask for this only now and then.
  const WChar* GetString();
  /// The whole text as a string of its own; the cheaper way without an encoding.
  WString GetText();
  /// The whole text in the stream's encoding: UTF-8, or UTF-16 with the low byte first; neither byte order mark nor
  /// terminator. Throws COvException "Unknown Encoding, select UTF-8 (contact our support team)" for XmlEncoding_None
  /// and any other number that is no encoding.
  CBinaryData GetBytes();

 protected:
  CTextStream(XmlEncoding encoding, ClassType& record) : CInstanceMonitor(record), m_encoding(encoding) {}

  /// Encodes what is buffered, less a high surrogate at its end, behind what was encoded before. Throws as GetBytes
  /// does for what is no encoding.
  void EncodeBuffered();
  /// Whether nothing was written, or everything was taken.
  bool HasNothing() const noexcept { return m_buffer.GetLength() == 0 && m_bytes.IsEmpty(); }
  /// Gives away what is encoded. Messages go on counting positions from the start of the text.
  CBinaryData TakeEncoded() noexcept;
  /// Throws when the text ends in half of a surrogate pair.
  void RequireWholePairs() const;

 private:
  // Twice what a writer lets come together before it flushes, so that one block serves for a whole document.
  static constexpr std::size_t kBlockSize = 8192;
  static constexpr std::size_t kUsualRoom = 4096;  // bytes

  static ClassType& Record() {
    static ClassType& record = FindClass(u"CTextStream");
    return record;
  }

  bool HasEncoding() const noexcept;
  void EncodePiece(WStringView piece);
  void EncodeWhole(WStringView text);
  void OpenRoom(std::size_t bytes);
  void CloseRoom() noexcept;
  void TakeBackEncoded();
  void RequireWritable(WStringView text) const;
  std::size_t CountEncodedUnits() const noexcept;

  // The text is what stands encoded, less the room at its end, then the high surrogate, then the buffer.
  CStringBuffer m_buffer{kBlockSize};
  XmlEncoding m_encoding;
  CBinaryData m_bytes;
  char* m_roomStart = nullptr;  // the end of m_bytes that is written in place; null: none
  char* m_room = nullptr;       // how far
  char* m_roomEnd = nullptr;
  WChar m_highSurrogate = 0;     // waits for the other half of its pair; 0: none
  std::size_t m_unitsTaken = 0;  // of the text that was given away
};

}  // namespace OvXmlLib16
