#include "ovxmllib/values/OvVariant.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

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

// What refers to a text lives no longer than the text; whatever is made of it does.
TEST(OvVariant, OwnsWhatIsMadeOfALentText) {
  constexpr auto kPreserve = CWhitespaceUtils::WhitespaceRule_Preserve;
  auto lent = std::make_unique<WString>(u"a text that is too long to lie in a string");
  const WString text = *lent;
  OvVariant first, second, read;
  first.ReferTo(*lent);
  second.ReferTo(*lent, ItemType_string, kPreserve);
  EXPECT_EQ(first.GetStringView().data(), lent->data());
  EXPECT_EQ(second.GetStringView().data(), lent->data());
  const OvVariant copy(first), moved(std::move(first));
  OvVariant assigned;
  assigned = second;
  const WString& asked = second.Get<ItemType_string>();
  read.FromString(*lent, ItemType_string, kPreserve);
  lent->assign(lent->size(), u'?');
  lent.reset();
  for (const OvVariant* variant :
       {&copy, &moved, &std::as_const(assigned), &std::as_const(second), &std::as_const(read)}) {
    EXPECT_EQ(variant->GetString(), text);
    EXPECT_EQ(variant->ToString(nullptr), text);
  }
  EXPECT_EQ(asked, text);
  EXPECT_FALSE(first.IsValid());
  second.ReferTo(u"a\r\nb", ItemType_string, kPreserve);
  EXPECT_EQ(second.GetString(), u"a\nb");
}

TEST(OvVariant, KeepsTheMemoryOfATextThroughOtherValues) {
  OvVariant value;
  value.SetString(u"a text that is longer than what fits inside");
  const WChar* const units = value.GetStringView().data();
  value.SetDecimal(CDecimal(u"1.5"));
  const OvVariant copy = value;
  EXPECT_EQ(copy.GetDecimal(), CDecimal(u"1.5"));
  value.SetNil();
  value.SetInvalid();
  value.SetString(u"another text that fits there");
  EXPECT_EQ(value.GetStringView().data(), units);

  value.SetString(WString(10'000, u'x'));
  const WChar* const large = value.GetStringView().data();
  value.SetI4(1);
  value.SetInvalid();
  value.SetString(u"y");
  EXPECT_NE(value.GetStringView().data(), large) << "a large one's memory goes";
}

TEST(OvVariant, TakesAValueOutOfItself) {
  OvVariant value;
  value.SetString(u"twenty-one code units");
  value.SetString(value.GetStringView().substr(7));
  EXPECT_EQ(value.GetStringView(), u"one code units");
  value.FromString(u"-2.50", ItemType_decimal, CWhitespaceUtils::WhitespaceRule_Collapse);
  value.Set<ItemType_decimal>(value.Get<ItemType_decimal>());
  EXPECT_EQ(value.ToString(u"2"), u"-2.50");
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
  copy.SetI4(1);
  EXPECT_EQ(countReferences(), before) << "another value gives the object up";
  value = copy;
  value.SetXmlObject(object);
  value.SetXmlObject(value.GetXmlObject());
  value.SetNil();
  EXPECT_EQ(countReferences(), before);
  value.SetXmlObject(object);
  value.SetString(u"x");
  copy.SetXmlObject(nullptr);
  EXPECT_EQ(countReferences(), before);
  EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlObjectBase);
  EXPECT_TRUE(copy.GetXmlObject() == nullptr);
}

}  // namespace
}  // namespace OvXmlLib16
