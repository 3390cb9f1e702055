#include "ovxmllib/document/XmlDocument.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ovxmllib/document/XmlAttribute.h"
#include "tests/support/Documents.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::Loading;
using test::MonitorLines;
using test::Outcome;
using test::TextOf;
using test::Utf16;

constexpr const char* kXsi = "xmlns:i='http://www.w3.org/2001/XMLSchema-instance'";

WString Read(const auto* text) {
  return Outcome([&](CXmlDocument& document) { document.LoadXml(text); });
}

void ExpectOutcomes(std::string_view table) {
  for (const test::VectorRow& row : test::ReadVectors("document/xml_document.vec", table)) {
    CSerializationContext context;
    context.SetStripCDATA(row["context"] != "sections");
    if (row["context"] == "no namespaces") context.SetSchemaType(SchemaType_NoNamespaces);
    EXPECT_EQ(Outcome(Loading(row["document"]), context), row.Wide("outcome")) << row.Place();
  }
}

TEST(XmlDocument, KeepsOneTextPerElementAsSpecified) {
  ExpectOutcomes("trees as specified");
  EXPECT_EQ(Read(test::kSample.data()), test::kSampleTree);
}

TEST(XmlDocument, KnowsTheLastUriOfEachAliasAsSpecified) {
  CXmlDocument document;
  EXPECT_EQ(document.GetDocumentElement(), nullptr);
  document.LoadXml("<a xmlns='d' xmlns:z='d' xmlns:m='w' xmlns:n='w'><b xmlns:p='u1'/><b xmlns:p='u2'/></a>");
  for (const auto& [alias, uri] : {std::pair(u"p", u"u2"), {u"", u"d"}, {nullptr, u"d"}, {u"q", u""}, {u"z", u"d"}}) {
    EXPECT_EQ(document.LookupNamespaceFromAlias(alias), uri);
  }
  for (const auto& [uri, alias] : {std::pair(u"d", u""), {u"w", u"m"}, {u"u1", u""}, {u"u2", u"p"}}) {
    EXPECT_EQ(document.LookupAliasFromNamespace(uri), alias);
  }
  EXPECT_THROW(document.LoadXml("<e xmlns:r='u'><f></e>"), COvException);
  document.LoadXml("<c/>");
  EXPECT_EQ(TextOf(*document.GetDocumentElement()), u"c");
  for (const WChar* alias : {u"p", u"r", u""}) EXPECT_EQ(document.LookupNamespaceFromAlias(alias), u"");
}

TEST(XmlDocument, NamesPlacesAndTellsAttributesAsSpecified) {
  CXmlDocument document;
  document.LoadXml(("<a xmlns='d' xmlns:p='u' x:no='' xmlns:x='d' " + std::string(kXsi) +
                    "><b i:nil='false' nil=''/>"
                    "<p:b i:type='' p:type='' xml:nil=''/><b xmlns='e'/><p:b><q:b xmlns:q='u' i:other=''/></p:b></a>")
                       .c_str());
  // The default namespace is the one declared last, e: elements in d go by their other alias.
  WString places;
  const auto list = [&places](const CXmlElement& element, const auto& self) -> void {
    places += element.GetXPath() + u"\n";
    for (const CXmlAttribute* a = element.GetFirstAttribute(); a != nullptr; a = CXmlElement::GetNextAttribute(*a)) {
      places += a->GetXPath() + (a->IsNilAttribute() ? u" nil" : u"") + (a->IsNamespaceAttribute() ? u" ns\n" : u"\n");
    }
    for (const CXmlElement* child = element.GetFirstElement(); child; child = child->GetNextSiblingElement()) {
      self(*child, self);
    }
  };
  list(*document.GetDocumentElement(), list);
  EXPECT_EQ(places,
            u"/x:a\n/x:a/x:@no\n/x:a/x:b\n/x:a/x:b/i:@nil nil\n/x:a/x:b/@nil\n/x:a/p:b[1]\n/x:a/p:b[1]/i:@type ns\n"
            u"/x:a/p:b[1]/p:@type\n/x:a/p:b[1]/@nil\n/x:a/b\n/x:a/p:b[2]\n/x:a/p:b[2]/p:b\n/x:a/p:b[2]/p:b/i:@other\n");
  const CXmlElement& b = *document.GetDocumentElement()->GetFirstElement();
  EXPECT_EQ(b.GetAttribute(u"nil", u"http://www.w3.org/2001/XMLSchema-instance"), u"false");
  EXPECT_EQ(&b.GetAttribute(u"none", u""), &b.GetAttribute(u"nil", u"none"));

  document.LoadXml("<a xmlns='u'><b/><b xmlns='v'/><c/></a>");
  EXPECT_EQ(document.GetDocumentElement()->GetFirstElement()->GetXPath(), u"/a/b[1]") << "no alias, no difference";
}

TEST(XmlDocument, ReadsEveryEncoding) {
  const auto declaring = [](const char* encoding) {
    const std::string declaration = "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>";
    return ToWide((*encoding == 0 ? "" : declaration) + "<a>" + test::Repeated("<b c='\xC3\xBC'>\xC3\xBF</b>", 40) +
                  "</a>");
  };
  std::string latin;
  for (const WChar unit : declaring("ISO-8859-1")) latin += static_cast<char>(unit);
  const WString plain = declaring(""), marked = u"\uFEFF" + plain, utf16 = declaring("UTF-16");
  const WString expected = Read(plain.c_str());
  EXPECT_EQ(expected.substr(0, 12), u"a(b[c=\u00FC]'\u00FF' ");
  for (const std::string& file :
       {ToUtf8(plain), ToUtf8(declaring("utf-8")), ToUtf8(marked), latin, Utf16(plain), Utf16(marked), Utf16(utf16),
        Utf16(u"\uFEFF" + utf16), Utf16(marked, /*bigEndian=*/true), Utf16(utf16, /*bigEndian=*/true)}) {
    EXPECT_EQ(Outcome(Loading(file)), expected) << file;
    EXPECT_EQ(Outcome(Loading(test::Packed(file, CompressionType_GZip))), expected) << file;
    EXPECT_EQ(Outcome(Loading(test::Packed(file, CompressionType_ZLib))), expected) << file;
  }
  for (const char* declared : {"UTF-8", "UTF-16", "ISO-8859-1"}) EXPECT_EQ(Read(declaring(declared).c_str()), expected);
}

TEST(XmlDocument, TellsWhatIsWrongAndWhere) {
  ExpectOutcomes("faults");
  for (const char* none : {"", static_cast<const char*>(nullptr)}) EXPECT_EQ(Read(none), u"XML String is empty! @0:0");
  for (const WChar* none : {u"", static_cast<const WChar*>(nullptr)}) EXPECT_EQ(Read(none), Read(""));
  EXPECT_EQ(Read(u"<a b='' b=''/>"), u"duplicate attribute at line 1 @1:9");
}

std::size_t DepthOf(const CXmlElement* element) {
  return element == nullptr ? 0 : 1 + DepthOf(element->GetParentElm());
}

// Looks at all that it drops, so that strings are made that have to go too.
template <std::size_t kDepth>
bool DropAt(CXmlElement* element) {
  return element->GetText().size() + element->GetAttributes().size() < 10 && DepthOf(element) == kDepth;
}

TEST(XmlDocumentCallback, DropsWhatTheApplicationIsDoneWith) {
  const std::string document = "<a>1<b><c>x<d/></c><c/>y</b><b><c k=''/>z</b>2</a>";
  const struct {
    CXmlDocument::ElementComplete callback;
    WStringView tree, elements, attributes;
  } cases[] = {
      {&DropAt<2>, u"a'12'", u"--> CXmlElement = 1/7", u"    CXmlAttribute = 0/1"},
      {&DropAt<3>, u"a'12'(b'y' b'z')", u"--> CXmlElement = 3/7", u"    CXmlAttribute = 0/1"},
      {&DropAt<4>, u"a'12'(b'y'(c'x' c) b'z'(c[k=]))", u"--> CXmlElement = 6/7", u"--> CXmlAttribute = 1/1"},
      {&DropAt<9>, u"a'12'(b'y'(c'x'(d) c) b'z'(c[k=]))", u"--> CXmlElement = 7/7", u"--> CXmlAttribute = 1/1"},
  };
  for (const auto& [callback, tree, elements, attributes] : cases) {
    CInstanceMonitor::Cleanup();
    {
      CXmlDocument read(callback);
      Loading(document)(read);
      EXPECT_EQ(MonitorLines(u" CXmlElement "), elements);
      EXPECT_EQ(MonitorLines(u" CXmlAttribute "), attributes);
      EXPECT_TRUE(TextOf(*read.GetDocumentElement()) == tree) << ToUtf8(elements);
    }
    EXPECT_EQ(MonitorLines(u"-->"), u"");
  }
}

WString Thrown(CXmlDocument::ElementComplete callback) {
  try {
    return Outcome([](CXmlDocument& document) { document.LoadXml("<a><b>text</b><c/></a>"); }, {}, callback);
  } catch (int number) {
    return ToWide(std::to_string(number));
  } catch (const std::runtime_error& error) {
    return ToWide(error.what());
  }
}

// The parser still reports the end of an empty element whose start has failed: no call then.
TEST(XmlDocumentCallback, LetsExceptionsThroughUnchanged) {
  EXPECT_EQ(Thrown([](CXmlElement* e) -> bool { throw static_cast<int>(e->GetText().size()); }), u"4");
  EXPECT_EQ(Thrown([](CXmlElement*) -> bool { throw std::runtime_error("mine"); }), u"mine");
  const WString state = Thrown([](CXmlElement*) -> bool { throw COvInvalidStateException(u"mine"); });
  EXPECT_TRUE(state.ends_with(u"COvInvalidStateExceptionE: mine @0:0")) << ToUtf8(state);
  EXPECT_EQ(MonitorLines(u"-->"), u"");
  CSerializationContext context;
  context.SetMaxAttributesPerElement(1);
  EXPECT_TRUE(Outcome(Loading("<a b='' c=''/>"), context, [](CXmlElement*) -> bool {
                throw 1;
              }).starts_with(u"An element has more than 1"));
}

}  // namespace
}  // namespace OvXmlLib16
