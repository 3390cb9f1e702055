#include "ovxmllib/json/JsonReaderToXmlHandler.h"

#include <algorithm>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

// What kind of thing the writer was asked for, by its message.
constexpr auto kNameFailure = u"Failed to convert name '%s' to Element name in XML.";
constexpr auto kAttributeFailure = u"Failed to convert value '%s' to Attribute string value in XML.";
constexpr auto kTextFailure = u"Failed to convert value '%s' to Element string value in XML.";

COvInvalidStateException Failure(WStringView message, WStringView text, const COvException& inner) {
  const FormatArgument arguments[] = {text};
  return COvInvalidStateException(FormatArguments(message, arguments), inner);
}

// Runs `write`, and tells which text it failed for.
template <class Write>
void Converting(WStringView message, WStringView text, const Write& write) {
  try {
    write();
  } catch (const COvException& exception) {
    throw Failure(message, text, exception);
  }
}

bool IsMarkup(WChar c) noexcept { return c <= u' ' || WStringView(u"\"'<>&/=").find(c) != WStringView::npos; }

// Decided: what would end the name in the XML text, or make it something else than a name, is refused here, see
// docs/decisions.md. Other names that are none the parser of that text refuses.
void CheckName(WStringView name) {
  const std::size_t sound = unicode::FindUnwritable(name);
  if (sound != name.size()) unicode::ThrowUnwritable(name, sound);
  const bool isInstruction = name.front() == u'!' || name.front() == u'?';
  if (!isInstruction && std::none_of(name.begin(), name.end(), IsMarkup)) return;
  throw COvInvalidValueException(FormatString(u"'%s' is no name of an element or attribute.", name));
}

}  // namespace

void JsonXmlOutput::StartDocument() {
  m_depth = m_indentation = 0;
  m_pWriter->WriteXmlHeader();
}

void JsonXmlOutput::StartElement(WStringView name) {
  CheckLimits();
  Converting(kNameFailure, name, [&] { m_pWriter->StartElement(name, {}); });
  ++m_depth;
}

// An array without items leaves its element open, so a few bytes may open one; each line is indented by their number.
void JsonXmlOutput::CheckLimits() {
  if (m_limits.elementDepth != 0 && m_depth >= m_limits.elementDepth) {
    DocumentTree::ThrowTooDeep(m_limits.elementDepth);
  }
  m_indentation += m_depth;
  if (m_limits.indentationUnits == 0 || m_indentation <= m_limits.indentationUnits) return;
  throw COvException(
      u"The elements of the JSON text are nested so deeply that their indentation is a hundred times "
      u"as long as the text.");
}

void JsonXmlOutput::WriteAttribute(WStringView name, WStringView value) {
  Converting(kAttributeFailure, value, [&] { m_pWriter->WriteAttribute(name, {}, value, ItemType_string); });
}

void JsonXmlOutput::WriteText(WStringView value) {
  Converting(kTextFailure, value, [&] { m_pWriter->WriteText(value, ItemType_string); });
}

void JsonXmlOutput::EndElement() {
  --m_depth;
  m_pWriter->EndElement();
}

void JsonXmlOutput::FailEmptyName() const {
  throw COvValidationException(u"JSON item has an empty Name.", m_pErrorPath->GetErrorPath());
}

void JsonXmlOutput::FailNamelessArray() const {
  throw COvValidationException(u"JSON Array has no Name.", m_pErrorPath->GetErrorPath());
}

void JsonXmlOutput::FailAttributeArray(WStringView name) const {
  throw COvValidationException(
      FormatString(u"The JSON Array '@%s' stands for an attribute, which has one value.", name),
      m_pErrorPath->GetErrorPath());
}

void JsonXmlOutput::FailOutside(WStringView value, bool isAttribute) const {
  throw Failure(isAttribute ? kAttributeFailure : kTextFailure, value,
                COvException(u"It stands outside of all elements; CJsonContext::SetRootElementName names one."));
}

void CJsonReaderToXmlHandler::Name(WStringView name) {
  if (!name.empty()) Converting(kNameFailure, name, [&] { CheckName(name); });
  m_elements.Name(name);
}

}  // namespace OvXmlLib16
