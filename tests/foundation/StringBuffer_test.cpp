#include "ovxmllib/foundation/StringBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>

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
  for (const std::size_t step : {1u, 2u, 3u, 7u, 4094u, 4095u, 4096u, 12286u}) {
    const WString text = Pattern(3 * kCapacity + 2);
    CStringBuffer buffer;
    for (std::size_t i = 0; i < text.size(); i += step) {
      step == 1 ? buffer.Append(text[i]) : buffer.Append(WStringView(text).substr(i, step));
      ASSERT_EQ(buffer.GetLength(), std::min(i + step, text.size()));
    }
    EXPECT_EQ(CountBlocks(buffer), 4u);
    EXPECT_EQ(buffer.GetText(), text);
    EXPECT_EQ(CountBlocks(buffer), 4u);
    EXPECT_EQ(buffer.GetString(), text);
    EXPECT_EQ(CountBlocks(buffer), 1u);
  }
}

TEST(StringBuffer, FillsBlocksToTheLastUnit) {
  CStringBuffer buffer;
  EXPECT_EQ(buffer.GetString(), WString());
  EXPECT_EQ(CountBlocks(buffer), 0u);
  buffer.Append(Pattern(kCapacity));
  EXPECT_EQ(CountBlocks(buffer), 1u);
  EXPECT_EQ(buffer.GetString(), Pattern(kCapacity));
  buffer.Append(u'x');
  EXPECT_EQ(CountBlocks(buffer), 2u);

  const WChar* const collapsed = buffer.GetString();
  EXPECT_EQ(collapsed, buffer.GetString()) << "asking again moves nothing";
  buffer.Append(buffer.GetText());
  buffer.Append(WStringView(buffer.GetString(), 2));
  EXPECT_EQ(buffer.GetString(), Pattern(kCapacity) + u"x" + Pattern(kCapacity) + u"x!\"");
}

TEST(StringBuffer, KeepsOneBlockForReuse) {
  CStringBuffer buffer;
  buffer.Append(Pattern(2 * kCapacity));
  const WChar* const collapsed = buffer.GetString();
  buffer.Reset();
  EXPECT_EQ(buffer.GetLength(), 0u);
  EXPECT_EQ(buffer.GetString(), WString());
  buffer.Append(Pattern(2 * kCapacity - 1));
  buffer.Append(u'x');
  EXPECT_EQ(CountBlocks(buffer), 1u);
  EXPECT_EQ(buffer.GetString(), collapsed);
  EXPECT_EQ(buffer.GetString(), Pattern(2 * kCapacity - 1) + u"x");
  buffer.Append(u'y');
  buffer.Reset();
  EXPECT_EQ(CountBlocks(buffer), 0u);

  buffer.Assign(u"first");
  buffer.Assign(u"second");
  EXPECT_EQ(buffer.GetString(), WString(u"second"));
  buffer.Clear();
  EXPECT_EQ(CountBlocks(buffer), 0u);
  EXPECT_EQ(buffer.GetLength(), 0u);
}

TEST(StringBuffer, GivesRoomInOnePiece) {
  CStringBuffer buffer;
  WString expected;
  for (const std::size_t room :
       {std::size_t{0}, std::size_t{3}, kCapacity - 3, std::size_t{1}, 3 * kCapacity, kCapacity}) {
    const WString text = Pattern(room - room / 3);
    buffer.Reserve(room + 10);
    WChar* const out = buffer.Reserve(room);
    buffer.Commit(out + text.copy(out, text.size()));
    buffer.Append(u"+");
    expected += text + u"+";
    ASSERT_EQ(buffer.GetLength(), expected.size());
    ASSERT_EQ(buffer.GetText(), expected);
  }
  EXPECT_EQ(buffer.GetString(), expected);
}

TEST(StringBuffer, TakesAnyBlockSize) {
  for (const std::size_t size : {0u, 1u, 2u, 3u}) {
    CStringBuffer buffer(size);
    buffer.Append(u"abcde");
    buffer.Append(u'f');
    EXPECT_EQ(CountBlocks(buffer), size == 3 ? 3u : 6u);
    EXPECT_EQ(buffer.GetString(), WString(u"abcdef"));
  }
}

}  // namespace
}  // namespace OvXmlLib16
