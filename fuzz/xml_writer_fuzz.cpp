// A little program of writer calls, whose output must read as what was written.
//
// Input: a byte of the encoding and the layout, a byte of the ways to write and to read, then the calls, each a byte
// and its arguments: names and namespaces are numbers in lists of valid ones, texts are a length and so many bytes.

#include <map>
#include <string>
#include <vector>

#include "fuzz/Document.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/ReadBack.h"
#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/foundation/FileTextStream.h"

namespace OvXmlLib16::fuzz {
namespace {

constexpr WStringView kNames[] = {u"a", u"b", u"c-d.e_f", u"\u00E4", u"_", u"a-name-longer-than-sixteen-units", u"AA"};
constexpr WStringView kNamespaces[] = {u"", u"urn:a", u"urn:b", u"&\"<>'", u"urn:\u00FC\U0001F600\n", kXsiNamespace};
constexpr WStringView kAliases[] = {u"p", u"AA", u"AB", u"\u00E4", u""};

// 35 of these and a half of a pair fill two of the pieces of 2,048 in which long texts are copied.
constexpr WStringView kRun =
    u"a run of text without any special character, so long that the pieces in which it is copied end in the middle of "
    u"it...";
static_assert(kRun.size() == 117);

// What a byte from 0x80 on stands for in a text.
constexpr WStringView kSpecials[] = {
    u"<![CDATA[", u"]]>",        u"\r",     u"\n",           u"\r\n",   u"&",      u"<",       u">",
    u"\"",        u"\U0001F600", u"\u00FC", u"\u20AC",       u"\xD83D", u"\xDE00", u"\xFFFE",  u"\xFFFF",
    u"\uFFFD",    u"\u007F",     u"]]",     u"<![CDATA[]]>", u"&amp;",  u"&#13;",  {u"\0", 1}, kRun};

template <std::size_t kSize>
WStringView TakeOneOf(Input& input, const WStringView (&list)[kSize]) {
  return list[input.TakeByte() % kSize];
}

WString TakeText(Input& input) {
  WString text;
  for (const unsigned char byte : input.Take(input.TakeByte() % 40)) {
    byte < 0x80 ? text += WChar{byte} : text += kSpecials[byte % std::size(kSpecials)];
  }
  return text;
}

// The position of the first unit that is no Char of XML 1.0 (section 2.2), nor part of one; the length when there is
// none.
std::size_t FindRefused(WStringView text) {
  std::size_t i = 0;
  while (i < text.size()) {
    const WChar c = text[i], next = i + 1 < text.size() ? text[i + 1] : u'\0';
    const bool isPair = c >= 0xD800 && c < 0xDC00 && next >= 0xDC00 && next < 0xE000;
    const bool isControl = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
    if (!isPair && (isControl || (c >= 0xD800 && c < 0xE000) || c >= 0xFFFE)) break;
    i += isPair ? 2 : 1;
  }
  return i;
}

WString TypeName(WStringView ns, WStringView name) { return u"{" + WString(ns) + u"}" + WString(name); }

struct Options {
  explicit Options(Input& input) {
    const unsigned layout = input.TakeByte(), ways = input.TakeByte();
    encoding = static_cast<XmlEncoding>(layout & 3);
    formatted = (layout & 4) != 0;
    eol = (layout & 8) != 0 ? EOLType_CRLF : EOLType_LF;
    header = (layout & 16) != 0;
    indent = (layout & 32) != 0 ? u"  " : u"\t";
    stripsSections = (ways & 1) == 0;
    leavesOpen = (ways & 2) != 0;
    toFile = (ways & 4) != 0 && encoding != XmlEncoding_None;
  }

  XmlEncoding encoding;
  bool formatted, header;
  EOLType eol;
  WStringView indent;
  bool stripsSections, leavesOpen, toFile;
};

// Runs a program on a writer, and does to a tree what its reader is to find.
class Program {
 public:
  Program(const Options& options, CTextStream& stream) : m_options(options), m_writer(&stream) {}

  // The document element; null when the document has none.
  const Tree& GetTree() const { return m_root; }

  // What a call of the program throws ends it.
  void Run(Input input) {
    m_writer.SetFormatted(m_options.formatted);
    m_writer.SetEOLType(m_options.eol);
    m_writer.SetIndentChars(m_options.indent);
    m_writer.Open();
    if (m_options.header) m_writer.WriteXmlHeader();
    while (!input.IsEmpty() && !(m_open.empty() && m_root != nullptr)) Step(input);
    if (m_options.leavesOpen && !m_open.empty()) {
      const auto failure = FailureOf([&] { m_writer.Close(); });
      Require(failure && failure->GetMessage() == u"An Element has not been closed.", "an open element is reported");
      m_root = nullptr;
      return;
    }
    while (!m_open.empty()) EndElement();
    m_writer.Close();
  }

 private:
  void Step(Input& input) {
    using Call = void (Program::*)(Input&);
    static constexpr Call kAhead[] = {&Program::StartElement, &Program::SetDefaultNamespace, &Program::AddNamespace,
                                      &Program::WriteComment, &Program::WriteInstruction};
    static constexpr Call kInside[] = {&Program::StartElement,   &Program::CallEndElement,   &Program::WriteText,
                                       &Program::WriteAttribute, &Program::WriteXsiType,     &Program::WriteXsiNil,
                                       &Program::WriteComment,   &Program::WriteChildAsLine, &Program::WriteSchema};
    const unsigned call = input.TakeByte();
    (this->*(m_open.empty() ? kAhead[call % std::size(kAhead)] : kInside[call % std::size(kInside)]))(input);
  }

  // A text that XML does not allow throws, and no other.
  template <class Call>
  void Checked(WStringView text, const Call& call) {
    const auto failure = FailureOf<COvInvalidValueException>(call);
    const std::size_t refused = FindRefused(text);
    Require(failure.has_value() == (refused < text.size()), "a text is refused when XML does not allow it, only then");
    if (!failure) return;
    const WString place = FormatString(u"at position %d", refused);
    Require(failure->GetMessage().find(place) != WString::npos, "a text that is refused is told where");
    throw *failure;
  }

  // Attributes behind the start tag throw and write nothing. False then, and for a name that the element has already.
  template <class Call>
  bool CanTakeAttribute(WStringView name, WStringView ns, const Call& call) {
    if (!m_inStartTag) {
      const auto failure = FailureOf(call);
      Require(failure && failure->GetMessage() == u"Attributes must be added before elements", "attributes come first");
      return false;
    }
    const auto& attributes = m_open.back()->attributes;
    return std::none_of(attributes.begin(), attributes.end(),
                        [&](const AnyObject::Attribute& each) { return each.name == name && each.ns == ns; });
  }

  void AddChild(WStringView name, WStringView ns) {
    const Tree child(new AnyObject);
    child->SetElementName(WString(name).c_str());
    // An element without a namespace cannot take back the default.
    child->ns = ns.empty() ? m_defaultNamespace : ns;
    (m_open.empty() ? m_root = child : m_open.back()->children.emplace_back(child));
    m_inStartTag = false;
  }

  void StartElement(Input& input) {
    const WStringView name = TakeOneOf(input, kNames), ns = TakeOneOf(input, kNamespaces);
    if (m_open.size() == 300) return;
    m_writer.StartElement(name, ns);
    AddChild(name, ns);
    m_open.push_back(m_open.empty() ? m_root : m_open.back()->children.back());
    m_inStartTag = true;
  }

  void EndElement() {
    m_writer.EndElement();
    m_open.pop_back();
    m_inStartTag = false;
  }
  void CallEndElement(Input&) { EndElement(); }

  void SetDefaultNamespace(Input& input) {
    m_writer.SetDefaultNamespace(m_defaultNamespace = TakeOneOf(input, kNamespaces));
  }

  // One alias for two namespaces would be the program's error, an alias for none another.
  void AddNamespace(Input& input) {
    const WStringView alias = TakeOneOf(input, kAliases), ns = TakeOneOf(input, kNamespaces);
    if (ns.empty()) return;
    for (const auto& [other, taken] : m_aliases) {
      if (other != ns && taken == alias && !alias.empty()) return;
    }
    m_aliases[ns] = alias;
    m_writer.AddNamespace(alias, ns);
  }

  // Comments do not end a start tag, and may not hold two hyphens.
  void WriteComment(Input& input) {
    const WString text = TakeText(input);
    const WString written = WithoutCr(text);
    if (m_inStartTag || written.find(u"--") != WString::npos || written.ends_with(u'-')) return;
    Checked(text, [&] { m_writer.WriteComment(text); });
    if (!m_open.empty()) m_open.back()->text += u'\n';
  }

  void WriteInstruction(Input&) { m_writer.WriteProcessingInstruction(u"<?pi data?>"); }

  void WriteText(Input& input) {
    const WString text = TakeText(input);
    Checked(text, [&] { m_writer.WriteText(text, ItemType_string); });
    m_open.back()->text += ReadText(text, m_options.stripsSections);
    if (!text.empty()) m_inStartTag = false;
  }

  void WriteAttribute(Input& input) {
    const WStringView name = TakeOneOf(input, kNames), ns = TakeOneOf(input, kNamespaces);
    const WString value = TakeText(input);
    const auto call = [&] { m_writer.WriteAttribute(name, ns, value, ItemType_string); };
    if (!CanTakeAttribute(name, ns, call)) return;
    Checked(value, call);
    m_open.back()->attributes.push_back({WString(name), WString(ns), ReadValue(value)});
  }

  void WriteXsiType(Input& input) {
    const WStringView name = TakeOneOf(input, kNames), ns = TakeOneOf(input, kNamespaces);
    const auto call = [&] { m_writer.WriteXsiType(ns, name, ItemType_string); };
    if (!CanTakeAttribute(u"type", kXsiNamespace, call)) return;
    call();
    const WString type = ns.empty() || ns == m_defaultNamespace ? WString(name) : TypeName(ns, name);
    m_open.back()->attributes.push_back({u"type", WString(kXsiNamespace), type});
  }

  void WriteXsiNil(Input&) {
    const auto call = [&] { m_writer.WriteXsiNil(); };
    if (!CanTakeAttribute(u"nil", kXsiNamespace, call)) return;
    call();
    m_open.back()->attributes.push_back({u"nil", WString(kXsiNamespace), u"true"});
  }

  void WriteChildAsLine(Input&) {
    m_writer.CloseStartTag();
    m_writer.WriteRawLine(u"<line/>");
    AddChild(u"line", {});
  }

  void WriteSchema(Input&) {
    if (!m_inStartTag || !CanTakeAttribute(u"schema", {}, [] {})) return;
    m_writer.WriteInlineSchema(u"schema='inline'");
    m_open.back()->attributes.push_back({u"schema", {}, u"inline"});
  }

  const Options& m_options;
  CXmlTextWriter m_writer;
  Tree m_root;
  std::vector<Tree> m_open;
  bool m_inStartTag = false;
  WStringView m_defaultNamespace;
  std::map<WStringView, WStringView> m_aliases;  // by namespace
};

WString WithoutWhiteSpace(WStringView text) {
  WString result(text);
  std::erase_if(result, [](WChar c) { return c == u' ' || c == u'\t' || c == u'\n'; });
  return result;
}

// The output of a program, read again.
class Reading {
 public:
  Reading(CTextStream& stream, const Options& options) : m_formatted(options.formatted) {
    m_context.SetStripCDATA(options.stripsSections);
    if (options.encoding == XmlEncoding_None) {
      m_document.LoadXml(stream.GetString());
    } else {
      const CBinaryData bytes = stream.GetBytes();
      m_document.LoadXmlStream(bytes.GetData(), bytes.GetLength());
    }
    m_output = stream.GetText();
    m_tree->FromXmlElement(m_document.GetDocumentElement(), m_context);
  }

  bool Matches(const AnyObject& expected) const { return Matches(expected, *m_tree); }

 private:
  // Formatted output has white space around child elements.
  bool Matches(const AnyObject& expected, const AnyObject& read) const {
    const bool isSpaced = m_formatted && !expected.children.empty();
    const auto textOf = [&](const AnyObject& object) {
      return isSpaced ? WithoutWhiteSpace(object.text) : object.text;
    };
    return expected.GetElementName() == read.GetElementName() && expected.ns == read.ns &&
           textOf(expected) == textOf(read) &&
           std::equal(expected.attributes.begin(), expected.attributes.end(), read.attributes.begin(),
                      read.attributes.end(), [this](const auto& a, const auto& b) { return MatchesAttribute(a, b); }) &&
           std::equal(expected.children.begin(), expected.children.end(), read.children.begin(), read.children.end(),
                      [this](const AnyObject* a, const AnyObject* b) { return Matches(*a, *b); });
  }

  bool MatchesAttribute(const AnyObject::Attribute& expected, const AnyObject::Attribute& read) const {
    if (expected.name != read.name || expected.ns != read.ns) return false;
    const bool isType = expected.name == u"type" && expected.ns == kXsiNamespace;
    return isType ? MatchesType(expected.value, read.value) : expected.value == read.value;
  }

  // The document knows one namespace of each prefix, so that of one that is declared twice is not looked at.
  bool MatchesType(const WString& expected, const WString& read) const {
    const std::size_t colon = read.find(u':');
    if (colon == WString::npos) return expected == read;
    const WString prefix = read.substr(0, colon), declaration = u" xmlns:" + prefix + u"=\"";
    const std::size_t declared = m_output.find(declaration);
    const bool isUnique = declared != WString::npos && m_output.find(declaration, declared + 1) == WString::npos;
    const WString ns = isUnique ? m_document.LookupNamespaceFromAlias(prefix.c_str()) : WString();
    if (isUnique) return expected == TypeName(ns, read.substr(colon + 1));
    return declared != WString::npos && expected.ends_with(u"}" + read.substr(colon + 1));
  }

  const bool m_formatted;
  CSerializationContext m_context;
  CXmlDocument m_document{m_context};
  WString m_output;
  Tree m_tree{new AnyObject};
};

// The same program to a file gives the same bytes behind the byte order mark, or the same failure.
void CheckFile(Input calls, const Options& options, const Tree& expected, CTextStream& inMemory,
               const std::optional<COvInvalidValueException>& failure) {
  static const MemoryFile file;
  CFileTextStream stream(file.GetPath(), options.encoding);
  Program program(options, stream);
  const auto fileFailure = FailureOf<COvInvalidValueException>([&] { program.Run(calls); });
  Require(failure.has_value() == fileFailure.has_value(), "a file fails as memory does");
  if (failure) return Require(failure->GetMessage() == fileFailure->GetMessage(), "a file fails with the same message");
  if (expected == nullptr) return;
  const CBinaryData bytes = inMemory.GetBytes();
  std::string content(CharactersOf(BytesOf(bytes)));
  if (options.encoding != XmlEncoding_UTF8) content.insert(0, "\xFF\xFE");
  Require(file.Read() == content, "a file has the bytes that memory has");
}

void Run(Input input) {
  const Options options(input);
  CTextStream stream(options.encoding);
  Program program(options, stream);
  const auto failure = FailureOf<COvInvalidValueException>([&] { program.Run(input); });
  const Tree expected = failure ? Tree() : program.GetTree();
  if (expected != nullptr) {
    Require(Reading(stream, options).Matches(*expected), "what was written reads as it was meant");
  }
  if (options.toFile) CheckFile(input, options, expected, stream, failure);
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::fuzz::Run({data, size});
  return 0;
}
