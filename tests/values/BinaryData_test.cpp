#include "ovxmllib/values/BinaryData.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ovxmllib/values/BinaryDataBlock.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

CBinaryData Data(const std::string& bytes) {
  return CBinaryData(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string Text(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

// `length` bytes of which no long run repeats.
std::string Noise(std::size_t length) {
  std::string bytes(length, '\0');
  std::uint32_t state = 12345;
  for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  return bytes;
}

WString Base64Of(const std::string& bytes) { return Data(bytes).GetAsBase64(); }

std::string FromBase64(WStringView text) {
  CBinaryData data = Data("old");
  data.SetAsBase64(text);
  return Text(data);
}

TEST(BinaryData, SpeaksBase64) {
  const std::pair<std::string, WString> vectors[] = {// RFC 4648, section 10, and the alphabet's ends
                                                     {"", u""},
                                                     {"f", u"Zg=="},
                                                     {"fo", u"Zm8="},
                                                     {"foo", u"Zm9v"},
                                                     {"foob", u"Zm9vYg=="},
                                                     {"fooba", u"Zm9vYmE="},
                                                     {"foobar", u"Zm9vYmFy"},
                                                     {std::string(1, '\0'), u"AA=="},
                                                     {"\xFB\xEF\xFF", u"++//"}};
  for (const auto& [bytes, text] : vectors) {
    EXPECT_EQ(Base64Of(bytes), text);
    EXPECT_EQ(FromBase64(text), bytes);
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
  EXPECT_EQ(FromBase64(u"Q!JD"), "");
  for (const WChar invalid : WStringView(u"!-_,\0\v\u0080", 7)) {
    for (std::size_t at = 0; at <= 12; ++at) EXPECT_EQ(FromBase64(Base64Of("foobarbaz").insert(at, 1, invalid)), "");
  }
}

TEST(BinaryData, Base64ReadsLowSevenBitsAsSpecified) {
  EXPECT_EQ(FromBase64(u"\u0151U\u4E4AD"), "ABC");
  EXPECT_EQ(FromBase64(u"QU\u00BD\u00BDJD"), "ABC");
}

TEST(BinaryData, SpeaksHex) {
  CBinaryData data;
  data.SetAsHexString(u"0aFf90");
  EXPECT_EQ(Text(data), "\x0A\xFF\x90");
  EXPECT_EQ(data.GetAsHexString(), u"0AFF90");
  data.SetAsHexString(u"");
  EXPECT_TRUE(data.IsEmpty());
  EXPECT_EQ(data.GetAsHexString(), u"");
  EXPECT_EQ(CBinaryData::GetAsHexString(nullptr, 5), u"");
  data.SetAsHexString(Data(Noise(300)).GetAsHexString());
  EXPECT_EQ(Text(data), Noise(300));

  const std::pair<WString, WString> faults[] = {
      {u"ABC", u"Invalid length in hex string"},           {u"GG", u"Invalid char in hex string [G]"},
      {u"00g0", u"Invalid char in hex string [g]"},        {u"0/:0", u"Invalid char in hex string [/]"},
      {u"0@00", u"Invalid char in hex string [@]"},        {u"0 ", u"Invalid char in hex string [ ]"},
      {u"0\u0130", u"Invalid char in hex string [\u0130]"}};
  for (const auto& [text, message] : faults) {
    data = Data("old");
    EXPECT_EQ(MessageOf([&, &hex = text] { data.SetAsHexString(hex); }), message);
    EXPECT_TRUE(data.IsEmpty());
  }
}

TEST(BinaryData, StoresTextAsCodeUnitsLowByteFirst) {
  const std::string units("A\0\xAC\x20", 4);
  EXPECT_EQ(Text(CBinaryData(u"A\u20AC")), units);
  CBinaryData data = Data("old");
  data.SetBuffer(u"A\u20AC");
  data.Append(u'A');
  data.Append(u"\u20AC");
  data.Append(WString(u"A\u20AC"));
  EXPECT_EQ(Text(data), units + units + units);

  const WChar* const noText = nullptr;
  data.Append(noText);
  EXPECT_EQ(data.GetLength(), 12u);
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
    EXPECT_EQ(Text(copy), expected);
    EXPECT_EQ(Text(original), "shared");
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
      EXPECT_EQ(Text(data), bytes + bytes);
      data.Append(std::as_const(data).GetData() + length + length / 2, tail.size());
      EXPECT_EQ(Text(data), bytes + bytes + tail);
      data.SetBuffer(std::as_const(data).GetData() + 2 * length, tail.size());
      EXPECT_EQ(Text(data), tail);
    }
  }
  CBinaryData data = Data("self");
  CBinaryData& same = data;
  data = same;
  EXPECT_EQ(Text(data), "self");
  data = std::move(same);
  EXPECT_EQ(Text(data), "self");
}

TEST(BinaryData, GrowsAndMoves) {
  const std::string bytes = Noise(40000);
  CBinaryData data;
  for (const char byte : bytes) data.Append(static_cast<unsigned char>(byte));
  EXPECT_EQ(Text(data), bytes);
  data.Append(data.GetData(), 0);
  CBinaryData moved(std::move(data));
  EXPECT_TRUE(data.IsEmpty());
  EXPECT_EQ(data.GetLength(), 0u);
  EXPECT_EQ(Text(moved), bytes);
  data = std::move(moved);
  EXPECT_EQ(std::as_const(moved).GetData(), nullptr);
  EXPECT_EQ(Text(data), bytes);
}

TEST(BinaryData, AdoptsBuffers) {
  auto buffer = std::make_unique<unsigned char[]>(3);
  EXPECT_TRUE(CBinaryData(buffer.get(), 0, /*adopt=*/true).IsEmpty());  // the pointer is left alone
  const unsigned char* const address = buffer.get();
  CBinaryData data(buffer.release(), 3, /*adopt=*/true);
  EXPECT_EQ(std::as_const(data).GetData(), address);
  data.Append(Data("x"));
  EXPECT_EQ(Text(data), std::string("\0\0\0x", 4));
  EXPECT_EQ(CBinaryData().ReleaseData(), nullptr);
  unsigned char local[] = {'c'};
  EXPECT_EQ(Text(CBinaryData(local, 1, /*adopt=*/false)), "c");
}

TEST(BinaryData, ComparesBytes) {
  EXPECT_EQ(CBinaryData(), CBinaryData());
  EXPECT_NE(CBinaryData(), Data("a"));
  EXPECT_NE(Data("a"), CBinaryData());
  EXPECT_EQ(Data("ab"), Data("ab"));
  EXPECT_NE(Data("ab"), Data("ac"));
  EXPECT_NE(Data("ab"), Data("abc"));
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
  EXPECT_EQ(Text(first), "Shared");
}

}  // namespace
}  // namespace OvXmlLib16
