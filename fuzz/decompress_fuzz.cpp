// Expansion of what may be anything, and of what was compressed and then cut, damaged, joined or limited.
//
// Input: a byte that selects the wrapper and the piece in which buffers are offered to zlib, two bytes of a limit, two
// bytes of a place where compressed data are cut and damaged, then the data, taken as they are and to be compressed.

#include <limits>
#include <string>

#include "fuzz/Input.h"
#include "ovxmllib/foundation/OvZip.h"

namespace OvXmlLib16::fuzz {
namespace {

using Expansion = std::optional<CBinaryData>;

struct Options {
  CompressionType type;
  std::size_t piece;
  std::uint64_t limit;
  std::size_t place;
};

Expansion Expand(Bytes data, std::uint64_t limit = 0) { return Decompress(data.data(), data.size(), limit); }

Expansion ExpandInPieces(Bytes data, std::size_t piece) {
  return COvZip(piece).Decompress(data.data(), data.size(), 0);
}

// The data compressed, or nothing when they do not shrink.
std::optional<std::string> Packed(Bytes data, CompressionType type) {
  CBinaryData packed(data.data(), data.size());
  const CBinaryData copy = packed;
  const auto failure = FailureOf([&] { CompressBinaryData(packed, type); });
  Require(AreEqual(BytesOf(copy), data), "a copy keeps its bytes");
  const Bytes bytes = BytesOf(packed);
  if (!failure) {
    Require(bytes.size() <= data.size(), "compressed data are never longer");
    return std::string(CharactersOf(bytes));
  }
  Require(failure->GetMessage() == u"Failed to compress data. [Error Code: 0]", "compression fails for want of room");
  Require(AreEqual(bytes, data), "what does not compress stays as it was");
  return std::nullopt;
}

void CheckLimit(Bytes data, const Expansion& whole, std::uint64_t limit) {
  if (limit == 0) return;
  Expansion limited;
  const auto failure = FailureOf([&] { limited = Expand(data, limit); });
  Require(!limited || limited->GetLength() <= limit, "never more than the limit is expanded");
  if (failure) Require(failure->GetMessage().find(u"SetMaxDecompressedBytes") != WString::npos, "the limit is named");
  if (!whole) return Require(!limited, "a limit does not heal damaged data");
  Require(failure.has_value() == (whole->GetLength() > limit), "the limit holds exactly");
  if (limited) Require(*limited == *whole, "a limit that is kept changes nothing");
}

void CheckRoundTrip(const CBinaryData& data, CompressionType type) {
  const auto packed = Packed(BytesOf(data), type);
  if (!packed || data.IsEmpty()) return;
  const Expansion back = Expand(BytesOf(*packed));
  Require(back == data, "compressed data expand to what they were");
}

void CheckAnyData(Bytes data, const Options& options) {
  const Expansion whole = Expand(data);
  Require(ExpandInPieces(data, options.piece) == whole, "pieces make no difference");
  CheckLimit(data, whole, options.limit);
  constexpr std::size_t kLeastWrapped = 8;  // RFC 1950
  Require(!whole || data.size() >= kLeastWrapped, "half a wrapper holds nothing");
  constexpr std::size_t kLargest = 0x40000;  // keeps the target fast
  if (!whole || whole->GetLength() > kLargest) return;
  CheckLimit(data, whole, whole->GetLength());
  if (whole->GetLength() > 1) CheckLimit(data, whole, whole->GetLength() - 1);
  CheckRoundTrip(*whole, options.type);
}

void CheckPackedData(Bytes data, const Options& options) {
  if (data.empty()) return;
  const auto packed = Packed(data, options.type);
  if (!packed) return;
  const auto expand = [](const std::string& bytes) {
    const Expansion result = Expand(BytesOf(bytes));
    return result ? std::string(CharactersOf(BytesOf(*result))) : "as it is";
  };
  const std::string text(CharactersOf(data));
  Require(expand(*packed) == text, "compressed data expand to what they were");
  const std::size_t place = options.place % packed->size();
  Require(expand(packed->substr(0, place)) == "as it is", "data that are cut short count as damaged");
  const bool isGZip = options.type == CompressionType_GZip;
  Require(expand(*packed + *packed) == (isGZip ? text + text : text), "every member of a gzip file is read");
  Require(expand(*packed + std::string(options.place % 600, '\0')) == text, "padding is passed over");
  std::string damaged = *packed;
  damaged[place] = static_cast<char>(damaged[place] ^ (1 << options.place % 8));
  const std::string expanded = expand(damaged);
  Require(expanded == "as it is" || expanded == text, "damage is found out");

  // zlib says that it is done with room to spare only when it is given its room in pieces.
  if (packed->size() == data.size()) return;
  const auto room = ExactRoom<unsigned char>(data.size());
  const std::size_t written = COvZip(options.piece).Compress(data.data(), data.size(), room.get(), options.type);
  Require(Expand({room.get(), written}) == CBinaryData(data.data(), data.size()), "pieces make no difference");
}

void Run(Input input) {
  const unsigned options = input.TakeByte();
  constexpr std::size_t kPieces[] = {1, 2, 7, std::numeric_limits<std::uint32_t>::max()};
  const CompressionType type = options % 2 == 0 ? CompressionType_GZip : CompressionType_ZLib;
  const std::uint64_t limit = input.TakePair();
  const std::size_t place = input.TakePair();
  const Bytes data = input.TakeRest();
  const Options all{type, kPieces[options / 2 % 4], limit, place};
  CheckAnyData(data, all);
  CheckPackedData(data, all);
  RequireNothingLeft();
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
