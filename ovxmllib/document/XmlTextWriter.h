// Writes XML text.
#pragma once

#include <cstddef>

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
  /// One level of indentation. Default one tab.
  void SetIndentChars(WStringView indent) {
    m_strIndent = indent;
    m_indents.clear();
  }
  const WString& GetIndentChars() const noexcept { return m_strIndent; }
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
  void WriteText(WStringView text, ItemType type) override;
  void EndElement() override;
  void WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) override;
  void WriteXsiType(WStringView ns, WStringView typeName, ItemType type) override;
  void WriteXsiNil() override;
  void WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) override;

 private:
  static ClassType& Record();

  void Write(WStringView text) { m_pStream->Write(text); }
  WStringView GetLineEnd() const noexcept;
  WStringView GetIndent(int depth);
  void GrowIndents(std::size_t length);
  bool CountChild() noexcept;
  void PushTagName(CXmlWriterContext& context, WStringView alias, WStringView name);
  void WriteEndTag(WStringView prefix, WStringView name);
  void WriteDeclaration(WStringView start, WStringView alias, WStringView ns);
  void DeclareDocumentScope();
  void WriteTextWithSections(WStringView text);
  void FlushIfDue();

  WString m_strIndent = u"\t";
  WString m_strEOL = u"\n";
  EOLType m_eolType = EOLType_LF;
  bool m_bFormatted = true;
  CTextStream* m_pStream;  // not owned
  const EscapeRules* m_textRules = &kEscapeTextLf;
  WString m_indents;   // the indentation of an element deeper than all so far, with kRoomySlack behind
  WString m_tagNames;  // of the open elements, one behind the other; has more room than is used
  std::size_t m_tagNamesEnd = 0;
};

}  // namespace OvXmlLib16
