// A naive reader of documents on the parser alone: what the library's tree is compared with.
#pragma once

#include <expat.h>

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Document.h"
#include "fuzz/ReadBack.h"
#include "ovxmllib/binding/FormatString.h"

namespace OvXmlLib16::fuzz {

/// Reads a document that is not compressed, without limits. Places do not count a byte order mark.
class ExpatTree {
 public:
  static Outcome Read(Bytes bytes, const CSerializationContext& context) { return ExpatTree(context).Parse(bytes); }

 private:
  explicit ExpatTree(const CSerializationContext& context)
      : m_parser(context.GetSchemaType() == SchemaType_NoNamespaces ? XML_ParserCreate(nullptr)
                                                                    : XML_ParserCreateNS(nullptr, '|')) {
    XML_SetUserData(m_parser, this);
    XML_SetElementHandler(m_parser, &OnStart, &OnEnd);
    XML_SetCharacterDataHandler(m_parser, &OnText);
    XML_SetExternalEntityRefHandler(m_parser, &OnExternalEntity);
    XML_SetSkippedEntityHandler(m_parser, &OnSkippedEntity);
    if (!context.GetStripCDATA()) XML_SetCdataSectionHandler(m_parser, &OnStartSection, &OnEndSection);
  }
  ExpatTree(const ExpatTree&) = delete;
  ExpatTree& operator=(const ExpatTree&) = delete;
  ~ExpatTree() { XML_ParserFree(m_parser); }

  Outcome Parse(Bytes bytes) {
    const std::string_view text = CharactersOf(bytes);
    m_hasMark = text.starts_with("\xEF\xBB\xBF") || text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
    const bool succeeded = XML_Parse(m_parser, text.data(), static_cast<int>(text.size()), XML_TRUE) == XML_STATUS_OK;
    if (!succeeded && m_failure.message.empty()) m_failure = Failure(XML_GetErrorCode(m_parser));
    return succeeded ? Outcome{m_root, {}, {}} : m_failure;
  }

  Outcome Failure(XML_Error error) const {
    const std::uint64_t line = XML_GetCurrentLineNumber(m_parser);
    const std::uint64_t before = XML_GetCurrentColumnNumber(m_parser);
    const bool countsMark = m_hasMark && line == 1 && before != 0;
    return {{}, FormatString(u"%s at line %d", XML_ErrorString(error), line), {}, line, before + (countsMark ? 0 : 1)};
  }

  static ExpatTree& Self(void* userData) { return *static_cast<ExpatTree*>(userData); }

  static AnyObject::Attribute Split(std::string_view name) {
    const std::size_t bar = name.find('|');
    if (bar == std::string_view::npos) return {ToWide(name), {}, {}};
    return {ToWide(name.substr(bar + 1)), ToWide(name.substr(0, bar)), {}};
  }

  static void OnStart(void* userData, const XML_Char* name, const XML_Char** attributes) {
    ExpatTree& self = Self(userData);
    const Tree element(new AnyObject);
    const AnyObject::Attribute names = Split(name);
    element->SetElementName(names.name.c_str());
    element->ns = names.ns;
    for (; *attributes != nullptr; attributes += 2) {
      element->attributes.push_back(Split(attributes[0]));
      element->attributes.back().value = ToWide(attributes[1]);
    }
    (self.m_open.empty() ? self.m_root : self.m_open.back().element->children.emplace_back()) = element;
    self.m_open.push_back({element, {}});
  }
  static void OnEnd(void* userData, const XML_Char*) {
    Open& ended = Self(userData).m_open.back();
    ended.element->text = WithoutCr(ToWide(ended.text));
    Self(userData).m_open.pop_back();
  }
  static void OnText(void* userData, const XML_Char* text, int length) {
    Self(userData).m_open.back().text.append(text, static_cast<std::size_t>(length));
  }
  static void OnStartSection(void* userData) { Self(userData).m_open.back().text += "<![CDATA["; }
  static void OnEndSection(void* userData) { Self(userData).m_open.back().text += "]]>"; }

  static int OnExternalEntity(XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*) {
    return XML_STATUS_ERROR;
  }
  static void OnSkippedEntity(void* userData, const XML_Char*, int isParameterEntity) {
    ExpatTree& self = Self(userData);
    if (isParameterEntity != 0 || !self.m_failure.message.empty()) return;
    self.m_failure = self.Failure(XML_ERROR_UNDEFINED_ENTITY);
    XML_StopParser(self.m_parser, XML_FALSE);
  }

  struct Open {
    Tree element;
    std::string text;  // UTF-8
  };

  const XML_Parser m_parser;
  Tree m_root;
  std::vector<Open> m_open;
  Outcome m_failure;
  bool m_hasMark = false;
};

}  // namespace OvXmlLib16::fuzz
