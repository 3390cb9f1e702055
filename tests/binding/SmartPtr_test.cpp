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
    EXPECT_EQ(first->count, 1);
    const CSmartPtr<Counted> moved(std::move(first));
    EXPECT_TRUE(first == nullptr && moved == &a && a.count == 1);
  }
  EXPECT_EQ(a.count + b.count, 0);
}

TEST(SmartPtr, SurvivesAssignmentToItself) {
  Counted object;
  CSmartPtr<Counted> pointer(&object), &same = pointer;
  pointer = same;
  pointer = &object;
  pointer = std::move(same);
  EXPECT_TRUE(object.count == 1 && !object.isDead);
}

}  // namespace
}  // namespace OvXmlLib16
