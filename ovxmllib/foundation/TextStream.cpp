#include "ovxmllib/foundation/TextStream.h"

#include <algorithm>
#include <utility>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Encoder.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

CTextStream::~CTextStream() = default;

void CTextStream::Open() {
  m_buffer.Reset();
  m_bytes.Clear();
  m_roomStart = m_room = m_roomEnd = nullptr;
  m_highSurrogate = 0;
  m_unitsTaken = 0;
}

void CTextStream::Close() {}

void CTextStream::Flush() {
  if (HasEncoding()) EncodeBuffered();
}

const WChar* CTextStream::GetString() {
  TakeBackEncoded();
  const WChar* const text = m_buffer.GetString();
  RequireWritable({text, m_buffer.GetLength()});
  return text;
}

WString CTextStream::GetText() {
  TakeBackEncoded();
  WString text = m_buffer.GetText();
  RequireWritable(text);
  return text;
}

CBinaryData CTextStream::GetBytes() {
  EncodeBuffered();
  RequireWholePairs();
  return m_bytes;
}

void CTextStream::EncodeBuffered() {
  if (!HasEncoding()) throw COvException(u"Unknown Encoding, select UTF-8 (contact our support team)");
  CloseRoom();
  m_buffer.VisitBlocks([this](WStringView block) { EncodePiece(block); });
  m_buffer.Reset();
}

CBinaryData CTextStream::TakeEncoded() noexcept {
  m_unitsTaken = CountEncodedUnits();
  return std::move(m_bytes);
}

void CTextStream::RequireWholePairs() const {
  if (m_highSurrogate != 0) unicode::ThrowUnwritable({&m_highSurrogate, 1}, 0, CountEncodedUnits());
}

// Positions are asked for in messages alone, so nothing is counted while text is written.
std::size_t CTextStream::CountEncodedUnits() const noexcept {
  const std::size_t length = m_bytes.GetLength();
  return m_unitsTaken +
         (m_encoding == XmlEncoding_UTF8 ? unicode::CountUnits(m_bytes.GetData(), length) : length / sizeof(WChar));
}

void CTextStream::OpenRoom(std::size_t bytes) {
  auto unflushed = m_room - m_roomStart;
  CloseRoom();
  if (m_buffer.GetLength() != 0) {
    Flush();
    unflushed = 0;
  }
  RequireWholePairs();
  const std::size_t length = m_bytes.GetLength();
  m_bytes.ExtendToCapacity(std::max(bytes, kUsualRoom));
  char* const data = reinterpret_cast<char*>(m_bytes.GetData());
  m_room = data + length;
  m_roomStart = m_room - unflushed;
  m_roomEnd = data + m_bytes.GetLength();
}

// Takes off the room that nobody has written to.
void CTextStream::CloseRoom() noexcept {
  if (m_room != nullptr) m_bytes.Shrink(m_bytes.GetLength() - static_cast<std::size_t>(m_roomEnd - m_room));
  m_roomStart = m_room = m_roomEnd = nullptr;
}

bool CTextStream::HasEncoding() const noexcept {
  switch (m_encoding) {
    case XmlEncoding_UTF8:
    case XmlEncoding_UTF16:
    case XmlEncoding_UTF16NoHeader:
      return true;
    case XmlEncoding_None:
      break;
  }
  return false;
}

void CTextStream::EncodePiece(WStringView piece) {
  if (m_highSurrogate != 0 && !piece.empty()) {
    const WChar pair[] = {std::exchange(m_highSurrogate, WChar{0}), piece.front()};
    EncodeWhole({pair, 2});
    piece.remove_prefix(1);
  }
  if (!piece.empty() && unicode::IsHighSurrogate(piece.back())) {
    m_highSurrogate = piece.back();
    piece.remove_suffix(1);
  }
  EncodeWhole(piece);
}

// Checks while it converts, so that the guard of UTF-8 output costs no pass of its own.
void CTextStream::EncodeWhole(WStringView text) {
  if (text.empty()) return;
  std::size_t sound;
  if (m_encoding == XmlEncoding_UTF8) {
    const std::size_t length = m_bytes.GetLength();
    unsigned char* const end = m_bytes.Extend(text.size() * unicode::kMaxUtf8PerUnit);
    const unicode::Progress done = unicode::WritableToUtf8(text, end);
    m_bytes.Shrink(length + done.written);
    sound = done.read;
  } else {
    sound = unicode::FindUnwritable(text);
    m_bytes.Append(text.substr(0, sound));
  }
  if (sound != text.size()) unicode::ThrowUnwritable(text, sound, CountEncodedUnits() - sound);
}

void CTextStream::TakeBackEncoded() {
  CloseRoom();
  if (m_bytes.IsEmpty() && m_highSurrogate == 0) return;
  const unsigned char* const bytes = std::as_const(m_bytes).GetData();
  const std::size_t length = m_bytes.GetLength();
  WString text =
      m_encoding == XmlEncoding_UTF8 ? DecodeUtf8(bytes, length) : DecodeUtf16(bytes, length / sizeof(WChar));
  if (m_highSurrogate != 0) text += m_highSurrogate;
  text += m_buffer.GetText();
  m_buffer.Assign(text);
  m_bytes.Clear();
  m_highSurrogate = 0;
}

void CTextStream::RequireWritable(WStringView text) const {
  const std::size_t sound = unicode::FindUnwritable(text);
  if (sound != text.size()) unicode::ThrowUnwritable(text, sound, CountEncodedUnits());
}

}  // namespace OvXmlLib16
