#include "ovxmllib/foundation/OvZip.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

constexpr CompressionType kWrappers[] = {CompressionType_GZip, CompressionType_ZLib};

const unsigned char* Bytes(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

CBinaryData Data(const std::string& text) { return CBinaryData(Bytes(text), text.size()); }

std::string Text(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

// Text that shrinks, but not to nothing.
std::string Sample(std::size_t length) {
  std::string text;
  for (std::uint32_t i = 0; text.size() < length; ++i) text += "<row n='" + std::to_string(i * 2654435761u) + "'/>";
  return text.substr(0, length);
}

std::string Noise(std::size_t length) {
  std::string bytes(length, '\0');
  std::uint32_t state = 1;
  for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  return bytes;
}

std::string Compressed(const std::string& text, CompressionType type) {
  return Text(Compress(Bytes(text), text.size(), type));
}

std::string GZip(const std::string& text) { return Compressed(text, CompressionType_GZip); }

// The expanded text, or "as it is" for data that Decompress hands on.
std::string Expanded(const std::string& data, std::uint64_t maxBytes = 0) {
  const auto result = Decompress(Bytes(data), data.size(), maxBytes);
  return result ? Text(*result) : "as it is";
}

TEST(OvZip, CompressesAtLevelOneInTheWrapperAskedFor) {
  const std::string text = Sample(5000);
  const std::string gzip = GZip(text), zlib = Compressed(text, CompressionType_ZLib);
  EXPECT_EQ(gzip.substr(0, 9), std::string("\x1F\x8B\x08\0\0\0\0\0\x04", 9));  // no name, no time, fastest
  EXPECT_EQ(zlib.substr(0, 2), "\x78\x01");                                    // 32 KiB window, fastest
  for (const std::string& compressed : {gzip, zlib}) EXPECT_EQ(Expanded(compressed), text);
  EXPECT_EQ(Compressed(text, CompressionType_None), text);
  EXPECT_EQ(Compressed(text, static_cast<CompressionType>(9)), text);
}

TEST(OvZip, ExpandsSizesAboutItsPieces) {
  for (const std::size_t pieces : {1u, 2u, 5u}) {
    for (const std::size_t size : {pieces * 65536 - 1, pieces * 65536, pieces * 65536 + 1}) {
      for (const CompressionType type : kWrappers) EXPECT_EQ(Expanded(Compressed(Sample(size), type)), Sample(size));
    }
  }
}

TEST(OvZip, OffersBuffersToZLibInPieces) {
  const std::string text = Sample(70000);
  for (const std::size_t piece : {1u, 2u, 7u, 1000u, 65536u}) {
    for (const CompressionType type : kWrappers) {
      std::string out(text.size(), '\0');
      out.resize(COvZip(piece).Compress(Bytes(text), text.size(), reinterpret_cast<unsigned char*>(out.data()), type));
      EXPECT_EQ(Expanded(out), text);
      const std::string twice = out + out;
      const auto result = COvZip(piece).Decompress(Bytes(twice), twice.size(), 0);
      EXPECT_EQ(result.value(), Data(type == CompressionType_GZip ? text + text : text));
    }
    std::string room(1000, '\0');
    EXPECT_EQ(MessageOf([&] {
                COvZip(piece).Compress(Bytes(Noise(1000)), 1000, reinterpret_cast<unsigned char*>(room.data()),
                                       CompressionType_GZip);
              }),
              u"Failed to compress data. [Error Code: 0]");
  }
}

TEST(OvZip, DataThatDoNotShrinkFailAsSpecified) {
  for (const CompressionType type : kWrappers) {
    for (const std::string& text : {std::string("<a/>"), Noise(40), Noise(100000)}) {
      CBinaryData data = Data(text);
      EXPECT_EQ(MessageOf([&] { CompressBinaryData(data, type); }), u"Failed to compress data. [Error Code: 0]");
      EXPECT_EQ(Text(data), text);
    }
    CBinaryData data;
    CompressBinaryData(data, type);
    EXPECT_TRUE(data.IsEmpty());
    data = Data(Sample(5000));
    const CBinaryData copy = data;
    CompressBinaryData(data, type);
    EXPECT_EQ(Expanded(Text(data)), Sample(5000));
    EXPECT_EQ(Text(copy), Sample(5000));
  }
}

TEST(OvZip, HandsOnWhatIsNotCompressedOrDamaged) {
  const std::string plain[] = {"",
                               "<a/>",
                               "\x1F",
                               "\x1F\x8B",
                               "\x78",
                               "\x78\x9C",
                               "\x78\x9D garbage",
                               "hC garbage",
                               std::string("\x78\xBB\0\0\0\1", 6),  // wants a dictionary
                               Noise(1000)};
  for (const std::string& data : plain) EXPECT_EQ(Expanded(data), "as it is");
  for (const CompressionType type : kWrappers) {
    const std::string whole = Compressed(Sample(300), type);
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
  const std::string a = Sample(1000), b = Sample(70000), zlib = Compressed(a, CompressionType_ZLib);
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
    EXPECT_EQ(Expanded(Compressed(text, type), 100000), text);
    EXPECT_EQ(MessageOf([&] { Expanded(Compressed(text, type), 99999); }), message);
  }
  const std::string half = GZip(Sample(50000));
  EXPECT_EQ(MessageOf([&] { Expanded(half + half, 99999); }), message);
  EXPECT_EQ(MessageOf([&] { Expanded(GZip(std::string(50'000'000, ' ')), 99999); }), message);
  EXPECT_NE(CInstanceMonitor::DumpState().find(u"    COvZip = 0/"), WString::npos);
}

}  // namespace
}  // namespace OvXmlLib16
