// Reads Fast Infoset into a document tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "ovxmllib/fastinfoset/ReaderTables.h"
#include "ovxmllib/foundation/InstanceMonitor.h"

namespace OvXmlLib16 {

/// ITU-T Rec. X.891 from octets that lie in memory to the tree that the XML parser fills too. What the tree has no
/// place for is checked in its form and dropped: comments, processing instructions, document type declarations,
/// notations, entity references, initial vocabularies, and the prefixes of attributes. The document ends with its root:
/// what stands behind is not read.
///
/// The limits of the context hold, and text that comes from tables may be at most 100 times the input once it passes
/// 8 MiB. Every failure is a COvException, most with the prefix "Failed to parse FastInfoset. " and with an inner
/// exception that tells the octet; the tree is good for Clear and destruction then. A reader serves one document.
class CFastInfosetReader : public CInstanceMonitor {
 public:
  /// Nothing is owned; all of it outlives the reader, and so do the octets.
  CFastInfosetReader(const CFastInfosetContext& context, const CSerializationContext& options, DocumentTree& tree,
                     const unsigned char* data, std::size_t length);
  ~CFastInfosetReader() override;

  /// Whether the octets begin a Fast Infoset document: with its identification, or with one of nine XML declarations
  /// and the identification behind it.
  static bool IsDocument(const unsigned char* data, std::size_t length) noexcept;

  /// Fills the tree. Returns false, and leaves the tree alone, where IsDocument does.
  bool ParseDocument();

 private:
  enum class CarriageReturns { Stay, Go };

  // The values of attributes or elements by index: those of the vocabulary, which are kept from their first use on,
  // then the document's.
  struct Values {
    Values(const std::vector<WString>& prepared_, CarriageReturns crs_)
        : prepared(prepared_), crs(crs_), kept(prepared.size()) {}

    const std::vector<WString>& prepared;
    const CarriageReturns crs;
    fastinfoset::Table<WStringView> kept;  // in the tree's memory
  };

  static ClassType& Record();

  void ParseRoot(unsigned first);
  unsigned ParsePlainElement(unsigned first);
  unsigned ParseChild(unsigned first);
  unsigned ParseStartOfElement(unsigned first);
  unsigned ParseNamespaceAttributes();
  unsigned ParseAttributes();
  void ParseAttribute(unsigned first);
  void CheckAttributesDiffer();
  WStringView ReadChunk(unsigned first);
  void SkipItem(unsigned first);
  WStringView TextAt(Values& values, std::uint32_t index);
  WStringView Decode(const fastinfoset::StoredString& string, CarriageReturns crs);
  WStringView DecodeOther(const fastinfoset::StoredString& string, CarriageReturns crs);
  WStringView DecodeUtf8(std::span<const unsigned char> octets, WChar* text, CarriageReturns crs);
  WStringView DecodeUtf16(std::span<const unsigned char> octets, CarriageReturns crs);
  WStringView Keep(WStringView text, CarriageReturns crs);
  WStringView Checked(WChar* text, std::size_t length, CarriageReturns crs);

  const CSerializationContext& m_options;
  const CFIVocabulary& m_vocabulary;
  DocumentTree& m_tree;
  const std::size_t m_start;  // behind the identification; 0 where there is none
  fastinfoset::OctetReader m_in;
  fastinfoset::NameReader m_names;
  Values m_attributeValues, m_characterChunks;
  std::uint64_t m_indexedBytes = 0;                        // of texts that came from a table
  std::vector<const ExpandedName*> m_attributesOfElement;  // scratch
  WString m_decoded;                                       // scratch
};

}  // namespace OvXmlLib16
