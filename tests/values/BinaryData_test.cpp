#include "ovxmllib/values/BinaryData.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>

#include "ovxmllib/values/BinaryDataBlock.h"
#include "tests/support/Bytes.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Data;
using test::MessageOf;
using test::Noise;
using test::TextOf;

WString Base64Of(const std::string& bytes) { return Data(bytes).GetAsBase64(); }

std::string FromBase64(WStringView text) {
  CBinaryData data = Data("old");
  data.SetAsBase64(text);
  return TextOf(data);
}

TEST(BinaryData, SpeaksBase64) {
  for (const test::VectorRow& row : test::ReadVectors("values/binary_data.vec", "base64")) {
    EXPECT_EQ(Base64Of(row["bytes"]), row.Wide("text"));
    EXPECT_EQ(FromBase64(row.Wide("text")), row["bytes"]);
  }
  for (std::size_t length = 0; length < 100; ++length) EXPECT_EQ(FromBase64(Base64Of(Noise(length))), Noise(length));
}

TEST(BinaryData, PassesOverPaddingAndWhitespaceAnywhereAsSpecified) {
  const std::string bytes = Noise(14);
  for (const WChar skipped : WStringView(u"= \t\r\n")) {
    for (std::size_t at = 0; at <= Base64Of(bytes).size(); ++at) {
      EXPECT_EQ(FromBase64(Base64Of(bytes).insert(at, 1, skipped)), bytes) << at;
      EXPECT_EQ(FromBase64(Base64Of(bytes).insert(at, 5, skipped)), bytes) << at;
    }
  }
  EXPECT_EQ(FromBase64(u"QUJ"), "AB");  // bits of an unfinished byte are dropped
  EXPECT_EQ(FromBase64(u"Q"), "");
  EXPECT_EQ(FromBase64(u" = "), "");
}

TEST(BinaryData, InvalidBase64GivesEmptyDataAsSpecified) {
  for (const WChar invalid : WStringView(u"!-_,\0\v\u0080", 7)) {
    for (std::size_t at = 0; at <= 12; ++at) EXPECT_EQ(FromBase64(Base64Of("foobarbaz").insert(at, 1, invalid)), "");
  }
}

TEST(BinaryData, Base64ReadsLowSevenBitsAsSpecified) { EXPECT_EQ(FromBase64(u"\u0151U\u00BD\u4E4AD"), "ABC"); }

TEST(BinaryData, SpeaksHex) {
  CBinaryData data;
  data.SetAsHexString(u"0aFf90");
  EXPECT_EQ(TextOf(data), "\x0A\xFF\x90");
  EXPECT_EQ(data.GetAsHexString(), u"0AFF90");
  EXPECT_EQ(CBinaryData::GetAsHexString(nullptr, 5), u"");
  for (const std::size_t length : {0u, 300u}) {
    data.SetAsHexString(Data(Noise(length)).GetAsHexString());
    EXPECT_EQ(TextOf(data), Noise(length));
  }
  for (const test::VectorRow& row : test::ReadVectors("values/binary_data.vec", "hex faults")) {
    data = Data("old");
    EXPECT_EQ(MessageOf([&] { data.SetAsHexString(row.Wide("text")); }), row.Wide("message"));
    EXPECT_TRUE(data.IsEmpty());
  }
}

TEST(BinaryData, StoresTextAsCodeUnitsLowByteFirst) {
  CBinaryData data(u"\u20AC");
  data.SetBuffer(u"A\u20AC");
  data.Append(u'A');
  data.Append(u"\u20AC");
  EXPECT_EQ(TextOf(data), std::string("A\0\xAC\x20", 4) + std::string("A\0\xAC\x20", 4));
  const WChar* const noText = nullptr;
  data.Append(noText);
  EXPECT_EQ(data.GetLength(), 8u);
  data.SetBuffer(noText);
  EXPECT_TRUE(data.IsEmpty());
  EXPECT_TRUE(CBinaryData(noText).IsEmpty());
}

TEST(BinaryData, CopiesShareUntilOneChanges) {
  const std::pair<std::function<void(CBinaryData&)>, std::string> changes[] = {
      {[](CBinaryData& d) { d.Append(static_cast<unsigned char>('!')); }, "shared!"},
      {[](CBinaryData& d) { d.Append(d.GetData(), 2); }, "sharedsh"},
      {[](CBinaryData& d) { d.Append(u'!'); }, std::string("shared!\0", 8)},
      {[](CBinaryData& d) { d.Append(d); }, "sharedshared"},
      {[](CBinaryData& d) { d.GetData()[0] = 'S'; }, "Shared"},
      {[](CBinaryData& d) { d[5] = 'D'; }, "shareD"},
      {[](CBinaryData& d) { d.SetBuffer(d.GetData() + 1, 3); }, "har"},
      {[](CBinaryData& d) { d.SetAsHexString(u"41"); }, "A"},
      {[](CBinaryData& d) { d.Clear(); }, ""},
      {[](CBinaryData& d) { std::unique_ptr<unsigned char[]>(d.ReleaseData())[0] = 'S'; }, ""}};
  for (const auto& [change, expected] : changes) {
    const CBinaryData original = Data("shared");
    CBinaryData copy;
    copy.Append(original);
    EXPECT_EQ(std::as_const(copy).GetData(), original.GetData());
    change(copy);
    EXPECT_EQ(TextOf(copy), expected);
    EXPECT_EQ(TextOf(original), "shared");
  }
}

TEST(BinaryData, TakesItselfAsArgument) {
  for (const bool isShared : {false, true}) {
    for (const std::size_t length : {1u, 4096u, 4097u, 8191u, 8192u, 8193u}) {  // about the first capacity
      const std::string bytes = Noise(length);
      const std::string tail = bytes.substr(length / 2);
      CBinaryData data = Data(bytes);
      auto other = std::make_unique<CBinaryData>(isShared ? data : CBinaryData());
      data.Append(data);
      EXPECT_EQ(TextOf(data), bytes + bytes);
      data.Append(std::as_const(data).GetData() + length + length / 2, tail.size());
      EXPECT_EQ(TextOf(data), bytes + bytes + tail);
      data.SetBuffer(std::as_const(data).GetData() + 2 * length, tail.size());
      EXPECT_EQ(TextOf(data), tail);
    }
  }
  CBinaryData data = Data("self");
  CBinaryData& same = data;
  data = same;
  EXPECT_EQ(TextOf(data), "self");
  data = std::move(same);
  EXPECT_EQ(TextOf(data), "self");
}

TEST(BinaryData, GrowsAndMoves) {
  const std::string bytes = Noise(40000);
  CBinaryData data;
  for (const char byte : bytes) data.Append(static_cast<unsigned char>(byte));
  CBinaryData moved(std::move(data));
  EXPECT_TRUE(data.IsEmpty() && data == CBinaryData() && data != moved);
  data = std::move(moved);
  EXPECT_EQ(std::as_const(moved).GetData(), nullptr);
  EXPECT_EQ(TextOf(data), bytes);
  EXPECT_TRUE(Data("ab") == Data("ab") && Data("ab") != Data("ac") && Data("ab") != Data("abc"));
}

TEST(BinaryData, AdoptsBuffers) {
  auto buffer = std::make_unique<unsigned char[]>(3);
  EXPECT_TRUE(CBinaryData(buffer.get(), 0, /*adopt=*/true).IsEmpty());  // the pointer is left alone
  const unsigned char* const address = buffer.get();
  CBinaryData data(buffer.release(), 3, /*adopt=*/true);
  EXPECT_EQ(std::as_const(data).GetData(), address);
  data.Append(Data("x"));
  EXPECT_EQ(TextOf(data), std::string("\0\0\0x", 4));
  EXPECT_EQ(CBinaryData().ReleaseData(), nullptr);
  unsigned char local[] = {'c'};
  EXPECT_EQ(TextOf(CBinaryData(local, 1, /*adopt=*/false)), "c");
}

TEST(BinaryData, ChecksIndexes) {
  CBinaryData data = Data("ab");
  EXPECT_EQ(std::as_const(data)[1], 'b');
  EXPECT_EQ(MessageOf([&] { data[2] = 0; }), u"Index Out of range [2]");
  EXPECT_EQ(MessageOf([&] { static_cast<void>(std::as_const(data)[2]); }), u"Index Out of range [2]");
  EXPECT_EQ(MessageOf([] { static_cast<void>(CBinaryData()[0]); }), u"Index Out of range [0]");
}

TEST(BinaryDataBlock, RefusesToChangeWhileShared) {
  CBinaryDataBlock* const block = CBinaryDataBlock::Make(1);
  block->AddRef();
  const unsigned char byte = 0;
  EXPECT_EQ(MessageOf([&] { block->ReleaseData(); }), u"Failed to release data. [RefCount=1]");
  EXPECT_EQ(MessageOf([&] { block->Append(&byte, 1); }), u"Failed to append. [RefCount=2]");
  EXPECT_EQ(MessageOf([&] { block->Extend(1); }), u"Failed to append. [RefCount=2]");
  EXPECT_EQ(block->GetLength(), 1u);
  block->Release();
  block->Release();
}

TEST(ThreadsBinaryData, CopiesLiveOnTheirOwnThreads) {
  CBinaryData first = Data("shared");
  std::vector<std::thread> threads;
  for (unsigned char letter = 'a'; letter < 'e'; ++letter) {
    threads.emplace_back([copy = first, letter]() mutable {
      for (int i = 0; i < 1000; ++i) {
        CBinaryData mine = copy;
        mine[0] = letter;
        mine.Append(mine);
        ASSERT_EQ(mine[6], letter);
      }
      copy.Append(letter);  // the last of two holders writes in place, and must see the other's reads as done
    });
  }
  first[0] = 'S';
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(TextOf(first), "Shared");
}

}  // namespace
}  // namespace OvXmlLib16
