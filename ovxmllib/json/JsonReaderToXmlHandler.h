// Writes the events of a JSON text as XML.
#pragma once

#include <cstddef>

#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/json/JsonReaderHandler.h"
#include "ovxmllib/json/JsonToElements.h"

namespace OvXmlLib16 {

/// How much XML a JSON text may become; 0 is no limit.
struct JsonXmlLimits {
  std::size_t elementDepth = 0;      ///< how many elements may be open
  std::size_t indentationUnits = 0;  ///< how many tabs may be written ahead of elements
};

/// Writes elements as JsonToElements calls for them. Throws
/// - COvValidationException with the path for an empty name, an array without a name and one for an attribute;
/// - COvInvalidStateException "Failed to convert ..." when the writer refuses a name, an attribute or a text, with the
///   writer's exception as inner one, for a name that would be markup, and for a value or attribute outside of all
///   elements;
/// - COvException beyond the limits.
class JsonXmlOutput {
 public:
  using StoredName = WString;

  /// Neither pointer is owned.
  JsonXmlOutput(CXmlTextWriter* writer, const IErrorPathProvider* errorPath, const JsonXmlLimits& limits)
      : m_pWriter(writer), m_pErrorPath(errorPath), m_limits(limits) {}

  void StartDocument();
  void StartElement(WStringView name);
  void WriteAttribute(WStringView name, WStringView value);
  void WriteText(WStringView value);
  void EndElement();

  [[noreturn]] void FailEmptyName() const;
  [[noreturn]] void FailNamelessArray() const;
  [[noreturn]] void FailAttributeArray(WStringView name) const;
  [[noreturn]] void FailOutside(WStringView value, bool isAttribute) const;

 private:
  void CheckLimits();

  CXmlTextWriter* m_pWriter;
  const IErrorPathProvider* m_pErrorPath;
  const JsonXmlLimits m_limits;
  std::size_t m_depth = 0;  // elements that are open
  std::size_t m_indentation = 0;
};

/// The handler that makes XML text of JSON text. It knows no namespaces: prefixes and declarations are names to it.
class CJsonReaderToXmlHandler final : public IJsonReaderHandler {
 public:
  /// Neither pointer is owned.
  CJsonReaderToXmlHandler(CXmlTextWriter* writer, JsonRoundTrip mode, const IErrorPathProvider* errorPath,
                          const JsonXmlLimits& limits = {})
      : m_output(writer, errorPath, limits), m_elements(m_output, mode) {}

  void StartDocument() override { m_elements.StartDocument(); }
  void EndDocument() override { m_elements.EndDocument(); }
  void Name(WStringView name) override;
  void String(WStringView value) override { m_elements.String(value); }
  void Number(WStringView value) override { m_elements.Number(value); }
  void StartObject() override { m_elements.StartObject(); }
  void EndObject() override { m_elements.EndObject(); }
  void StartArray() override { m_elements.StartArray(); }
  void EndArray() override { m_elements.EndArray(); }
  void Bool(bool value) override { m_elements.Bool(value); }
  void Null() override { m_elements.Null(); }

 private:
  JsonXmlOutput m_output;
  JsonToElements<WChar, JsonXmlOutput> m_elements;
};

}  // namespace OvXmlLib16
