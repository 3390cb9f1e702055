#include "tests/support/Documents.h"

#include <typeinfo>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/document/XmlAttribute.h"
#include "ovxmllib/foundation/OvZip.h"
#include "tests/support/Bytes.h"

namespace OvXmlLib16::test {

const WStringView kSample =
    u"<?xml version=\"1.0\"?>\r\n"
    u"<!DOCTYPE s:r [<!ENTITY e \"v<k/>w\"><!ATTLIST s:i d CDATA 'default'>]>\n"
    u"<?pi data?><!-- \u00FC -->\n"
    u"<s:r xmlns:s=\"urn:s\" xmlns=\"urn:d\"><s:i s:n=\"&lt;&#x20AC;\U0001F600\">\u00FC\u20AC\U0001F600</s:i>\r\n"
    u"<p xmlns:x='http://www.w3.org/2001/XMLSchema-instance' x:nil=\"true\"/>&e;"
    u"<n xmlns=''>1<!-- - -->2<![CDATA[<]>&]]]>3&amp;&#13;\r</n></s:r>";
const WStringView kSampleTree =
    u"{urn:s}r'\nvw'({urn:s}i[{urn:s}n=<\u20AC\U0001F600][d=default]'\u00FC\u20AC\U0001F600' "
    u"{urn:d}p[{http://www.w3.org/2001/XMLSchema-instance}nil=true] {urn:d}k n'12<]>&]3&\n')";

std::string Repeated(std::string_view text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  while (times-- != 0) result += text;
  return result;
}

std::string Utf16(WStringView text, bool bigEndian) {
  std::string result;
  for (const WChar unit : text) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
    (result += bigEndian ? high : low) += bigEndian ? low : high;
  }
  return result;
}

std::string Packed(const std::string& bytes, CompressionType type) {
  return TextOf(Compress(Bytes(bytes), bytes.size(), type));
}

namespace {

WString NameOf(const auto& node) {
  const WString& ns = node.GetNamespaceURI();
  return ns.empty() ? node.GetLocalName() : u"{" + ns + u"}" + node.GetLocalName();
}

}  // namespace

WString TextOf(const CXmlElement& element) {
  WString result = NameOf(element);
  for (const CXmlAttribute* a : element.GetAttributes()) result += u"[" + NameOf(*a) + u"=" + a->GetValue() + u"]";
  if (!element.GetText().empty()) result += u"'" + element.GetText() + u"'";
  WStringView separator = u"(";
  for (const CXmlElement* child = element.GetFirstElement(); child != nullptr; child = child->GetNextSiblingElement()) {
    (result += separator) += TextOf(*child);
    separator = u" ";
  }
  return element.GetFirstElement() == nullptr ? result : result + u")";
}

WString TextOf(const COvException& exception) {
  const WString name = typeid(exception) == typeid(COvException) ? u"" : ToWide(typeid(exception).name()) + u": ";
  return FormatString(u"%s%s @%d:%d", name, exception.GetMessage(), exception.GetLine(), exception.GetColumn());
}

WString MonitorLines(WStringView part) {
  WString result;
  const WString report = CInstanceMonitor::DumpState() + u'\n';
  for (std::size_t start = 0, end; (end = report.find(u'\n', start)) != WString::npos; start = end + 1) {
    const WString line = report.substr(start, end - start);
    if (line.find(part) != WString::npos) result += line;
  }
  return result;
}

}  // namespace OvXmlLib16::test
