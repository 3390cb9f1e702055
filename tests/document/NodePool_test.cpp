#include "ovxmllib/document/NodePool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>

namespace OvXmlLib16 {
namespace {

struct Piece {
  unsigned char* data;
  std::size_t bytes;
  unsigned char fill;
  bool IsIntact() const {
    return std::all_of(data, data + bytes, [this](unsigned char byte) { return byte == fill; });
  }
};

TEST(NodePool, KeepsWhatIsNotRewound) {
  std::mt19937 random(1);
  NodePool pool;
  std::vector<Piece> pieces;
  std::vector<std::pair<NodePool::Mark, std::size_t>> marks;  // and the number of pieces then
  for (int step = 0; step < 50'000; ++step) {
    const std::size_t bytes = random() % 500 == 0 ? random() % 300'000 : random() % 300;
    if (const auto action = random() % 8; action == 0) {
      marks.emplace_back(pool.GetMark(), pieces.size());
    } else if (action == 1 && !marks.empty()) {
      marks.resize(marks.size() - random() % std::min<std::size_t>(marks.size(), 8), marks.front());
      pool.Rewind(marks.back().first);
      pieces.resize(marks.back().second, Piece());
    } else if (action == 2 && !pieces.empty() && (marks.empty() || marks.back().second < pieces.size())) {
      Piece& last = pieces.back();
      if (!pool.Extend(last.data, last.bytes, last.bytes + bytes)) continue;
      std::memset(last.data, last.fill, last.bytes += bytes);
    } else {
      pieces.push_back(
          {static_cast<unsigned char*>(pool.Allocate(bytes + 1)), bytes + 1, static_cast<unsigned char>(step)});
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pieces.back().data) % alignof(void*), 0u);
      std::memset(pieces.back().data, pieces.back().fill, bytes + 1);
    }
    const std::size_t checked = std::min<std::size_t>(pieces.size(), step % 1000 == 0 ? pieces.size() : 3);
    ASSERT_TRUE(std::all_of(pieces.end() - static_cast<int>(checked), pieces.end(), std::mem_fn(&Piece::IsIntact)));
  }
}

TEST(NodePool, UsesRewoundMemoryAgain) {
  NodePool pool;
  const NodePool::Mark empty = pool.GetMark();
  void* const first = pool.Allocate(1);
  for (int i = 0; i < 2000; ++i) pool.Allocate(1000);
  pool.Rewind(empty);
  EXPECT_EQ(pool.Allocate(1), first);
  const NodePool::Mark mark = pool.GetMark();
  void* const second = pool.Allocate(16);
  EXPECT_FALSE(pool.Extend(first, 1, 100)) << "not the last";
  EXPECT_TRUE(pool.Extend(second, 16, 24));
  EXPECT_FALSE(pool.Extend(second, 24, 1'000'000)) << "no slab is so large";
  pool.Rewind(mark);
  EXPECT_EQ(pool.Allocate(16), second);
}

}  // namespace
}  // namespace OvXmlLib16
