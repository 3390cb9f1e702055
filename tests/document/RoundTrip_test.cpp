#include <gtest/gtest.h>

#include <map>

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlDocument.h"
#include "ovxmllib/document/XmlWriter.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Documents.h"
#include "tests/support/SmallStack.h"

namespace OvXmlLib16 {
namespace {

using test::AnyObject;
using test::Repeated;

// What generated classes do beyond AnyObject for a document element: the declarations, xsi:type and xsi:nil; and, as
// they do too, it takes no text between child elements.
class RootObject : public AnyObject {
 public:
  std::map<WString, WString> aliases;  // by namespace

 protected:
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ownNs, const CSerializationContext& context,
                 bool optionalChoice) const override {
    for (const WString& whole : context.GetProcessingInstructions()) writer->WriteProcessingInstruction(whole);
    for (const auto& [uri, alias] : aliases) writer->AddNamespace(alias, uri);
    writer->SetDefaultNamespace(context.GetDefaultNamespaceURI());
    AnyObject::ToXml_Int(writer, isRoot, ownNs, context, optionalChoice);
  }

  void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext&) const override {
    for (const Attribute& a : attributes) {
      if (a.ns != kXsiNamespace) {
        writer->WriteAttribute(a.name, a.ns, a.value, ItemType_string);
      } else if (a.name == u"nil") {
        writer->WriteXsiNil();
      } else {
        writer->WriteXsiType(m_typeNamespace, a.value.substr(a.value.find(u':') + 1), ItemType_string);
      }
    }
  }

  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool optionalChoice) override {
    AnyObject::FromXml_Int(parent, child, context, optionalChoice);
    DropTextBetweenElements(*this);
    const WString type = parent->GetAttribute(u"type", kXsiNamespace);
    const std::size_t colon = type.find(u':');
    const WString alias = colon == WString::npos ? u"" : type.substr(0, colon);
    m_typeNamespace = parent->GetDocument()->LookupNamespaceFromAlias(alias.c_str());
    return nullptr;
  }

 private:
  static void DropTextBetweenElements(AnyObject& object) {
    if (!object.children.empty()) object.text.clear();
    for (AnyObject* child : object.children) DropTextBetweenElements(*child);
  }

  WString m_typeNamespace;
};

TEST(RoundTrip, WritesDocumentsAsTheyWereRead) {
  const struct {
    WString document;
    WString defaultNamespace = u"";
    std::map<WString, WString> aliases = {};
    std::vector<WString> instructions = {};
  } cases[] = {
      {u"<a xmlns=\"u\" xmlns:p=\"v\">\n\t<b>x</b>\n\t<p:c p:d=\"1\"/>\n</a>\n", u"u", {{u"v", u"p"}}},
      {u"<a/>\n"},
      {u"<a>x</a>\n"},
      {u"<r>\n\t<AA:a xmlns:AA=\"u\"/>\n\t<AA:b xmlns:AA=\"u\">\n\t\t<AA:c/>\n\t</AA:b>\n</r>\n"},
      {u"<AB:a xmlns:AB=\"u\" xmlns:AA=\"v\"/>\n", u"", {{u"v", u"AA"}}},
      {u"<a xmlns=\"u\" xmlns:AA=\"u\" AA:b=\"1\"/>\n", u"u"},
      {u"<a xml:lang=\"de\"/>\n"},
      {u"<a xmlns:AA=\"t\"  xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:T\"/>\n"},
      {u"<a xmlns=\"t\" xmlns:AA=\"http://www.w3.org/2001/XMLSchema-instance\" AA:type=\"T\" AA:nil=\"true\"/>\n",
       u"t"},
      {u"<a b=\"a&quot;b&#xA;c'\">a\"b\tc\nd</a>\n"},
      {u"<a><![CDATA[a & <b>]]> &amp; &lt;</a>\n"},
      {u"<?p q?>\n\n<?r?>\n\n<a/>\n", u"", {}, {u"<?p q?>", u"<?r?>"}},
  };
  for (const auto& [document, defaultNamespace, aliases, instructions] : cases) {
    CSerializationContext context;
    context.SetStripCDATA(false);
    context.SetDefaultNamespaceURI(defaultNamespace.c_str());
    context.GetProcessingInstructions() = instructions;
    RootObject object;
    object.aliases = aliases;
    object.FromXml(document.c_str(), context);
    EXPECT_EQ(object.ToXml(/*header=*/false, /*formatted=*/true, EOLType_LF, context), document);
    object.FromXml(object.ToXml(true, false, EOLType_CRLF, context).c_str(), context);
    EXPECT_EQ(object.ToXml(/*header=*/false, /*formatted=*/true, EOLType_LF, context), document);
  }
}

std::string TextOf(const CBinaryData& data) { return {data.GetData(), data.GetData() + data.GetLength()}; }

TEST(RoundTrip, ReadsWellWithDefaultArguments) {
  CSmartPtr<AnyObject> object(new AnyObject), other(new AnyObject);
  object->FromXml("<a b=''><c>\xC3\xBC</c></a>");
  EXPECT_EQ(object->ToXml(), u"<?xml version=\"1.0\"?>\n<a b=\"\">\n\t<c>\u00FC</c>\n</a>\n");
  EXPECT_EQ(TextOf(object->ToXmlStream()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a b=\"\">\n\t<c>\xC3\xBC</c>\n</a>\n");
  CSerializationContext context;
  context.SetIndentChars(u"  ");
  EXPECT_EQ(object->ToXml(/*header=*/false, /*formatted=*/true, EOLType_CRLF, context),
            u"<a b=\"\">\r\n  <c>\u00FC</c>\r\n</a>\r\n");

  CXmlDocument document;
  document.LoadXml("<a b=''><c>\xC3\xBC</c></a>");
  other->FromXmlElement(document.GetDocumentElement());
  EXPECT_EQ(*other, *object);
  other->FromXml(object->ToXml(/*header=*/true, /*formatted=*/false).c_str());
  EXPECT_EQ(*other, *object);
}

TEST(RoundTrip, WritesDeepDocuments) {
  WString expected, ends;
  for (std::size_t depth = 0; depth < 999; ++depth) {
    const WString indent(depth, u'\t');
    expected += indent + u"<a>\n";
    ends = indent + u"</a>\n" + ends;
  }
  expected += WString(999, u'\t') + u"<a/>\n" + ends;
  WString written;
  const auto roundTrip = [&] {
    CSmartPtr<AnyObject> object(new AnyObject);
    object->FromXml((Repeated("<a>", 1000) + Repeated("</a>", 1000)).c_str());
    written = object->ToXml(/*header=*/false);
  };
  test::OnSmallStack(roundTrip, test::kBindingStack);
  EXPECT_TRUE(written == expected) << ToUtf8(written);
}

TEST(RoundTrip, WritesManySiblings) {
  std::string document = "<r>";
  for (int i = 0; i < 100'000; ++i) document += "<AA:a xmlns:AA=\"u\" b=\"" + std::to_string(i) + "\">x</AA:a>";
  document += "</r>";
  AnyObject object;
  object.FromXml(document.c_str());
  EXPECT_TRUE(ToUtf8(object.ToXml(/*header=*/false, /*formatted=*/false)) == document);
  EXPECT_TRUE(TextOf(object.ToXmlStream(/*header=*/false, /*formatted=*/false)) == document);
}

}  // namespace
}  // namespace OvXmlLib16
