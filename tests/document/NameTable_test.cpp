#include "ovxmllib/document/NameTable.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

namespace OvXmlLib16 {
namespace {

// In any order: the table expects a name behind the one it was behind before.
TEST(NameTable, KeepsEachNameOnce) {
  NameTable names;
  for (int round = 0; round < 2; ++round) {
    std::mt19937 random(1);
    std::vector<const ExpandedName*> known(1000);
    for (int i = 0; i < 20'000; ++i) {
      const auto index = random() % known.size();
      const std::string local = "n" + std::to_string(index / 3) + std::string(index / 3 % 50, 'x');
      const std::string uri = "urn:" + std::to_string(index % 3);
      const ExpandedName& name = names.Intern(index % 3 == 0 ? local : uri + "|" + local, 0);
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

}  // namespace
}  // namespace OvXmlLib16
