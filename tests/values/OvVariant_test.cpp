#include "ovxmllib/values/OvVariant.h"

#include <gtest/gtest.h>

#include "tests/support/AnyObject.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

TEST(OvVariant, IsInvalidHoldsAValueOrIsNil) {
  OvVariant value;
  EXPECT_FALSE(value.IsValid() || value.IsNil());
  value.SetNil();
  EXPECT_TRUE(value.IsValid() && value.IsNil());

  value.SetI4(5);
  value.SetString(u"x");
  EXPECT_EQ(value.GetTypeAsEnum(), ItemType_string);
  EXPECT_TRUE(value.IsValid() && !value.IsNil());
  value.SetNil();
  EXPECT_TRUE(value.IsNil());
  EXPECT_EQ(value.GetType(), u"string");

  value.SetString(u"y");
  EXPECT_EQ(test::MessageOf([&] { value.FromString(u"z", ItemType_i4, CWhitespaceUtils::WhitespaceRule_None); }),
            u"The value [z] can not be converted to a i4");
  EXPECT_EQ(value.GetString(), u"y") << "a failure keeps what was there";
  value.SetInvalid();
  EXPECT_FALSE(value.IsValid());
  EXPECT_EQ(test::MessageOf([&] { value.GetType(); }), u"Invalid Type 0");
  EXPECT_EQ(test::MessageOf([&] { value.ToString(nullptr); }), u"Invalid Type 0 to convert to string");
}

TEST(OvVariant, CopiesDeeplyAndMoves) {
  OvVariant text;
  text.SetString(u"a text that is longer than what fits inside");
  OvVariant copy = text;
  text.Clear();
  EXPECT_EQ(copy.GetString(), u"a text that is longer than what fits inside");

  const WChar* const units = copy.GetStringView().data();
  OvVariant moved = std::move(copy);
  EXPECT_EQ(moved.GetStringView().data(), units);
  EXPECT_FALSE(copy.IsValid());
  moved = OvVariant(moved);
  EXPECT_EQ(moved.GetStringView().size(), 43u);
  moved.SetNil();
  copy = moved;
  EXPECT_TRUE(copy.IsNil() && copy.GetTypeAsEnum() == ItemType_string);
}

TEST(OvVariant, SharesObjects) {
  CSmartPtr<CXmlObjectBase> object(new test::AnyObject);
  const auto countReferences = [&] {
    object->AddRef();
    return object->Release();
  };
  const long before = countReferences();
  OvVariant value;
  value.SetXmlObject(object);
  OvVariant copy = value;
  EXPECT_TRUE(copy.GetXmlObject() == object);
  EXPECT_EQ(countReferences(), before + 2);
  EXPECT_EQ(test::MessageOf([&] { value.GetType(); }), u"Invalid Type 27");
  value.Clear();
  copy.SetXmlObject(nullptr);
  EXPECT_EQ(countReferences(), before);
  EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlObjectBase);
  EXPECT_TRUE(copy.GetXmlObject() == nullptr);
}

}  // namespace
}  // namespace OvXmlLib16
