#include <gtest/gtest.h>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/collections/ElementCol.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/SmallStack.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::MessageOf;
using Element = CSmartPtr<CElement>;

// Entry points need a version.
const bool g_registered = (CXmlObjectBase::Register(16, 1), true);

Element Read(const WChar* xml) {
  Element element(new CElement(u"unread"));
  element->FromXml(xml);
  return element;
}

WString Written(const CXmlObjectBase& object, bool formatted = false) {
  return object.ToXml(/*header=*/false, formatted, EOLType_LF);
}

// What only metadata calls.
class Elements : public CElementCol {
 public:
  using CElementCol::CElementCol;
  using CElementCol::FromXmlLockElementName_Int;
  CXmlElement* Read(CXmlElement* first) { return FromXml_Int(nullptr, first, CSerializationContext(), false); }
};
class Attributes : public CAttributeCol {
 public:
  using CAttributeCol::CAttributeCol;
  void Read(CXmlElement* parent) { FromXml_Int(parent, nullptr, CSerializationContext(), false); }
};
class ReadableElement : public CElement {
 public:
  using CElement::CElement;
  CXmlElement* Read(CXmlElement* from) { return FromXml_Int(nullptr, from, CSerializationContext(), false); }
};

// A document whose root has one child and one attribute, both in this namespace.
class DocumentOf : public CXmlDocument {
 public:
  explicit DocumentOf(const WString& ns) {
    const WString inNs = u"<r xmlns:p='" + ns + u"' p:a='v'><p:e/><last/></r>";
    LoadXml(ns.empty() ? u"<r a='v'><e/><last/></r>" : inNs.c_str());
  }
  CXmlElement* Root() { return GetDocumentElement(); }
  CXmlElement* Child() { return Root()->GetFirstElement(); }
};

// How each way in ends: empty when the namespace was let in, else the message.
WString Refusal(const std::function<void()>& call) {
  try {
    call();
  } catch (const COvInvalidNamespaceException& exception) {
    return exception.GetMessage();
  }
  return {};
}

TEST(Wildcard, HoldsEachNamespaceAgainstItsRestrictionWhicheverWayItComesIn) {
  for (const test::VectorRow& row : test::ReadVectors("collections/namespaces.vec", "rows")) {
    SCOPED_TRACE(row.Place());
    const WString restriction = row.Wide("restriction"), ns = row.Wide("ns"), target = row.Wide("target");
    const WChar *r = restriction.c_str(), *n = ns.c_str(), *t = target.c_str();
    const bool passes = row["passes"] == "yes";
    const WString refusal =
        FormatString(u"Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is [%s].",
                     ns, restriction, target);
    const WString expected = passes ? WString() : refusal;

    EXPECT_EQ(Refusal([&] { Element(new CElement(u"e", n, r, t)); }), expected);
    EXPECT_EQ(Refusal([&] { CSmartPtr<CElementCol>(new CElementCol(n, r, t, 0, -1)); }), expected);
    const CSmartPtr<Attributes> attributes(new Attributes(u"", r, t));
    EXPECT_EQ(Refusal([&] { attributes->Add(u"a", u"", n); }), expected);
    EXPECT_EQ(attributes->GetCount(), passes ? 1 : 0);

    DocumentOf document(ns);
    const WString unread = u"Invalid Attribute [a]. The attributes namespace is Inappropriate.\nPath: /r";
    EXPECT_EQ(Refusal([&] { attributes->Read(document.Root()); }), passes ? WString() : unread);

    const Element free(new CElement(u"e"));
    free->SetNamespace(n);
    const WString reported =
        FormatString(u"The namespace %s in the class e is invalid against restriction %s", ns, restriction);
    EXPECT_EQ(Refusal([&] { free->SetNamespaceRestrictions(r, t); }), passes ? WString() : reported);

    // A collection and an element can only be made with a namespace that is let in.
    WString allowed = ns;
    if (!passes) allowed = restriction.starts_with(u"##other") ? WString(u"urn:o") : target;
    if (!Refusal([&] { Element(new CElement(u"e", allowed.c_str(), r, t)); }).empty()) allowed.clear();
    const CSmartPtr<Elements> elements(new Elements(allowed.c_str(), r, t, 0, -1));
    EXPECT_EQ(Refusal([&] { elements->Add(u"e", n); }), expected);
    EXPECT_EQ(Refusal([&] { elements->Add(free); }), expected);
    EXPECT_EQ(elements->GetCount(), passes ? 2 : 0);
    elements->Clear();
    CXmlElement* const rest = elements->Read(document.Child());
    if (!passes) {
      EXPECT_EQ(rest, document.Child());
    } else {
      EXPECT_EQ(elements->Item(0)->GetNamespace(), ns);
    }
    const CSmartPtr<ReadableElement> element(new ReadableElement(u"e", allowed.c_str(), r, t));
    EXPECT_EQ(element->Read(document.Child()), passes ? document.Child()->GetNextSiblingElement() : document.Child());
  }
}

TEST(Wildcard, TestsNoMoreThanTheElementItself) {
  const Element element(new CElement(u"e", u"urn:t", u"##targetNamespace", u"urn:t"));
  element->GetChildElements()->Add(u"child", u"urn:other")->SetText(u"x");
  element->GetAttributes()->Add(u"a", u"1", u"urn:third");
  EXPECT_EQ(element->GetChildElements()->GetNamespace(), u"urn:t");
  EXPECT_EQ(Refusal([&] { element->SetNamespaceRestrictions(u"##targetNamespace urn:third", u"urn:t"); }),
            u"The namespace urn:other in the class child is invalid against restriction ##targetNamespace urn:third");
  EXPECT_EQ(Refusal([&] { element->SetNamespaceRestrictions(u"##targetNamespace", u"urn:t"); }),
            u"Invalid namespace [urn:third]. The namespace must be one of [##targetNamespace] where the target "
            u"namespace is [urn:t].");
  EXPECT_EQ(element->Clone()->GetChildElements()->Item(0)->GetText(), u"x");
  element->SetNamespace(u"urn:untested");
  EXPECT_NE(Refusal([&] { element->Clone(); }), u"");
}

struct Failure {
  const WChar* message;
  std::function<void()> call;
};

TEST(Wildcard, FailsWithTheMessageOfTheFault) {
  const WChar* const none = nullptr;
  const CSmartPtr<CElementCol> noNamespace(new CElementCol(u"", u"urn:x", u"", 0, -1));
  const CSmartPtr<CElementCol> any(new CElementCol(u"", u"##any", u"", 1, 1));
  const CSmartPtr<CAttributeCol> attributes(new CAttributeCol(u"", u"##any", u""));
  const auto attribute = attributes->Add(u"a");
  const Failure failures[] = {
      {u"Element Name must have a value", [&] { Element(new CElement(none)); }},
      {u"Element Namespace must have a value", [&] { Element(new CElement(u"a", none)); }},
      {u"Element Name must have a value", [&] { Element(new CElement(none, none, none, none)); }},
      {u"Namespace Restriction must have a value", [&] { Element(new CElement(u"a", u"", none, none)); }},
      {u"Target Namespace must have a value", [&] { Element(new CElement(u"a", u"", u"##any", none)); }},
      {u"Invalid Namespace [##any].", [&] { Element(new CElement(u"a", u"##any")); }},
      {u"Invalid Namespace [##other].", [&] { Element(new CElement(u"a", u"##other")); }},
      {u"Invalid Namespace [##local].", [&] { Element(new CElement(u"a", u"##local")); }},
      {u"Invalid Namespace [##targetNamespace].", [&] { Element(new CElement(u"a", u"##targetNamespace")); }},
      {u"A Namespace has not been set for this Collection", [&] { noNamespace->Add(u"a"); }},
      {u"A Namespace has not been set for this Collection", [&] { any->Add(u"a"); }},
      {u"The Minimum number of [] elements allowed in this collection is 1", [&] { Written(*any); }},
      {u"This should be done by the collection", [&] { attribute->FromXml("<a/>"); }},
      {u"The Property [element] is mandatory, it may node be NULL", [&] { any->Add(static_cast<CElement*>(nullptr)); }},
      {u"The Property [element] is mandatory, it may node be NULL", [&] { attribute->FromXmlElement(nullptr); }},
  };
  for (const Failure& failure : failures) EXPECT_EQ(MessageOf(failure.call), failure.message);
  EXPECT_EQ(noNamespace->Add(u"a", u"urn:x")->GetNamespace(), u"urn:x");
}

TEST(Wildcard, NamesNewAttributesByTheFirstUriOfTheRestriction) {
  const struct {
    const WChar *ns, *restriction, *expected;
  } rows[] = {{u"", u"urn:x", u"urn:x"}, {u"", u"urn:x urn:y", u"urn:x"},      {u"", u"##any", u""},
              {u"", u"x", u""},          {u"urn:y", u"urn:x urn:y", u"urn:y"}, {u"", u"", u""}};
  for (const auto& row : rows) {
    const CSmartPtr<CAttributeCol> attributes(new CAttributeCol(row.ns, row.restriction, u""));
    EXPECT_EQ(attributes->Add(u"a")->GetNamespace(), row.expected) << ToUtf8(row.restriction);
  }
}

constexpr const WChar* kDocument =
    u"<p:a xmlns:p='urn:p' x='1' p:y='&lt;\"&#10;'><b/>t<c z='3'><d>&amp;</d></c>u<!-- gone --></p:a>";

TEST(Wildcard, WritesTextBehindTheChildren) {
  const Element element = Read(kDocument);
  EXPECT_EQ(Written(*element),
            u"<AA:a xmlns:AA=\"urn:p\" x=\"1\" AA:y=\"&lt;&quot;&#xA;\"><b/><c z=\"3\"><d>&amp;</d></c>tu</AA:a>");
  EXPECT_EQ(Written(*element, /*formatted=*/true),
            u"<AA:a xmlns:AA=\"urn:p\" x=\"1\" AA:y=\"&lt;&quot;&#xA;\">\n\t<b/>\n\t<c z=\"3\">\n\t\t<d>&amp;</d>\n"
            u"\t</c>\ntu</AA:a>\n");
  EXPECT_EQ(Written(*element->Clone()), Written(*element));
}

TEST(Wildcard, ReadsTheDocumentElementByEveryEntryPoint) {
  const std::string bytes = ToUtf8(kDocument);
  const WString expected = Written(*Read(kDocument));
  CXmlDocument document;
  document.LoadXml(bytes);
  const std::function<void(CElement&)> entries[] = {
      [](CElement& e) { e.FromXml(kDocument, CSerializationContext()); },
      [&](CElement& e) { e.FromXml(bytes.c_str()); },
      [&](CElement& e) { e.FromXml(std::string_view(bytes)); },
      [&](CElement& e) { e.FromXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()); },
      [&](CElement& e) { e.FromXmlElement(document.GetDocumentElement()); },
      [&](CElement& e) {
        const Element other = Read(kDocument);
        e.FromXmlElement(static_cast<const CElement*>(other));
      },
  };
  for (const auto& entry : entries) {
    const Element element(new CElement(u"unread"));
    entry(*element);
    EXPECT_EQ(Written(*element), expected);
  }
}

TEST(Wildcard, AddsToWhatIsThereWhenReadAgainAsSpecified) {
  const Element element = Read(u"<a x='1'><b/>t</a>");
  element->FromXml(u"<c y='2'><d/>u</c>");
  EXPECT_EQ(Written(*element), u"<c x=\"1\" y=\"2\"><b/><d/>u</c>");
}

TEST(Wildcard, GivesTheSameCollectionsWheneverTheyAreAskedFor) {
  const Element element(new CElement(u"a", u"urn:made"));
  element->SetNamespace(u"urn:later");
  EXPECT_EQ(element->GetChildElements()->Add(u"b")->GetNamespace(), u"urn:made");
  EXPECT_EQ(element->GetAttributes()->Add(u"c")->GetNamespace(), u"urn:made");
  EXPECT_EQ(element->GetAttributes()->GetBase(), element->GetAttributes()->GetBase());
  const CSmartPtr<CElementCol> children = Read(u"<a><b>t</b></a>")->GetChildElements();
  EXPECT_EQ(children->Item(0)->GetText(), u"t");
  children->Item(0)->SetText(u"longer than what it was read with");
  children->Item(0)->SetName(u"n");
  EXPECT_EQ(Written(*children->Item(0)), u"<n>longer than what it was read with</n>");
}

TEST(Wildcard, IsMadeOfABoundObjectAndReadByOne) {
  const CSmartPtr<test::AnyObject> object(new test::AnyObject);
  object->FromXml("<o:a xmlns:o='urn:o' k='v'><o:b k='w'>x</o:b><c/>y</o:a>");
  const Element plain(new CElement(object, nullptr));
  EXPECT_EQ(Written(*plain), u"<AA:a xmlns:AA=\"urn:o\" k=\"v\"><AA:b k=\"w\">x</AA:b><c/>y</AA:a>");
  const CSmartPtr<test::AnyObject> back(new test::AnyObject);
  back->FromXmlElement(static_cast<const CElement*>(plain));
  EXPECT_EQ(*back, *object);
}

TEST(Wildcard, WritesAnElementWithADefaultNamespaceAsAUnitWithoutItsAttributesAsSpecified) {
  const CSmartPtr<test::AnyObject> object(new test::AnyObject);
  object->FromXml("<a xmlns='urn:o' k='v'><b k='w'>x</b>y</a>");
  const Element around(new CElement(u"around"));
  around->GetChildElements()->Add(new CElement(object, u"urn:o"));
  around->GetChildElements()->Add(u"behind", u"");
  EXPECT_EQ(Written(*around), u"<around><a xmlns=\"urn:o\"><b k=\"w\">x</b>y</a><behind/></around>");
  EXPECT_EQ(Written(*around, /*formatted=*/true),
            u"<around>\n<a xmlns=\"urn:o\">\n\t<b k=\"w\">x</b>\ny</a>\n\n\t<behind/>\n</around>\n");
  EXPECT_EQ(Written(*around->Clone()->GetChildElements()->Item(0)),
            u"<AA:a xmlns:AA=\"urn:o\" k=\"v\"><AA:b k=\"w\">x</AA:b>y</AA:a>");
}

TEST(Wildcard, ReadsAsFarAsTheNameIsLocked) {
  CXmlDocument document;
  document.LoadXml("<r xmlns:p='urn:p'><p:a>1</p:a><p:a>2</p:a><a/><p:a/></r>");
  CXmlElement* const first = document.GetDocumentElement()->GetFirstElement();
  const CSmartPtr<Elements> elements(new Elements(u"", u"##any", u"", 0, -1));
  CXmlElement* const rest =
      elements->FromXmlLockElementName_Int(u"a", u"urn:p", nullptr, first, CSerializationContext());
  EXPECT_EQ(rest, first->GetNextSiblingElement()->GetNextSiblingElement());
  EXPECT_EQ(elements->GetCount(), 2);
  EXPECT_EQ(elements->Item(1)->GetText(), u"2");
}

class Refuser final : public IEventSink {
 public:
  void OnEvent(CXmlObjectBase*, MsgType type, void* data) override {
    // Holding the item for a moment must not delete it.
    if (type == OnCollectionAdd) CSmartPtr<CXmlObjectBase>(static_cast<CXmlObjectBase*>(data));
    if (type == refused) throw COvException(u"refused");
  }
  MsgType refused = OnCollectionChange;
};

TEST(Wildcard, LosesNothingWhenAListenerThrows) {
  Refuser refuser;
  for (const auto refused : {IEventSink::OnCollectionAdd, IEventSink::OnCollectionAddComplete}) {
    const Element element(new CElement(u"a", u"urn:a"));
    refuser.refused = refused;
    element->GetChildElements()->AddEventListener(&refuser);
    element->GetAttributes()->AddEventListener(&refuser);
    const int added = refused == IEventSink::OnCollectionAdd ? 0 : 1;
    EXPECT_EQ(MessageOf([&] { element->FromXml(u"<a x='1'/>"); }), u"refused");
    EXPECT_EQ(MessageOf([&] { element->FromXml(u"<a><b/></a>"); }), u"refused");
    EXPECT_EQ(MessageOf([&] { element->GetChildElements()->Add(u"c"); }), u"refused");
    EXPECT_EQ(element->GetAttributes()->GetCount(), added);
    EXPECT_EQ(element->GetChildElements()->GetCount(), 2 * added);
  }
  EXPECT_EQ(test::MonitorLines(u"-->"), u"");
}

TEST(Wildcard, LivesWithLittleStackAtTheLimitOfDepth) {
  constexpr std::size_t kDepth = 1000;
  const std::string document = test::Repeated("<a x='1'>", kDepth) + test::Repeated("</a>", kDepth);
  test::OnSmallStack(
      [&] {
        const Element element(new CElement(u"unread"));
        element->FromXml(document.c_str());
        const Element clone = element->Clone();
        clone->SetNamespaceRestrictions(u"##any", u"");
        EXPECT_EQ(ToUtf8(Written(*clone)).size(), document.size() - std::string_view("></a>").size() + 2);
      },
      test::kBindingStack);
}

TEST(Wildcard, IsDestroyedWithoutRecursion) {
  test::OnSmallStack([] {
    Element outermost(new CElement(u"e"));
    for (int depth = 0; depth < 1'000'000; ++depth) {
      Element parent(new CElement(u"e"));
      parent->GetChildElements()->Add(outermost);
      outermost = parent;
    }
  });
  EXPECT_EQ(test::MonitorLines(u"-->"), u"");
}

TEST(Wildcard, HoldsAMillionChildren) {
  const std::string document = "<r>" + test::Repeated("<c>x</c>", 1'000'000) + "</r>";
  const Element element(new CElement(u"unread"));
  element->FromXml(document.c_str());
  EXPECT_EQ(element->GetChildElements()->GetCount(), 1'000'000);
  EXPECT_EQ(ToUtf8(Written(*element)), document);
}

}  // namespace
}  // namespace OvXmlLib16
