#include <gtest/gtest.h>

#include "tests/mapping/Failures.h"
#include "tests/mapping/Options.h"
#include "tests/support/Probes.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::FailureOf;
using test::SampleObject;
using test::VectorRow;

// The attributes and children of a case in an element; without namespaces, declarations would be attributes.
std::string DocumentOf(const VectorRow& row) {
  const bool declares = row["options"].find('2') == std::string::npos;
  const std::string declarations =
      "xmlns='urn:sample' xmlns:s='urn:sample' xmlns:x='urn:other' "
      "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' ";
  return "<p " + (declares ? declarations : "") + row["attributes"] + ">" + row["children"] + "</p>";
}

// The object as text, or why it cannot be written.
std::string WrittenText(const SampleObject& object, CSerializationContext context) {
  context.SetDefaultNamespaceURI(test::kNs);
  std::string text;
  const std::string failure =
      FailureOf([&] { text = ToUtf8(object.ToXml(/*header=*/false, /*formatted=*/false, EOLType_LF, context)); });
  return failure.empty() ? test::WithoutDefaultNamespace(text) : failure;
}

// Whether what was read can be written without the options is no concern of reading.
std::string WrittenAgain(const SampleObject& object, CSerializationContext context) {
  context.SetIgnoreMissingChoice(true);
  context.SetIgnoreInvalidCollectionCounts(true);
  const std::string text = WrittenText(object, context);
  return text.starts_with("<") ? text : "(" + text + ")";
}

TEST(Walks, TakeOrRefuseEachDocument) {
  for (const char* table : {"sequence", "choice", "all", "attributes", "nil", "options"}) {
    for (const VectorRow& row : test::ReadVectors("mapping/walks.vec", table)) {
      SCOPED_TRACE(row.Place());
      const CSerializationContext context = test::ContextOf(row["options"]);
      const CSmartPtr<SampleObject> object = test::MakeSample(row["class"]);
      std::string outcome = FailureOf([&] { object->FromXml(DocumentOf(row).c_str(), context); });
      if (outcome.empty()) outcome = WrittenAgain(*object, context);
      EXPECT_EQ(outcome, row["outcome"]);
    }
  }
}

TEST(Walks, WriteWhatIsThereOrSayWhatIsMissing) {
  for (const VectorRow& row : test::ReadVectors("mapping/writing.vec", "empty")) {
    SCOPED_TRACE(row.Place());
    const CSmartPtr<SampleObject> object = test::MakeSample(row["class"]);
    object->SetElementName(u"p");
    OvVariant none;
    none.SetXmlObject(nullptr);
    for (const int index : {test::kMade, test::kMadeAny, test::kMadeGroup}) object->Put(index, none);
    EXPECT_EQ(WrittenText(*object, test::ContextOf(row["options"])), row["outcome"]);
  }
}

// What is absent leaves the property as Init set it, also in an object that was read before.
TEST(Walks, BeginEachReadWithInit) {
  const CSmartPtr<SampleObject> object = test::MakeSample("SeqPrim");
  object->FromXml("<p xmlns='urn:sample'><a>1</a><b>2</b></p>");
  object->FromXml("<q xmlns='urn:sample'><a>3</a></q>");
  EXPECT_EQ(WrittenText(*object, {}), "<q><a>3</a></q>");
}

CSmartPtr<test::Leaf> Chain(int levels, int last) {
  const CSmartPtr<test::Leaf> leaf = test::Leaf::Make();
  leaf->number.Assign(levels == 1 ? last : levels);
  if (levels > 1) {
    leaf->next.Assign(Chain(levels - 1, last));
    leaf->next->SetElementName(u"next");
  }
  return leaf;
}

TEST(Failures, TellTheWayFromTheRootFiveLevelsDeep) {
  const CSmartPtr<test::Leaf> leaf = Chain(5, 50);
  WString text = leaf->ToXml();
  text.replace(text.find(u">50<"), 4, u">five<");
  try {
    test::Leaf::Make()->FromXml(text.c_str());
    FAIL();
  } catch (const COvException& exception) {
    EXPECT_EQ(test::ClassOf(exception), "") << "deeper than the root it is no COvValidationException any more";
    EXPECT_EQ(ToUtf8(exception.GetPath()), "/AA:leaf/AA:next/AA:next/AA:next/AA:next");
    EXPECT_EQ(ToUtf8(exception.GetFullMessage()),
              "Failed to process the element.\nPath: /AA:leaf/AA:next/AA:next/AA:next/AA:next\n"
              "The value [five] can not be converted to a i4");
  }
  EXPECT_EQ(FailureOf([] { Chain(5, 100)->ToXml(); }),
            "Validation: Failed to convert the element [leaf] to XML < "
            "Validation: Failed to convert the element [next] to XML < "
            "Validation: Failed to convert the element [next] to XML < "
            "Validation: Failed to convert the element [next] to XML < "
            "Validation: Failed to convert the element [next] to XML < Invalid Value for number [100]");
}

CSmartPtr<test::Probe> Everything() {
  const CSmartPtr<SampleObject> object = test::MakeSample("Everything");
  const CSmartPtr<test::Probe> probe = dynamic_cast<test::Probe*>(static_cast<SampleObject*>(object));
  probe->SetElementName(u"renamed");
  probe->a.Assign(1);
  probe->b.Assign(2);
  probe->anyAttributes->Add(u"any", u"3", u"urn:other");
  probe->madeGroup->number.Assign(4);
  probe->madeGroup->shade.Assign(test::kDark);
  probe->madeGroup->mark.Assign(5);
  OvVariant leaf;
  const CSmartPtr<test::Leaf> made = test::Leaf::Make();
  leaf.SetXmlObject(made);
  made->number.Assign(6);
  probe->Put(test::kLeaf, leaf);
  probe->text.Assign(u"text");
  return probe;
}

CSerializationContext EverythingContext() {
  CSerializationContext context;
  context.GetProcessingInstructions() = {u"<?first one?>", u"<?second two?>"};
  context.GetNamespaceAliases().Add(u"s", u"urn:sample");
  context.GetNamespaceAliases().Add(u"o", u"urn:other");
  context.GetNamespaceAliases().Add(u"xsi", u"http://www.w3.org/2001/XMLSchema-instance");
  context.SetDefaultNamespaceURI(u"urn:default");
  context.GetAdditionalRootAttributes()->Add(u"additional", u"7", u"");
  context.SetInLineSchema(u" inline=\"schema\"");
  return context;
}

TEST(Writing, HasOneOrder) {
  CSerializationContext context = EverythingContext();
  const CSmartPtr<test::Probe> probe = Everything();
  const std::string head =
      "<?first one?>\n\n<?second two?>\n\n"
      "<s:renamed xmlns=\"urn:default\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:o=\"urn:other\" "
      "xmlns:s=\"urn:sample\" additional=\"7\"";
  const std::string tail =
      " b=\"2\" o:any=\"3\" mark=\"5\" \n inline=\"schema\"\n><s:a>1</s:a><s:number>4</s:number>"
      "<s:groupShade>dark</s:groupShade><s:leaf><s:number>6</s:number></s:leaf>text</s:renamed>";
  EXPECT_EQ(ToUtf8(probe->ToXml(false, false, EOLType_LF, context)), head + " xsi:type=\"s:everything\"" + tail);

  context.SetWriteTypeAttribute(false);
  EXPECT_EQ(ToUtf8(probe->ToXml(false, false, EOLType_LF, context)), head + tail);
}

TEST(Writing, NeedsNoTypeUnderItsOwnName) {
  const CSmartPtr<test::Probe> probe = Everything();
  probe->SetElementName(u"everything");
  EXPECT_EQ(ToUtf8(probe->ToXml()).find("type"), std::string::npos);
}

}  // namespace
}  // namespace OvXmlLib16
