#include "ovxmllib/foundation/StringBuffer.h"

#include <gtest/gtest.h>

namespace OvXmlLib16 {
namespace {

constexpr std::size_t kCapacity = 4095;

WString Pattern(std::size_t length) {
  WString result(length, u'\0');
  for (std::size_t i = 0; i < length; ++i) result[i] = static_cast<WChar>(u'!' + i % 89);
  return result;
}

std::size_t CountBlocks(const CStringBuffer& buffer) {
  std::size_t count = 0;
  buffer.VisitBlocks([&](WStringView) { ++count; });
  return count;
}

TEST(StringBuffer, KeepsTheTextOverBlockBorders) {
  const WString text = Pattern(3 * kCapacity + 2);
  for (const std::size_t step : {1u, 2u, 3u, 7u, 4094u, 4095u, 4096u, 12286u}) {
    CStringBuffer buffer;
    for (std::size_t i = 0; i < text.size(); i += step) {
      step == 1 ? buffer.Append(text[i]) : buffer.Append(WStringView(text).substr(i, step));
    }
    EXPECT_EQ(buffer.GetLength(), text.size());
    EXPECT_EQ(buffer.GetText(), text);
    EXPECT_EQ(CountBlocks(buffer), 4u) << "each but the last is full";
    EXPECT_EQ(buffer.GetString(), text);
    EXPECT_EQ(CountBlocks(buffer), 1u);
    buffer.Append(buffer.GetText());
    EXPECT_EQ(buffer.GetString(), text + text);
  }
}

TEST(StringBuffer, KeepsOneBlockForReuse) {
  CStringBuffer buffer;
  EXPECT_EQ(buffer.GetString(), WString());
  buffer.Append(Pattern(2 * kCapacity));
  const WChar* const collapsed = buffer.GetString();
  buffer.Reset();
  EXPECT_EQ(buffer.GetString(), WString());
  buffer.Append(Pattern(2 * kCapacity - 1));
  buffer.Append(u'x');
  EXPECT_EQ(CountBlocks(buffer), 1u) << "filled before a block is added";
  EXPECT_EQ(buffer.GetString(), collapsed);
  EXPECT_EQ(buffer.GetString(), Pattern(2 * kCapacity - 1) + u"x");
  buffer.Append(u'y');
  buffer.Reset();
  EXPECT_EQ(CountBlocks(buffer), 0u) << "two blocks are freed";
  buffer.Assign(u"first");
  buffer.Assign(u"second");
  EXPECT_EQ(buffer.GetString(), WString(u"second"));
}

TEST(StringBuffer, GivesRoomInOnePiece) {
  for (const std::size_t blockSize : {0u, 1u, 2u, 5u, 4096u}) {
    CStringBuffer buffer(blockSize);
    WString expected;
    for (const std::size_t room : {0u, 3u, 4092u, 1u, 12285u, 4095u}) {
      const WString text = Pattern(room - room / 3);
      WChar* const out = buffer.Reserve(room);
      buffer.Commit(out + text.copy(out, text.size()));
      buffer.Append(u"+");
      expected += text + u"+";
      EXPECT_EQ(buffer.GetText(), expected);
    }
  }
}

}  // namespace
}  // namespace OvXmlLib16
