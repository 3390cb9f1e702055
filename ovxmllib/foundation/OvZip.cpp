#include "ovxmllib/foundation/OvZip.h"

#include <zlib.h>

#include <algorithm>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kExpandedPiece = 65536;

constexpr int kGZipWindowBits = 15 + 16;
constexpr int kEitherWindowBits = 15 + 32;

bool BeginsLikeGZip(const unsigned char* data, std::size_t length) noexcept {
  return length >= 2 && data[0] == 0x1F && data[1] == 0x8B;
}

// RFC 1950, section 2.2: method 8, a window of at most 32 KiB, and check bits that make the pair a multiple of 31.
bool BeginsLikeZLib(const unsigned char* data, std::size_t length) noexcept {
  return length >= 2 && (data[0] & 0x0F) == 8 && (data[0] >> 4) <= 7 && ((data[0] << 8) | data[1]) % 31 == 0;
}

bool IsCompression(CompressionType type) noexcept {
  return type == CompressionType_GZip || type == CompressionType_ZLib;
}

}  // namespace

// zlib's state and the parts of both buffers that it has not been offered yet.
struct COvZip::Stream : z_stream {
  Stream() : z_stream{} {}
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() {
    if (end != nullptr) end(this);
  }

  void OfferInput(std::size_t largestPiece) noexcept {
    if (avail_in != 0) return;
    avail_in = static_cast<uInt>(std::min(inputLeft, largestPiece));
    inputLeft -= avail_in;
  }
  void OfferOutput(std::size_t largestPiece) noexcept {
    if (avail_out != 0) return;
    avail_out = static_cast<uInt>(std::min(outputLeft, largestPiece));
    outputLeft -= avail_out;
  }

  void SetInput(const unsigned char* data, std::size_t length) noexcept {
    next_in = const_cast<unsigned char*>(data);  // zlib reads only
    inputLeft = length;
  }
  std::size_t CountInput() const noexcept { return inputLeft + avail_in; }

  int (*end)(z_stream*) = nullptr;
  std::size_t inputLeft = 0;
  std::size_t outputLeft = 0;
};

COvZip::COvZip(std::size_t largestPiece)
    : CInstanceMonitor(u"COvZip"), m_largestPiece(largestPiece), m_stream(std::make_unique<Stream>()) {}

COvZip::~COvZip() = default;

int COvZip::StartDeflate(CompressionType type) noexcept {
  const int result = type == CompressionType_GZip ? deflateInit2(m_stream.get(), Z_BEST_SPEED, Z_DEFLATED,
                                                                 kGZipWindowBits, 8, Z_DEFAULT_STRATEGY)
                                                  : deflateInit(m_stream.get(), Z_BEST_SPEED);
  if (result == Z_OK) m_stream->end = &deflateEnd;
  return result;
}

// Z_STREAM_END when all input is compressed; Z_OK when there is no room left for its output.
int COvZip::Deflate() noexcept {
  while (true) {
    m_stream->OfferInput(m_largestPiece);
    m_stream->OfferOutput(m_largestPiece);
    const int result = deflate(m_stream.get(), m_stream->inputLeft == 0 ? Z_FINISH : Z_NO_FLUSH);
    if (result != Z_OK || (m_stream->avail_out == 0 && m_stream->outputLeft == 0)) return result;
  }
}

std::size_t COvZip::Compress(const unsigned char* data, std::size_t length, unsigned char* out, CompressionType type) {
  int result = StartDeflate(type);
  if (result == Z_OK) {
    m_stream->SetInput(data, length);
    m_stream->next_out = out;
    m_stream->outputLeft = length;
    result = Deflate();
  }
  if (result != Z_STREAM_END) throw COvException(FormatString(u"Failed to compress data. [Error Code: %d]", result));
  return static_cast<std::size_t>(m_stream->next_out - out);
}

// Z_STREAM_END at the end of the member, and of zlib data; anything else: damaged or cut short.
int COvZip::InflateMember(CBinaryData& result, std::uint64_t maxBytes) {
  int state = Z_OK;
  while (state == Z_OK) {
    const std::size_t before = result.GetLength();
    m_stream->OfferInput(m_largestPiece);
    m_stream->next_out = result.Extend(kExpandedPiece);
    m_stream->avail_out = kExpandedPiece;
    state = inflate(m_stream.get(), Z_NO_FLUSH);
    result.Shrink(before + kExpandedPiece - m_stream->avail_out);
    if (maxBytes == 0 || result.GetLength() <= maxBytes) continue;
    throw COvException(FormatString(
        u"The input expands to more than the %d bytes that CSerializationContext::SetMaxDecompressedBytes allows.",
        maxBytes));
  }
  return state;
}

std::optional<CBinaryData> COvZip::Decompress(const unsigned char* data, std::size_t length, std::uint64_t maxBytes) {
  const bool isGZip = BeginsLikeGZip(data, length);
  if (!isGZip && !BeginsLikeZLib(data, length)) return std::nullopt;
  if (inflateInit2(m_stream.get(), kEitherWindowBits) != Z_OK) return std::nullopt;
  m_stream->end = &inflateEnd;
  m_stream->SetInput(data, length);
  CBinaryData result;
  do {
    if (InflateMember(result, maxBytes) != Z_STREAM_END) return std::nullopt;
  } while (isGZip && BeginsLikeGZip(m_stream->next_in, m_stream->CountInput()) && inflateReset(m_stream.get()) == Z_OK);
  return result;
}

CBinaryData Compress(const unsigned char* data, std::size_t length, CompressionType type) {
  if (!IsCompression(type)) return CBinaryData(data, length);
  auto out = std::make_unique_for_overwrite<unsigned char[]>(length);
  const std::size_t written = COvZip().Compress(data, length, out.get(), type);
  return CBinaryData(out.release(), written, /*adopt=*/true);
}

void CompressBinaryData(CBinaryData& data, CompressionType type) {
  if (data.IsEmpty() || !IsCompression(type)) return;
  data = Compress(std::as_const(data).GetData(), data.GetLength(), type);
}

std::optional<CBinaryData> Decompress(const unsigned char* data, std::size_t length, std::uint64_t maxBytes) {
  if (!BeginsLikeGZip(data, length) && !BeginsLikeZLib(data, length)) return std::nullopt;
  return COvZip().Decompress(data, length, maxBytes);
}

}  // namespace OvXmlLib16
