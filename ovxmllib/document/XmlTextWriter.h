// Writes XML text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ovxmllib/document/MarkupRun.h"
#include "ovxmllib/document/XmlEscape.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/TextStream.h"

namespace OvXmlLib16 {

/// XML 1.0 with namespaces, to a text stream. Configure it between construction and the first element.
///
///     state            call                                        written                         state then
///     start tag open   WriteAttribute, WriteXsiType, WriteXsiNil   inside the tag                  start tag open
///     start tag open   WriteInlineSchema                           inside the tag                  start tag open
///     start tag open   WriteText, empty text                       nothing                         start tag open
///     start tag open   WriteText                                   `>` and the text                content
///     start tag open   StartElement                                `>`, line end if formatted      content
///     start tag open   EndElement                                  `/>`, line end if formatted     closed
///     content          WriteText, StartElement                     the text, or the child begins   content
///     content          WriteAttribute, WriteXsiType, WriteXsiNil   nothing: throws                 content
///     content          EndElement                                  the end tag                     closed
///
/// Values are escaped. Characters that XML does not allow and unpaired surrogates throw COvInvalidValueException, since
/// no parser would read them back; names, processing instructions and raw lines are not looked at beyond that the
/// stream refuses U+0000 and unpaired surrogates everywhere. What has gone to the stream when an exception leaves stays
/// there.
class CXmlTextWriter : public CXmlWriter {
 public:
  /// `stream` is not owned and must outlive the writer.
  explicit CXmlTextWriter(CTextStream* stream);

  /// Whether each element stands on a line of its own, indented. Default true.
  void SetFormatted(bool formatted);
  bool GetFormatted() const noexcept { return m_bFormatted; }
  /// One level of indentation. Default one tab. Throws COvInvalidValueException at an unpaired surrogate.
  void SetIndentChars(WStringView indent) { m_indentation.Set({}, indent); }
  const WString& GetIndentChars() const noexcept { return m_indentation.GetIndent(); }
  /// The line end of markup and of line feeds in text. Default EOLType_LF. Throws COvException "Invalid EOL type.".
  void SetEOLType(EOLType eol);
  EOLType GetEOLType() const noexcept { return m_eolType; }

  /// Writes the XML declaration, with the encoding if the stream has one that is declared. Call it before any element.
  void WriteXmlHeader();
  /// Writes the `>` that is due when a start tag is open, and counts a child: what another writer's text needs ahead.
  void CloseStartTag();
  /// Writes text unchanged, and a line end if formatted.
  void WriteRawLine(WStringView text);

  void Open() override;
  /// Closes the stream, also when an element is open, which is then reported.
  void Close() override;
  void WriteComment(WStringView text) override;
  void WriteProcessingInstruction(WStringView text) override;
  void WriteInlineSchema(WStringView text) override;
  void StartElement(WStringView name, WStringView ns) override;
  void StartPrepared(const PreparedName& name) override;
  void WriteText(WStringView text, ItemType type) override;
  void EndElement() override;
  void WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) override;
  void WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type) override;
  void WriteXsiType(WStringView ns, WStringView typeName, ItemType type) override;
  void WriteXsiNil() override;
  void WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) override;
  void WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) override;

 private:
  static ClassType& Record();

  void Write(WStringView text);
  WStringView GetLineEnd() const noexcept;
  void SetTagEnd();
  template <class Unit>
  std::basic_string_view<Unit> GetTagEnd();
  template <class Unit>
  std::basic_string<Unit>& GetEndTags() noexcept;
  template <class Unit>
  std::basic_string_view<Unit> GetIndent(int depth);
  bool CountChild() noexcept;
  template <class Name>
  void BeginElement(const Name& name, WStringView ns);
  template <class Unit, class Name>
  void PutStartTag(CXmlWriterContext& context, bool closesTag, WStringView prefix, const Name& name);
  template <class Unit, class Name>
  void KeepEndTag(CXmlWriterContext& context, WStringView prefix, const Name& name);
  template <class Unit>
  void PutEndTag(const CXmlWriterContext& context);
  template <class Name>
  void PutAttribute(const Name& name, WStringView ns, WStringView value);
  template <class Name>
  bool WriteInOneGo(const Name& name, WStringView ns, WStringView text);
  template <class Unit, class Name>
  void PutWholeElement(WStringView prefix, const Name& name, WStringView text);
  void WriteDeclaration(WStringView start, WStringView alias, WStringView ns);
  void DeclareDocumentScope();
  void WriteTextWithSections(WStringView text);
  void FlushIfDue();

  WString m_strEOL = u"\n";
  EOLType m_eolType = EOLType_LF;
  bool m_bFormatted = true;
  CTextStream* m_pStream;  // not owned
  const EscapeRules* m_textRules = &kEscapeTextLf;
  Indentation m_indentation{{}, u"\t"};
  Indentation m_tagEnd{u">\n", {}};  // of what leads it: `>`, and a line end if formatted
  // Of the open elements, one behind the other, as the stream gets them: one of the two is in use, and has more room
  // than the length.
  WString m_endTags;
  std::string m_utf8EndTags;
  std::size_t m_endTagsLength = 0;
};

}  // namespace OvXmlLib16
