#include "ovxmllib/foundation/OvZip.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tests/support/Documents.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Bytes;
using test::MessageOf;
using test::Noise;
using test::Packed;
using test::TextOf;

constexpr CompressionType kWrappers[] = {CompressionType_GZip, CompressionType_ZLib};

// Text that shrinks, but not to nothing.
std::string Sample(std::size_t length) {
  std::string text;
  for (std::uint32_t i = 0; text.size() < length; ++i) text += "<row n='" + std::to_string(i * 2654435761u) + "'/>";
  return text.substr(0, length);
}

std::string GZip(const std::string& text) { return Packed(text, CompressionType_GZip); }

// The expanded text, or "as it is" for data that Decompress hands on.
std::string Expanded(const std::string& data, std::uint64_t maxBytes = 0) {
  const auto result = Decompress(Bytes(data), data.size(), maxBytes);
  return result ? TextOf(*result) : "as it is";
}

TEST(OvZip, CompressesAtLevelOneInTheWrapperAskedFor) {
  const std::string text = Sample(5000);
  const std::string gzip = GZip(text), zlib = Packed(text, CompressionType_ZLib);
  EXPECT_EQ(gzip.substr(0, 9), std::string("\x1F\x8B\x08\0\0\0\0\0\x04", 9));  // no name, no time, fastest
  EXPECT_EQ(zlib.substr(0, 2), "\x78\x01");                                    // 32 KiB window, fastest
  for (const std::string& compressed : {gzip, zlib}) EXPECT_EQ(Expanded(compressed), text);
  EXPECT_EQ(Packed(text, CompressionType_None), text);
  EXPECT_EQ(Packed(text, static_cast<CompressionType>(9)), text);
}

TEST(OvZip, GoesOverTheBordersOfItsPieces) {
  for (const CompressionType type : kWrappers) {
    for (const std::size_t size : {65535u, 65536u, 65537u, 327680u}) {
      EXPECT_EQ(Expanded(Packed(Sample(size), type)), Sample(size));
    }
    for (const std::size_t piece : {1u, 2u, 7u, 1000u, 65536u}) {
      std::string text = Sample(70000), out = text;
      out.resize(COvZip(piece).Compress(Bytes(text), text.size(), reinterpret_cast<unsigned char*>(out.data()), type));
      EXPECT_EQ(Expanded(out), text);
      out += out;
      EXPECT_EQ(TextOf(COvZip(piece).Decompress(Bytes(out), out.size(), 0).value()),
                type == CompressionType_GZip ? text + text : text);
      const auto compressNoise = [&] {
        COvZip(piece).Compress(Bytes(Noise(1000)), 1000, reinterpret_cast<unsigned char*>(text.data()), type);
      };
      EXPECT_EQ(MessageOf(compressNoise), u"Failed to compress data. [Error Code: 0]");
    }
  }
}

TEST(OvZip, DataThatDoNotShrinkFailAsSpecified) {
  for (const CompressionType type : kWrappers) {
    for (const std::string& text : {std::string("<a/>"), Noise(40), Noise(100000)}) {
      CBinaryData data = test::Data(text);
      EXPECT_EQ(MessageOf([&] { CompressBinaryData(data, type); }), u"Failed to compress data. [Error Code: 0]");
      EXPECT_EQ(TextOf(data), text);
    }
    for (const std::string& text : {std::string(), Sample(5000)}) {
      CBinaryData data = test::Data(text);
      const CBinaryData copy = data;
      CompressBinaryData(data, type);
      EXPECT_EQ(data.IsEmpty() ? "" : Expanded(TextOf(data)), text);
      EXPECT_EQ(TextOf(copy), text);
    }
  }
}

TEST(OvZip, HandsOnWhatIsNotCompressedOrDamaged) {
  for (const test::VectorRow& row : test::ReadVectors("foundation/zip.vec", "not compressed")) {
    EXPECT_EQ(Expanded(row["bytes"]), "as it is") << row.Place();
  }
  EXPECT_EQ(Expanded(Noise(1000)), "as it is");
  for (const CompressionType type : kWrappers) {
    const std::string whole = Packed(Sample(300), type);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) EXPECT_EQ(Expanded(whole.substr(0, cut)), "as it is") << cut;
    for (std::size_t i = 10; i < whole.size(); ++i) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ 1);
      EXPECT_EQ(Expanded(damaged), "as it is") << i;
    }
  }
  EXPECT_EQ(Expanded(std::string("\x1F\x8B\x08\0\0\0\0\0\0\3\3\0\0\0\0\0\0\0\0\0", 20)), "");  // nothing, well wrapped
}

TEST(OvZip, ReadsEveryMemberOfAGZipFile) {
  const std::string a = Sample(1000), b = Sample(70000), zlib = Packed(a, CompressionType_ZLib);
  EXPECT_EQ(Expanded(GZip(a) + GZip(b) + GZip(a)), a + b + a);
  EXPECT_EQ(Expanded(GZip(a) + std::string(512, '\0')), a);
  EXPECT_EQ(Expanded(GZip(a) + "\x1F"), a);
  EXPECT_EQ(Expanded(GZip(a) + zlib), a);
  EXPECT_EQ(Expanded(zlib + GZip(a)), a);
  EXPECT_EQ(Expanded(GZip(a) + GZip(b).substr(0, 100)), "as it is");
}

TEST(OvZip, StopsAtTheLimit) {
  const WString message =
      u"The input expands to more than the 99999 bytes that CSerializationContext::SetMaxDecompressedBytes allows.";
  const std::string text = Sample(100000);
  for (const CompressionType type : kWrappers) {
    EXPECT_EQ(Expanded(Packed(text, type), 100000), text);
    EXPECT_EQ(MessageOf([&] { Expanded(Packed(text, type), 99999); }), message);
  }
  const std::string half = GZip(Sample(50000));
  EXPECT_EQ(MessageOf([&] { Expanded(half + half, 99999); }), message);
  EXPECT_EQ(MessageOf([&] { Expanded(GZip(std::string(50'000'000, ' ')), 99999); }), message);
  EXPECT_NE(CInstanceMonitor::DumpState().find(u"    COvZip = 0/"), WString::npos);
}

}  // namespace
}  // namespace OvXmlLib16
