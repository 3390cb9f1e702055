#include "ovxmllib/document/XmlDocument.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ovxmllib/document/XmlAttribute.h"
#include "tests/support/Documents.h"

namespace OvXmlLib16 {
namespace {

using test::Loading;
using test::MonitorLines;
using test::Outcome;
using test::TextOf;
using test::Utf16;

constexpr const char* kXsi = "xmlns:i='http://www.w3.org/2001/XMLSchema-instance'";

WString Read(const auto* text, const CSerializationContext& context = {}) {
  return Outcome([&](CXmlDocument& document) { document.LoadXml(text); }, context);
}

TEST(XmlDocument, KeepsOneTextPerElementAsSpecified) {
  CSerializationContext keepingSections, withoutNamespaces;
  keepingSections.SetStripCDATA(false);
  withoutNamespaces.SetSchemaType(SchemaType_NoNamespaces);
  const struct {
    const char* document;
    WStringView tree;
    const CSerializationContext& context = CSerializationContext::GetDefaultContext();
  } cases[] = {
      {"<a>x<b/>y</a>", u"a'xy'(b)"},
      {"<a>  <b/>  </a>", u"a'    '(b)"},
      {"<a>1<b>2</b>3<c><d>4</d>5</c>6</a>", u"a'136'(b'2' c'5'(d'4'))"},
      {"<a b='1&#xD;2&#13;'>\r\nx\ry&#xD;z&#13;</a>", u"a[b=1\r2\r]'\nx\nyz'"},
      {"<a>1<![CDATA[2]]>3</a>", u"a'123'"},
      {"<a>1<![CDATA[2\r\n]]>3</a>", u"a'1<![CDATA[2\n]]>3'", keepingSections},
      {"<a>1<!--x-->2<?pi?>3</a>", u"a'123'"},
      {"<p:a xmlns:p='u' p:b='1' b='2'><c xmlns='v' d='3'/></p:a>", u"{u}a[{u}b=1][b=2]({v}c[d=3])"},
      {"<p:a xmlns:p='u' q:b='1'/>", u"p:a[xmlns:p=u][q:b=1]", withoutNamespaces},
      {"<!DOCTYPE a SYSTEM 'x'[<!ENTITY e '<b/>y'><!ATTLIST a d CDATA 'z'>]><a>&e;</a>", u"a[d=z]'y'(b)"},
  };
  for (const auto& [document, tree, context] : cases) EXPECT_EQ(Read(document, context), tree) << document;
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
  const std::pair<std::string, WStringView> cases[] = {
      {"", u"XML Stream is empty! @0:0"},
      {" ", u"no element found at line 1 @1:2"},
      {"<a>\r\n <b>\n</a>", u"mismatched tag at line 3 @3:3"},
      {"\xEF\xBB\xBF<a b='' b=''/>", u"duplicate attribute at line 1 @1:9"},
      {"\xEF\xBB\xBF\n<p:b/>", u"unbound prefix at line 2 @2:1"},
      {Utf16(u"\uFEFF<a b='' b=''/>"), u"duplicate attribute at line 1 @1:9"},
      {"<a>\n<p:b/></a>", u"unbound prefix at line 2 @2:1"},
      {"<a xmlns='u|v'/>", u"syntax error at line 1 @1:1"},
      {"<a>\xC3\xBC\xF0\x9F\x98\x80\xFF</a>", u"not well-formed (invalid token) at line 1 @1:6"},
      {std::string("<a>\0</a>", 8), u"not well-formed (invalid token) at line 1 @1:4"},
      {"<?xml version='1.0' encoding='no'?><a/>", u"unknown encoding at line 1 @1:31"},
      {"\x80\x81\x82\x83", u"not well-formed (invalid token) at line 1 @1:1"},
      {"\x1F\x8B no gzip", u"not well-formed (invalid token) at line 1 @1:1"},
      {Utf16(WString(u"<a>\xD800x</a>")), u"not well-formed (invalid token) at line 1 @1:4"},
      {Utf16(u"<a/>") + "x", u"unclosed token at line 1 @1:5"},
      {"<a>\n&e;</a>", u"undefined entity at line 2 @2:1"},
      {"<!DOCTYPE a SYSTEM 'x'><a>\n&e;</a>", u"undefined entity at line 2 @2:1"},
      {"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]>\n<a>&e;</a>", u"recursive entity reference at line 2 @2:4"},
  };
  for (const auto& [bytes, outcome] : cases) EXPECT_EQ(Outcome(Loading(bytes)), outcome) << bytes;
  for (const char* none : {"", static_cast<const char*>(nullptr)}) EXPECT_EQ(Read(none), u"XML String is empty! @0:0");
  for (const WChar* none : {u"", static_cast<const WChar*>(nullptr)}) EXPECT_EQ(Read(none), Read(""));
  EXPECT_EQ(Read(u"<a b='' b=''/>"), u"duplicate attribute at line 1 @1:9");
}

// Ten thousand children of different sizes, so that what is dropped leaves room to those who come; and the tree of
// every second one.
std::pair<std::string, WString> ManyChildren() {
  std::string document = "<r>", tree = "r'" + std::string(10'000, ',') + "'";
  for (std::size_t i = 0; i < 10'000; ++i) {
    const std::string number = std::to_string(i), text(i % 97, 'x');
    document += "<c n='" + number + "'><d>" + text + "<e/>" + number + "</d></c>,";
    if (i % 2 != 0) tree += (i == 1 ? "(c[n=" : " c[n=") + number + "](d'" + text + number + "'(e))";
  }
  return {document + "</r>", ToWide(tree + ")")};
}

std::size_t DepthOf(const CXmlElement* element) {
  return element == nullptr ? 0 : 1 + DepthOf(element->GetParentElm());
}

bool DropAll(CXmlElement* element) {
  std::size_t made = element->GetText().size();  // strings that go with the element
  for (const CXmlAttribute* a : element->GetAttributes()) made += a->GetValue().size();
  EXPECT_TRUE(made < 200 || element->GetParentElm() == nullptr);
  return DepthOf(element) == 1 || element->GetParentElm()->GetFirstElement() == element;
}

bool DropEverySecondChild(CXmlElement* element) {
  static std::size_t children = 0;
  return DepthOf(element) == 2 && ++children % 2 == 1;
}

TEST(XmlDocumentCallback, DropsWhatTheApplicationIsDoneWith) {
  const auto [large, everySecond] = ManyChildren();
  const std::string small = "<a>1<b><c>x<d/></c><c/>y</b><b><c k=''/></b>2</a>";
  const struct {
    const std::string& document;
    CXmlDocument::ElementComplete callback;
    WString tree;
    WStringView elements, attributes;
  } cases[] = {
      {large, &DropAll, everySecond.substr(0, 10'003), u"--> CXmlElement = 1/30001", u"    CXmlAttribute = 0/10000"},
      {large, &DropEverySecondChild, everySecond, u"--> CXmlElement = 15001/30001", u"--> CXmlAttribute = 5000/10000"},
      {small, [](CXmlElement* e) { return DepthOf(e) == 3; }, u"a'12'(b'y' b)", u"--> CXmlElement = 3/7",
       u"    CXmlAttribute = 0/1"},
      {small, [](CXmlElement*) { return false; }, u"a'12'(b'y'(c'x'(d) c) b(c[k=]))", u"--> CXmlElement = 7/7",
       u"--> CXmlAttribute = 1/1"},
  };
  for (const auto& [document, callback, tree, elements, attributes] : cases) {
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

TEST(XmlDocumentCallback, LetsExceptionsThroughUnchanged) {
  EXPECT_EQ(Thrown([](CXmlElement* e) -> bool { throw static_cast<int>(e->GetText().size()); }), u"4");
  EXPECT_EQ(Thrown([](CXmlElement*) -> bool { throw std::runtime_error("mine"); }), u"mine");
  const WString state = Thrown([](CXmlElement*) -> bool { throw COvInvalidStateException(u"mine"); });
  EXPECT_TRUE(state.ends_with(u"COvInvalidStateExceptionE: mine @0:0")) << ToUtf8(state);
  EXPECT_EQ(MonitorLines(u"-->"), u"");
}

// The parser still reports the end of an empty element whose start has failed.
TEST(XmlDocumentCallback, IsNotCalledAfterAFailure) {
  CSerializationContext context;
  context.SetMaxAttributesPerElement(1);
  const auto load = [](CXmlDocument& document) { document.LoadXml("<a b='' c=''/>"); };
  const auto callback = [](CXmlElement*) -> bool { throw 1; };
  EXPECT_TRUE(Outcome(load, context, callback).starts_with(u"An element has more than 1 attributes."));
}

}  // namespace
}  // namespace OvXmlLib16
