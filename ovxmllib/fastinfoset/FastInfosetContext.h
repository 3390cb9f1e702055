// The options of Fast Infoset.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/fastinfoset/FIVocabulary.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// What shapes a Fast Infoset document: how the values of each type are stored, which strings enter the tables of the
/// document, and whether a vocabulary that was prepared is in force. Reached through
/// CSerializationContext::GetFIContext.
///
/// The defaults store all values as text in UTF-8. Settle a context before the documents; while nobody changes it any
/// number of threads may use it.
class OVXMLLIB_API CFastInfosetContext {
 public:
  /// How the values of a type are stored.
  struct EncodedCharacterString {
    /// 0 as text in the default encoding; 1 in a restricted alphabet; 2 by an encoding algorithm. Other numbers are
    /// refused when the first value is written.
    std::uint32_t m_dwType = 0;
    /// For type 1 the alphabet: 1 numeric, 2 date and time. For type 2 the algorithm of ITU-T Rec. X.891, clause 10:
    /// 1 hexadecimal, 2 base64, 3 short, 4 int, 5 long, 6 boolean, 7 float, 8 double, 9 uuid, 10 text in UTF-8.
    std::uint32_t m_dwIndex = 0;
  };

  CFastInfosetContext() = default;
  CFastInfosetContext(const CFastInfosetContext&) = default;
  /// Copies everything, the vocabulary with its tables.
  CFastInfosetContext& operator=(const CFastInfosetContext&) = default;
  virtual ~CFastInfosetContext();

  /// The encoding of text: 0 is UTF-8, 1 is UTF-16BE, which the writer refuses. 0 unless a descendant sets it.
  unsigned char GetDefaultStringEncoding() const noexcept { return m_byDefaultStringEncoding; }

  /// How values of an ItemType are stored. Both throw COvInvalidParamException for a number that is no ItemType.
  EncodedCharacterString GetEncoding(std::uint32_t itemType) const;
  void SetEncoding(std::uint32_t itemType, EncodedCharacterString encoding);

  /// Shorter texts of elements enter the table of the document, so that each further use costs one to four octets.
  /// In UTF-16 code units; default 6, that is texts of 1 to 5; 0 for none.
  std::uint32_t GetElementMaxAddLength() const noexcept { return m_dwElementMaxAddLength; }
  void SetElementMaxAddLength(std::uint32_t units) noexcept { m_dwElementMaxAddLength = units; }
  /// The same for values of attributes.
  std::uint32_t GetAttributeMaxAddLength() const noexcept { return m_dwAttributeMaxAddLength; }
  void SetAttributeMaxAddLength(std::uint32_t units) noexcept { m_dwAttributeMaxAddLength = units; }

  /// Whether documents start with the tables of GetVocabulary. Default false. Both sides must have the same tables: the
  /// document only names them.
  bool GetUseGeneratedVocabulary() const noexcept { return m_bUseGeneratedVocabulary; }
  void SetUseGeneratedVocabulary(bool use) noexcept { m_bUseGeneratedVocabulary = use; }

  /// The vocabulary, to be filled before the first document; never null, owned by the context.
  CFIVocabulary* GetVocabulary() noexcept { return &m_vocabulary; }
  const CFIVocabulary* GetVocabulary() const noexcept { return &m_vocabulary; }

  /// The URI by which documents name the vocabulary in force. Empty, the default, stands for a URI of this library. The
  /// reader compares it with nothing.
  WString GetExternalVocabularyURI() const { return m_strExternalVocabularyURI; }
  void SetExternalVocabularyURI(WString uri) { m_strExternalVocabularyURI = std::move(uri); }

  /// Stores numbers, booleans and binary data in their binary form, and dates, times, decimals and integers of any size
  /// in four bits a character; all other types, and the limits, stay as they are. Some values cannot be written so and
  /// fail: a time with a fraction of a second or a zone ahead of UTC, which has characters outside the alphabet, and an
  /// unsigned 64-bit integer above the signed range.
  void SetSuggestedValues();

 protected:
  unsigned char m_byDefaultStringEncoding = 0;

 private:
  friend class CFastInfosetReader;
  friend class CFastInfosetWriter;

  static constexpr std::size_t kItemTypes = ItemType_XmlCollection + 1;

  static void CheckItemType(std::uint32_t itemType);
  // What documents start with.
  const CFIVocabulary& GetVocabularyInForce() const {
    return m_bUseGeneratedVocabulary ? m_vocabulary : CFIVocabulary::GetInitial();
  }

  std::array<EncodedCharacterString, kItemTypes> m_encodings{};
  std::uint32_t m_dwElementMaxAddLength = 6;
  std::uint32_t m_dwAttributeMaxAddLength = 6;
  bool m_bUseGeneratedVocabulary = false;
  CFIVocabulary m_vocabulary;
  WString m_strExternalVocabularyURI;
};

}  // namespace OvXmlLib16
