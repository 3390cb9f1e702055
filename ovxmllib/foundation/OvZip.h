// Compression of whole documents: gzip (RFC 1952) and zlib (RFC 1950) wrappers around deflate (RFC 1951).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// Compresses at level 1, the fastest. Type None, and any number that is no type, gives a copy. The output is never
/// longer than the input: data that does not shrink, as most data of a few bytes, throws COvException
/// "Failed to compress data. [Error Code: %d]" with code 0; other codes are zlib's own.
CBinaryData Compress(const unsigned char* data, std::size_t length, CompressionType type);

/// Replaces data by its compressed form. Empty data stay empty. Throws as Compress, and then leaves the data as they
/// were.
void CompressBinaryData(CBinaryData& data, CompressionType type);

/// Expands data in a gzip or zlib wrapper, or returns nothing if they are in neither or damaged or cut short, so that
/// the caller goes on with the bytes as they are. What does not begin like a wrapper costs a look at two bytes.
///
/// A gzip file may have several members (RFC 1952, section 2.2); all are read. Decided: other bytes behind the end,
/// zero padding for example, are passed over, and a further member that is damaged makes the whole count as damaged.
///
/// `maxBytes` limits the size of the result; 0 is no limit. Data that expand to more throw COvException; never more
/// than the limit and one piece of 64 KiB is expanded.
std::optional<CBinaryData> Decompress(const unsigned char* data, std::size_t length, std::uint64_t maxBytes);

/// The zlib stream of one compression or expansion.
class COvZip : public CInstanceMonitor {
 public:
  /// zlib counts in 32 bits, so buffers are offered to it in pieces of at most `largestPiece` bytes, which is not 0.
  explicit COvZip(std::size_t largestPiece = kLargestPiece);
  COvZip(const COvZip&) = delete;
  COvZip& operator=(const COvZip&) = delete;
  ~COvZip() override;

  /// Compresses into `out`, which has room for `length` bytes, and returns the number of bytes written. Throws as the
  /// function Compress; the type is GZip or ZLib. Called once in the life of the object.
  std::size_t Compress(const unsigned char* data, std::size_t length, unsigned char* out, CompressionType type);

  /// Expands as the function Decompress. Called once in the life of the object.
  std::optional<CBinaryData> Decompress(const unsigned char* data, std::size_t length, std::uint64_t maxBytes);

 private:
  struct Stream;

  static constexpr std::size_t kLargestPiece = 0xFFFFFFFF;

  int StartDeflate(CompressionType type) noexcept;
  int Deflate() noexcept;
  int InflateMember(CBinaryData& result, std::uint64_t maxBytes);

  const std::size_t m_largestPiece;
  const std::unique_ptr<Stream> m_stream;
};

}  // namespace OvXmlLib16
