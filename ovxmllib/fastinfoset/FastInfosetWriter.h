// Writes Fast Infoset.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/document/NodePool.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/fastinfoset/BinaryForms.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "ovxmllib/fastinfoset/OctetBuffer.h"
#include "ovxmllib/fastinfoset/VocabularyIndex.h"
#include "ovxmllib/foundation/BinaryStream.h"

namespace OvXmlLib16 {

/// ITU-T Rec. X.891 to a binary stream: one element tree with attributes and character chunks, the namespaces that are
/// set before the root declared on it, names and short values by index from their second use on. Comments, processing
/// instructions and inline schemas are dropped. A namespace without alias gets a generated one, which stands in the
/// name and is declared nowhere.
///
///     state            call                                        written                                  state then
///     start tag open   WriteAttribute, WriteXsiType, WriteXsiNil   the attribute                            start tag
///     open start tag open   WriteText, also of an empty text            the end of the attributes, the chunk content
///     start tag open   StartElement                                the end of the attributes, the child     content
///     start tag open   EndElement                                  the end of the attributes                ended
///     content          WriteText, StartElement                     the chunk, or the child begins           content
///     content          WriteAttribute, WriteXsiType, WriteXsiNil   nothing: throws                          content
///     content          EndElement                                  nothing                                  ended
///     ended            EndElement                                  FF: both ends                            content
///     ended            anything else                               F0 ahead of it                           content
///
/// Characters that XML does not allow and unpaired surrogates in texts and values throw COvInvalidValueException,
/// U+0000 and unpaired surrogates in names too. What has gone to the stream when an exception leaves stays there.
class CFastInfosetWriter : public CXmlWriter {
 public:
  /// Neither is owned; both must outlive the writer.
  CFastInfosetWriter(const CFastInfosetContext* context, CBinaryStream* stream);
  ~CFastInfosetWriter() override;

  /// Writes what stands ahead of the root: an XML declaration, if one is asked for, the identification, and the name of
  /// the vocabulary in force, if there is one.
  void WriteDocumentStart(FInfoDecl declaration);
  /// Writes the end of the document. The stream has all of it then.
  void WriteDocumentEnd();

  /// Gives what was written to the stream. Throws COvException "An Element has not been closed." when one is open.
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

  void CloseStartTag();
  void WriteDueTerminator();
  void OpenAttributes();
  WStringView AliasOf(WStringView ns);
  void WriteRootNamespaces();
  void WriteNamespace(unsigned parts, WStringView alias, WStringView ns);
  template <class Name>
  void BeginElement(const Name& name, WStringView ns);
  template <class Name>
  bool WriteInOneGo(const Name& name, WStringView ns, WStringView text, ItemType type);
  template <class Name>
  void PutAttribute(const Name& name, WStringView ns, WStringView value, ItemType type);
  std::uint32_t FindOrAdd(fastinfoset::NameIndex& names, WStringView name, WStringView ns, WStringView prefix);
  std::uint32_t FindOrAdd(fastinfoset::NameIndex& names, const PreparedName& name, WStringView ns, WStringView prefix);
  template <class Name>
  void WriteElementName(bool sharesOctet, const Name& name, WStringView ns, WStringView prefix);
  template <class Name>
  void WriteAttributeName(const Name& name, WStringView ns, WStringView prefix);
  void WriteNameParts(WStringView name, WStringView ns, WStringView prefix);
  void WriteIdentifyingString(fastinfoset::TextIndex& table, WStringView text);
  void WriteChunk(WStringView text, ItemType type);
  void WriteAttributeValue(WStringView value, ItemType type);
  void WriteString(const fastinfoset::StringForm& form, unsigned prefix, WStringView text, ItemType type);
  void WriteUtf8(const fastinfoset::NumberForm& lengthForm, unsigned prefix, WStringView text, bool isName);
  void WriteCompact(const fastinfoset::StringForm& form, unsigned prefix, WStringView text,
                    fastinfoset::CharacterForm characters, std::uint32_t index);

  const CFastInfosetContext& m_context;  // not owned
  const CFIVocabulary& m_vocabulary;     // not owned: the one in force
  fastinfoset::OctetBuffer m_out;
  bool m_terminatorDue = false;  // one element end is owed to the output
  NodePool m_pool;               // the texts that the document adds to the index
  fastinfoset::VocabularyIndex m_index;
  WString m_typeName;  // scratch
};

}  // namespace OvXmlLib16
