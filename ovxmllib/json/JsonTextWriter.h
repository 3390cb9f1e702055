// Writes JSON text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "ovxmllib/document/MarkupRun.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/json/JsonContext.h"
#include "ovxmllib/json/JsonEscape.h"

namespace OvXmlLib16 {

/// JSON to a text stream, by the convention that CJsonContext tells. Configure it between construction and the first
/// element, then Open, WriteDocumentStart, the elements, WriteDocumentEnd, Close. Elements write their attributes first
/// and their text last.
///
/// An element is a member of the object around it. What follows its name decides what its value is:
///
///     nothing, or empty text        null
///     text alone                    the text: plain for numbers and booleans, else a string
///     an attribute or a child       an object; its text is the member "#text"
///     SetArrayState(1) before it    the first of an array, which the next elements of its name are items of
///
///     state of an element (arrayState)           changes                              to
///     ArrayNone       no array                   SetArrayState(1)                     ArrayRequested
///     ArrayRequested  the next child begins one  the first value or member of it      ArrayOpen
///     ArrayOpen       `[` is written             SetArrayState(3)                     ArrayEnded
///                                                a child of another name              ArrayRequested
///     ArrayEnded      `]` is still to come       the next child, text, or the end     ArrayNone
///                                                SetArrayState(1)                     ArrayRequested
///
/// Text is escaped, names are not. Numbers go out as they are: INF and NaN are no JSON. Processing instructions, inline
/// schemas and xsi:nil leave no trace. What has gone to the stream when an exception leaves stays there.
class CJsonTextWriter : public CXmlWriter {
 public:
  /// `stream` is not owned and must outlive the writer.
  explicit CJsonTextWriter(CTextStream* stream);

  /// Whether each member stands on a line of its own, indented. Default true.
  void SetFormatted(bool formatted);
  bool GetFormatted() const noexcept { return m_bFormatted; }
  /// One level of indentation. Default one tab.
  void SetIndentChars(WStringView indent);
  const WString& GetIndentChars() const noexcept { return m_lineStarts.GetIndent(); }
  /// The line end of formatting and of line feeds in text. Default EOLType_LF. Throws COvException "Invalid EOL type.".
  void SetEOLType(EOLType eol);
  EOLType GetEOLType() const noexcept { return m_eolType; }
  /// The convention. Default RoundTripFull.
  void SetRoundTrip(JsonRoundTrip mode) noexcept { m_roundTrip = mode; }
  JsonRoundTrip GetRoundTrip() const noexcept { return m_roundTrip; }

  /// Begins and ends the object around the root element.
  void WriteDocumentStart();
  void WriteDocumentEnd();

  void Open() override;
  /// Closes the stream, also when an element is open, which is then reported.
  void Close() override;
  /// Writes `/* text */` and a line end.
  void WriteComment(WStringView text) override;
  void WriteProcessingInstruction(WStringView) override {}
  void WriteInlineSchema(WStringView) override {}
  /// Below the root a namespace without alias throws COvException "Unknown Namespace: %s.", in RoundTripFull; the same
  /// holds for attributes and types anywhere.
  void StartElement(WStringView name, WStringView ns) override;
  void StartPrepared(const PreparedName& name) override;
  void WriteText(WStringView text, ItemType type) override;
  void EndElement() override;
  void WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) override;
  void WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type) override;
  void WriteXsiType(WStringView ns, WStringView typeName, ItemType type) override;
  void WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) override;
  void WritePreparedElement(const PreparedName& name, WStringView text, ItemType type) override;
  void WriteXsiNil() override {}

 private:
  struct Value;
  // The array among the children of an element.
  struct Array {
    bool isOpen = false;  // its `[` is written and its `]` is not
    WString name, ns;     // of its items
  };

  static ClassType& Record();

  bool IsFull() const noexcept { return m_roundTrip == RoundTripFull; }
  JsonEscapeRules EscapeRules() const noexcept { return {m_strEOL}; }
  template <class Unit>
  std::basic_string_view<Unit> LineStart(int depth);
  bool IsNextItem(CXmlWriterContext& parent, WStringView name, WStringView ns);
  void PushElement();
  void WriteOpening(char mark, int depth);
  void WriteClosing(char mark, int depth);
  template <class Name>
  void BeginElement(const Name& name, WStringView ns);
  template <class Name>
  void PutMember(WStringView mark, WStringView prefix, const Name& name, const Value& value);
  template <class Name>
  void WriteMember(WStringView mark, WStringView prefix, const Name& name, WStringView text, ItemType type);
  template <class Name>
  void PutAttribute(const Name& name, WStringView ns, WStringView value, ItemType type);
  template <class Name>
  bool WriteInOneGo(const Name& name, WStringView ns, WStringView text, ItemType type);
  void BeginItem();
  void OpenArrayIfDue();
  void CloseArrayIfEnded(CXmlWriterContext& context);
  const WString& RequireAlias(WStringView ns, WStringView name) const;
  void WriteDeclaration(WStringView alias, WStringView uri);
  void DeclareDocumentScope();
  void WriteValue(WStringView text, ItemType type);
  void FlushIfDue();

  WString m_strEOL = u"\n";
  EOLType m_eolType = EOLType_LF;
  JsonRoundTrip m_roundTrip = RoundTripFull;
  bool m_bFormatted = true;
  CTextStream* m_pStream;                  // not owned
  bool m_bValuePending = false;            // the open element has its name, and no `{` yet
  bool m_bValueWritten = false;            // a bare value stands behind the name
  int m_depth = 0;                         // of the open element in braces and brackets
  std::vector<Array> m_arrays;             // by the depth of their elements
  Indentation m_lineStarts{u"\n", u"\t"};  // with the line ends ahead
};

}  // namespace OvXmlLib16
