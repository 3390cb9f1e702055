// What the tree keeps its nodes and their names in.

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <set>

#include "ovxmllib/document/NameTable.h"
#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16 {
namespace {

// In any order: the table expects a name behind the one it was behind before.
TEST(NameTable, KeepsEachNameOnce) {
  const CXmlDocument document;
  NameTable names(document);
  for (int round = 0; round < 2; ++round) {
    std::mt19937 random(1);
    std::vector<const ExpandedName*> known(1000);
    for (int i = 0; i < 20'000; ++i) {
      const auto index = random() % known.size();
      const std::string local = "n" + std::to_string(index / 3) + std::string(index / 3 % 50, 'x');
      const std::string uri = "urn:" + std::to_string(index % 3);
      const bool hasUri = index % 3 != 0;
      const ExpandedName& name = random() % 2 == 0 ? names.Intern(hasUri ? uri + "|" + local : local, 0)
                                                   : names.Intern(hasUri ? uri : "", local, 0);
      if (known[index] == nullptr) known[index] = &name;
      ASSERT_EQ(known[index], &name);
      ASSERT_EQ(name.localName, ToWide(local));
      ASSERT_EQ(*name.namespaceURI, index % 3 == 0 ? WString() : ToWide(uri));
    }
    EXPECT_EQ(known[1]->namespaceURI, known[4]->namespaceURI);
    EXPECT_EQ(std::set(known.begin(), known.end()).size(), known.size());
    names.Clear();
  }
}

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
      const Piece& first = pieces.front();
      EXPECT_TRUE(pieces.size() == 1 || !pool.Extend(first.data, first.bytes, first.bytes + 300));
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

}  // namespace
}  // namespace OvXmlLib16
