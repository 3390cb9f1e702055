#include "ovxmllib/binding/XmlObjectBase.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "ovxmllib/platform/MessageBox.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Bytes.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;

// Opens what descendants are offered, and counts its instances.
class Probe : public test::AnyObject {
 public:
  Probe() { ++living; }
  Probe(const Probe& other) : AnyObject(other) { ++living; }
  Probe& operator=(const Probe&) = default;
  ~Probe() override { --living; }

  using CXmlObjectBase::IsNamespaceValid;
  using CXmlObjectBase::TestNamespace;
  using CXmlObjectBase::Throw_IfElementNameDiffers;
  using CXmlObjectBase::Throw_IfPropertyIsNull;

  static inline int living = 0;
};

std::vector<WString> g_boxes;
void Record(WStringView caption, WStringView text) { g_boxes.push_back(WString(caption) + u": " + WString(text)); }

TEST(XmlObjectBase, RefusesAnotherVersionAtEveryEntryPoint) {
  const test::TemporaryFolder folder;
  test::WriteFile(folder / "in", "<a/>");
  const std::u16string in = (folder / "in").u16string(), out = (folder / "out").u16string();
  const auto before = platform::SetMessageBox(&Record);
  Probe object;
  object.SetElementName(u"a");
  CXmlDocument document;
  document.LoadXml("<a/>");
  const CBinaryData bytes = test::Data("<a/>");
  const WString kMismatch =
      u"Version Mismatch Error: Please ensure your generated code is the same version as this library ";
  const std::function<void()> entries[] = {
      [&] { object.FromXml("<a/>"); },
      [&] { object.FromXml(u"<a/>"); },
      [&] { object.FromXmlStream(bytes); },
      [&] { object.FromXmlStream(test::Bytes("<a/>"), 4); },
      [&] { object.FromXmlFile(in.c_str()); },
      [&] { object.FromXmlElement(document.GetDocumentElement()); },
      [&] { object.ToXml(); },
      [&] { object.ToXmlStream(); },
      [&] { object.ToXmlFile(out.c_str()); },
      [&] { AsyncToXmlFile(true), object.ToXmlFile(out.c_str()); },
  };
  for (const auto& [major, minor, versions] : {std::tuple(15, 1, u"(Ovalin Runtime: v16.1, Generator: v15.1)"),
                                               std::tuple(16, 2, u"(Ovalin Runtime: v16.1, Generator: v16.2)")}) {
    CXmlObjectBase::Register(major, minor);
    for (const auto& entry : entries) {
      g_boxes.clear();
      EXPECT_EQ(MessageOf(entry), WString(u"Wrong Version ") + versions);
      EXPECT_EQ(g_boxes, std::vector{kMismatch + versions + u"."});
      AsyncToXmlFile(false);
    }
    EXPECT_FALSE(exists(folder / "out"));
  }
  CXmlObjectBase::Register(16, 1);
  g_boxes.clear();
  for (const auto& entry : entries) entry();
  EXPECT_TRUE(g_boxes.empty());
  AsyncToXmlFile(false);
  platform::SetMessageBox(before);
}

// The child process makes its first bound object here.
TEST(XmlObjectBaseDeathTest, TellsOfTheVersionWhenTheFirstObjectIsMade) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto makeTwo = [] {
    platform::SetMessageBox(&Record);
    CXmlObjectBase::Register(15, 1);
    const Probe first, second;
    std::_Exit(static_cast<int>(g_boxes.size()));
  };
  EXPECT_EXIT(makeTwo(), testing::ExitedWithCode(1), "");
}

TEST(XmlObjectBase, ReadsAnyElementAndReadsAgain) {
  CXmlDocument document;
  document.LoadXml("<a><b c='1'>2</b></a>");
  Probe object;
  for (const char* bad : {"", "<a><b/>", "<a>&e;</a>"}) {
    EXPECT_THROW(object.FromXml(bad), COvException);
    object.FromXml("<x k='v'>t<y/></x>");
    EXPECT_EQ(object.ToXml(false, false), u"<x k=\"v\">t<y/></x>");
    object.FromXmlElement(document.GetDocumentElement()->GetFirstElement());
    EXPECT_EQ(object.ToXml(false, false), u"<b c=\"1\">2</b>");
  }
  EXPECT_EQ(test::TextOf(*document.GetDocumentElement()), u"a(b[c=1]'2')") << "the tree stays the caller's";
}

TEST(XmlObjectBase, ReadsWellWithDefaultArguments) {
  CSmartPtr<test::AnyObject> object(new test::AnyObject), other(new test::AnyObject);
  object->FromXml("<a b=''><c>\xC3\xBC</c></a>");
  EXPECT_EQ(object->ToXml(), u"<?xml version=\"1.0\"?>\n<a b=\"\">\n\t<c>\u00FC</c>\n</a>\n");
  EXPECT_EQ(test::TextOf(object->ToXmlStream()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a b=\"\">\n\t<c>\xC3\xBC</c>\n</a>\n");
  CSerializationContext context;
  context.SetIndentChars(u"  ");
  EXPECT_EQ(object->ToXml(/*header=*/false, /*formatted=*/true, EOLType_CRLF, context),
            u"<a b=\"\">\r\n  <c>\u00FC</c>\r\n</a>\r\n");
  context.SetIndentChars(u"");
  EXPECT_EQ(object->ToXml(false, true, EOLType_LF, context), u"<a b=\"\">\n<c>\u00FC</c>\n</a>\n");

  CXmlDocument document;
  document.LoadXml("<a b=''><c>\xC3\xBC</c></a>");
  other->FromXmlElement(document.GetDocumentElement());
  EXPECT_EQ(*other, *object);
  other->FromXml(object->ToXml(/*header=*/true, /*formatted=*/false).c_str());
  EXPECT_EQ(*other, *object);
}

TEST(XmlObjectBase, LivesByItsReferences) {
  const int before = Probe::living;
  auto* object = new Probe;
  object->SetElementName(u"name");
  EXPECT_EQ(object->AddRef(), 1);
  EXPECT_EQ(object->AddRef(), 2);
  auto* copy = new Probe(*object);
  EXPECT_EQ(copy->AddRef(), 1) << "a copy starts with no reference";
  *copy = *object;
  EXPECT_EQ(copy->GetElementName(), u"name");
  EXPECT_EQ(copy->Release(), 0);
  EXPECT_EQ(object->Release(), 1);
  EXPECT_EQ(Probe::living, before + 1);
  EXPECT_EQ(object->Release(), 0);
  EXPECT_EQ(Probe::living, before);
}

TEST(XmlObjectBase, MatchesNamespaceListsAsSpecified) {
  for (const test::VectorRow& row : test::ReadVectors("binding/namespace_lists.vec", "lists")) {
    const WString ns = row.Wide("namespace"), allowed = row.Wide("allowed"), target = row.Wide("target");
    const auto test = [&] { Probe::TestNamespace(ns.c_str(), allowed.c_str(), target.c_str()); };
    const bool valid = row["valid"] == "yes";
    EXPECT_EQ(Probe::IsNamespaceValid(ns.c_str(), allowed.c_str(), target.c_str()), valid) << row.Place();
    EXPECT_EQ(MessageOf<COvInvalidNamespaceException>(test) == u"(nothing was thrown)", valid) << row.Place();
  }
  EXPECT_EQ(MessageOf<COvInvalidNamespaceException>([] { Probe::TestNamespace(u"x", u"##local u", u"t"); }),
            u"Invalid namespace [x]. The namespace must be one of [##local u] where the target namespace is [t].");
}

TEST(XmlObjectBase, ChecksNamesAsSpecified) {
  Probe object;
  object.SetElementName(u"is");
  Probe::Throw_IfElementNameDiffers(nullptr, u"other");
  Probe::Throw_IfElementNameDiffers(&object, u"is");
  Probe::Throw_IfPropertyIsNull(&object, u"P");
  EXPECT_EQ(MessageOf<COvInvalidParamException>([&] { Probe::Throw_IfElementNameDiffers(&object, u"wanted"); }),
            u"This property requires an element with the name wanted the element being set has the element name is");
  EXPECT_EQ(MessageOf<COvInvalidParamException>([] { Probe::Throw_IfPropertyIsNull(nullptr, u"P"); }),
            u"The Property [P] is mandatory, it may node be NULL");
}

}  // namespace
}  // namespace OvXmlLib16
