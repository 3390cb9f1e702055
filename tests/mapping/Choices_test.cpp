#include <gtest/gtest.h>

#include <functional>

#include "ovxmllib/document/XmlDocument.h"
#include "tests/mapping/Failures.h"
#include "tests/support/Probes.h"

namespace OvXmlLib16 {
namespace {

using test::Choices;
using test::FailureOf;

struct Operations : test::Choices {
  using CXmlObjectBase::Choice_Read_Collection;
};

// "selected" afterwards, or the failure.
std::string After(const std::function<void(WString&)>& call, const WChar* selected) {
  WString name = selected;
  const std::string failure = FailureOf([&] { call(name); });
  EXPECT_TRUE(failure.empty() || name == selected) << "a refused selection changes nothing";
  return failure.empty() ? ToUtf8(name) : failure;
}

TEST(Choices, SelectOneMemberAsSpecified) {
  const CSmartPtr<test::Leaf> leaf = test::Leaf::Make();
  CXmlObjectBase* const object = leaf;
  const auto select = [](const WChar* name, CXmlObjectBase* value) {
    return [=](WString& selected) { Choices::Choice_SelectElement(name, value, selected); };
  };
  const auto setValid = [](bool valid, const WChar* name) {
    return [=](WString& selected) { Choices::Choice_SetElementValid(valid, name, selected); };
  };
  const auto changed = [](const WChar* name, long count) {
    return [=](WString& selected) { Choices::Choice_CollectionChanged(name, count, selected); };
  };
  const std::string inBrackets =
      "InvalidState: The Property [a] is already set. Only one element within this class bay be set at a time";
  const std::string plain =
      "InvalidState: The Property a is already set. Only one element within this class bay be set at a time";
  const struct {
    std::function<void(WString&)> call;
    const WChar* selected;
    std::string outcome;
  } kRows[] = {
      {select(u"a", object), u"", "a"},
      {select(u"a", object), u"a", "a"},
      {select(u"a", nullptr), u"a", ""},
      {select(u"b", object), u"a", inBrackets},
      {select(u"b", nullptr), u"a", "a"},
      {select(u"b", nullptr), u"", "b"},  // null selects where nothing is selected
      {setValid(true, u"a"), u"", "a"},
      {setValid(true, u"a"), u"a", "a"},
      {setValid(true, u"b"), u"a", plain},
      {setValid(false, u"a"), u"a", ""},
      {setValid(false, u"b"), u"a", ""},  // clears whichever it was
      {changed(u"a", 2), u"", "a"},
      {changed(u"a", 0), u"", ""},
      {changed(u"a", 0), u"a", ""},
      {changed(u"a", 1), u"a", "a"},
      {changed(u"b", 1), u"a", inBrackets},
      {changed(u"b", 0), u"a", "a"},
  };
  for (const auto& row : kRows) EXPECT_EQ(After(row.call, row.selected), row.outcome) << "row " << &row - kRows;
}

TEST(Choices, AreKeptBySettersAndCollections) {
  const CSmartPtr<test::SampleObject> object = test::MakeSample("ChoiceOpts");
  auto& probe = dynamic_cast<test::Probe&>(*object);
  const CSmartPtr<test::Leaf> leaf = test::Leaf::Make();
  OvVariant one, none, leafValue, noLeaf;
  one.SetI4(1);
  leafValue.SetXmlObject(leaf);
  noLeaf.SetXmlObject(nullptr);
  probe.Put(test::kA, one);
  EXPECT_NE(FailureOf([&] { probe.Put(test::kLeaf, leafValue); }), "");
  EXPECT_NE(FailureOf([&] { probe.numbers->Add(3); }), "");
  probe.Put(test::kA, none);
  probe.Put(test::kLeaf, leafValue);
  EXPECT_NE(FailureOf([&] { probe.Put(test::kA, one); }), "");
  probe.Put(test::kLeaf, noLeaf);
  EXPECT_EQ(FailureOf([&] { probe.Put(test::kShade, one); }), "");
}

TEST(Choices, ReadOneRunOfACollection) {
  CXmlDocument document;
  document.LoadXml("<p><n>1</n><n>2</n><z/><n>3</n></p>");
  CXmlElement* const parent = document.GetDocumentElement();
  CXmlElement* child = parent->GetFirstElement();
  const CSmartPtr<Ci4Col> numbers = new Ci4Col(u"n", u"", 1, 2);
  long count = 0;
  const auto read = [&] { Operations::Choice_Read_Collection(numbers, parent, child, count, {}); };
  read();
  EXPECT_EQ(numbers->GetCount(), 2);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ToUtf8(child->GetLocalName()), "z");
  count = 0;
  read();
  EXPECT_EQ(count, 0) << "nothing was there";
  child = child->GetNextSiblingElement();
  count = 1;
  read();
  EXPECT_EQ(ToUtf8(child->GetLocalName()), "n") << "there was a run already";
  count = 0;
  EXPECT_EQ(FailureOf(read), "Validation: The Maximum number of [n] elements allowed in this collection is 2");
}

}  // namespace
}  // namespace OvXmlLib16
