// Documents for tests: what is read, in which bytes it comes, and what has become of it.
#pragma once

#include <string>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/XmlDocument.h"

namespace OvXmlLib16::test {

/// A document with something of everything, which ends with its last tag, and TextOf its tree.
extern const WStringView kSample, kSampleTree;

std::string Repeated(std::string_view text, std::size_t times);
/// The code units as bytes, without a byte order mark.
std::string Utf16(WStringView text, bool bigEndian = false);
/// The bytes in a wrapper; they must shrink.
std::string Packed(const std::string& bytes, CompressionType type);

/// All that a tree holds: {namespace}name[attribute=value]'text'(child child).
WString TextOf(const CXmlElement& element);
/// "message @line:column", and the class where it is not COvException itself.
WString TextOf(const COvException& exception);
/// The lines of the instance monitor's report that hold `part`: "-->" stands on those with instances left.
WString MonitorLines(WStringView part);

inline auto Loading(const std::string& bytes) {
  return [&](CXmlDocument& document) {
    document.LoadXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  };
}

/// TextOf the tree that `load` makes, or of the COvException that it throws.
template <class Load>
WString Outcome(const Load& load, const CSerializationContext& context = {},
                CXmlDocument::ElementComplete callback = nullptr) {
  CXmlDocument document(callback, context);
  try {
    load(document);
  } catch (const COvException& exception) {
    return TextOf(exception);
  }
  return TextOf(*document.GetDocumentElement());
}

}  // namespace OvXmlLib16::test
