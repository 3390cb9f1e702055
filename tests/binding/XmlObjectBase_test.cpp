#include "ovxmllib/binding/XmlObjectBase.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "ovxmllib/platform/MessageBox.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

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
  const unsigned char bytes[] = {'<', 'a', '/', '>'};
  const std::function<void()> entries[] = {
      [&] { object.FromXml("<a/>"); },
      [&] { object.FromXml(u"<a/>"); },
      [&] { object.FromXmlStream(CBinaryData(bytes, 4)); },
      [&] { object.FromXmlStream(bytes, 4); },
      [&] { object.FromXmlFile(in.c_str()); },
      [&] { object.FromXmlElement(document.GetDocumentElement()); },
      [&] { object.ToXml(); },
      [&] { object.ToXmlStream(); },
      [&] { object.ToXmlFile(out.c_str()); },
      [&] {
        AsyncToXmlFile(true);
        object.ToXmlFile(out.c_str());
      },
  };
  for (const auto& [major, minor, versions] : {std::tuple(15, 1, u"(Ovalin Runtime: v16.1, Generator: v15.1)"),
                                               std::tuple(16, 2, u"(Ovalin Runtime: v16.1, Generator: v16.2)")}) {
    CXmlObjectBase::Register(major, minor);
    for (const auto& entry : entries) {
      g_boxes.clear();
      EXPECT_EQ(MessageOf(entry), WString(u"Wrong Version ") + versions);
      EXPECT_EQ(g_boxes,
                std::vector{u"Version Mismatch Error: Please ensure your generated code is the same version as "
                            u"this library " +
                            WString(versions) + u"."});
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

TEST(XmlObjectBase, ReadsTheFilesItWrites) {
  const test::TemporaryFolder folder;
  Probe object, again;
  object.FromXml(("<a>" + test::Repeated("<b c='\xC3\xBC'>\xE2\x82\xAC</b>", 30) + "</a>").c_str());
  for (const auto encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader}) {
    for (const auto compression : {CompressionType_None, CompressionType_GZip}) {
      object.ToXmlFile(folder / "f", true, false, encoding, EOLType_LF, {}, compression);
      EXPECT_EQ(MessageOf([&] { again.FromXmlFile(folder / "f"); }), u"(nothing was thrown)")
          << encoding << compression;
      EXPECT_TRUE(object == again);
    }
  }
}

TEST(XmlObjectBase, LivesByItsReferences) {
  const int before = Probe::living;
  auto* object = new Probe;
  object->SetElementName(u"name");
  EXPECT_EQ(object->AddRef(), 1);
  EXPECT_EQ(object->AddRef(), 2);
  auto* copy = new Probe(*object);
  EXPECT_EQ(copy->GetElementName(), u"name");
  EXPECT_EQ(copy->AddRef(), 1) << "a copy starts with no reference";
  *copy = *object;
  EXPECT_EQ(copy->Release(), 0);
  EXPECT_EQ(object->Release(), 1);
  EXPECT_EQ(Probe::living, before + 1);
  EXPECT_EQ(object->Release(), 0);
  EXPECT_EQ(Probe::living, before);
}

TEST(XmlObjectBase, MatchesNamespaceListsAsSpecified) {
  const struct {
    const WChar *allowed, *target;
    std::vector<const WChar*> valid, invalid;
  } cases[] = {
      {u"##any", u"t", {u"", u"x", u"t"}, {}},
      {u"##other", u"t", {u"x", u""}, {u"t"}},
      {u"##other", u"", {u"x"}, {u""}},
      {u"##local", u"t", {u""}, {u"x", u"t"}},
      {u"##targetNamespace u", u"t", {u"t", u"u", u""}, {u"x", u"##targetNamespace"}},
      {u"##targetNamespace", u"t", {u"t"}, {u""}},
      {u"##targetNamespace", u"", {u""}, {u"x"}},
      {u"##targetNamespace ", u"t", {u"t", u""}, {u"x"}},
      {u"u v", u"t", {u"u", u"v", u""}, {u"t", u"u v"}},
      {u"", u"t", {u""}, {u"t"}},
      {u"u ##any", u"t", {u"x"}, {}},
  };
  for (const auto& [allowed, target, valid, invalid] : cases) {
    for (const WChar* ns : valid) {
      EXPECT_TRUE(Probe::IsNamespaceValid(ns, allowed, target)) << ToUtf8(allowed) << ToUtf8(ns);
      Probe::TestNamespace(ns, allowed, target);
    }
    for (const WChar* ns : invalid) {
      EXPECT_FALSE(Probe::IsNamespaceValid(ns, allowed, target)) << ToUtf8(allowed) << ToUtf8(ns);
      EXPECT_THROW(Probe::TestNamespace(ns, allowed, target), COvInvalidNamespaceException);
    }
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
