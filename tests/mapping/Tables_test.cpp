#include <gtest/gtest.h>

#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/mapping/ClassfactoryBase.h"
#include "tests/mapping/Failures.h"
#include "tests/support/Probes.h"

namespace OvXmlLib16 {
namespace {

using test::FailureOf;

struct Namespaces : OvXmlLib16Data::CElementInfo {
  using CElementInfo::GetAnyDefaultNamespace;
};

TEST(Entries, ChooseTheNamespaceOfANewElement) {
  const struct {
    const WChar *list, *ns, *result;
  } kRows[] = {
      {u"##any", u"urn:n", u"urn:n"},
      {u"##other", u"urn:n", u""},
      {u"##other", u"", u"DefaultNamespace"},
      {u"##local", u"urn:n", u""},
      {u"##targetNamespace", u"urn:n", u"urn:t"},
      {u"##local urn:x", u"urn:n", u""},
      {u"##targetNamespace urn:x", u"urn:n", u"urn:t"},
      {u"##any ##other", u"urn:n", u"urn:n"},
      {u"urn:x ##any", u"urn:n", u""},
      {u"## ##any", u"urn:n", u""},
      {u"", u"urn:n", u""},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ToUtf8(Namespaces::GetAnyDefaultNamespace(row.list, row.ns, u"urn:t")), ToUtf8(row.result))
        << ToUtf8(row.list);
  }
}

TEST(Entries, CheckOnlyWhatHasFacets) {
  OvVariant value;
  value.SetI4(100);
  const auto check = [&](const char* name) {
    const CSmartPtr<test::SampleObject> object = test::MakeSample(name);
    return FailureOf([&] { object->GetElements()[0]->CheckRestriction(value); });
  };
  EXPECT_EQ(check("SeqPrim"), "Invalid Value for a [100]");
  EXPECT_EQ(check("SeqEnum"), "Cannot CheckRestriction for type: i4");
  EXPECT_EQ(check("SeqCls"), "Cannot CheckRestriction for type: i4");
}

TEST(Entries, OfSequencesAndChoicesAreNotValidated) {
  for (const char* name : {"SeqPrim", "SeqCols", "ChoiceOpts", "ChoiceCols"}) {
    const CSmartPtr<test::SampleObject> object = test::MakeSample(name);
    EXPECT_EQ(FailureOf([&] { object->GetElements()[0]->Validate({}, object, true, true); }),
              "Not implemented, should never be called");
  }
}

TEST(Entries, CanReadButNotWriteACharAsSpecified) {
  const CSmartPtr<test::Primitives> object = test::Primitives::Make();
  object->FromXml("<p xmlns='urn:sample' char='x'/>");
  EXPECT_EQ(FailureOf([&] { object->ToXml(); }),
            "Validation: Failed to convert the element [p] to XML < Failed to convert attributes to XML < "
            "InvalidValue: Unknown type [char].");
}

TEST(Entries, HandTheSetterANilVariantAsSpecified) {
  const CSmartPtr<test::SampleObject> object = test::MakeSample("SeqPrim");
  object->FromXml(
      "<p xmlns='urn:sample'><a>1</a><b i:nil='1' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>2</b></p>");
  EXPECT_TRUE(dynamic_cast<test::Probe&>(*object).b.IsNil());
}

TEST(Tables, CanBeGivenUpAndBuiltAgain) {
  const CSmartPtr<test::Point> point = test::Point::Make();
  const auto* elements = point->GetElements();
  EXPECT_EQ(elements, point->GetElements());
  test::Point::CleanUp();
  test::Point::CleanUp();
  point->FromXml("<p xmlns='urn:sample' unit='dark'><x>1</x><y>2</y></p>");
  EXPECT_EQ(*point->y, 2);
}

struct Types : CClassfactoryBase {
  using CClassfactoryBase::GetElementType;
  using CClassfactoryBase::GetElementTypeNamespaceUri;
};

TEST(ClassFactory, ReadsTheTypeOfAnElement) {
  const struct {
    const char *type, *name, *ns;
  } kRows[] = {
      {"", "", "urn:own"},
      {"x:type='s:circle'", "circle", "urn:sample"},
      {"x:type='circle'", "circle", "urn:own"},
      {"x:type='none:circle'", "circle", "urn:own"},
      {"x:type='s:a:b'", "a:b", "urn:sample"},
      {"type='s:circle'", "", "urn:own"},
  };
  for (const auto& row : kRows) {
    CXmlDocument document;
    const std::string attribute = row.type;
    document.LoadXml(
        ("<o:p xmlns:o='urn:own' xmlns:s='urn:sample' xmlns:x='http://www.w3.org/2001/XMLSchema-instance' " +
         attribute + "/>")
            .c_str());
    EXPECT_EQ(ToUtf8(Types::GetElementType(document.GetDocumentElement())), row.name) << row.type;
    EXPECT_EQ(ToUtf8(Types::GetElementTypeNamespaceUri(document.GetDocumentElement())), row.ns) << row.type;
  }
}

}  // namespace
}  // namespace OvXmlLib16
