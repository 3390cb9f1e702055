#include "ovxmllib/binding/SmartPtr.h"

#include <gtest/gtest.h>

namespace OvXmlLib16 {
namespace {

// Stands for an object: dead once its count is back at 0.
struct Counted {
  void AddRef() { ++count; }
  void Release() { isDead = --count == 0 || isDead; }
  int count = 0;
  bool isDead = false;
};

TEST(SmartPtr, HoldsOneReferenceEach) {
  Counted a, b;
  {
    CSmartPtr<Counted> none, first(&a), second(first);
    EXPECT_EQ(a.count, 2);
    second = &b;
    EXPECT_EQ(a.count * 10 + b.count, 11);
    second = first;
    EXPECT_EQ(a.count * 10 + b.count, 20);
    second = none;
    EXPECT_TRUE(second == nullptr && first == &a && first != second && second == none && first != &b);
    CSmartPtr<Counted>& same = first;
    first = same;
    first = std::move(same);
    first = &a;
    EXPECT_TRUE(first->count == 1 && !a.isDead);
    const CSmartPtr<Counted> moved(std::move(first));
    EXPECT_TRUE(first == nullptr && moved == &a && a.count == 1);
  }
  EXPECT_EQ(a.count + b.count, 0);
}

}  // namespace
}  // namespace OvXmlLib16
