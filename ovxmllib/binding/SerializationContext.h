// The options of one read or one write.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SmartPtr.h"
#include "ovxmllib/document/NamespaceAliasMap.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class CAttributeCol;
class CFastInfosetContext;
class CJsonContext;

/// All options of reading and writing. A context is handed to every entry point by reference, is not copied by it and
/// must outlive the call. Any number of threads may use one context at a time as long as nobody changes it. A copy has
/// everything of its source and shares nothing with it but the additional root attributes.
class OVXMLLIB_API CSerializationContext {
 public:
  CSerializationContext() = default;
  CSerializationContext(const CSerializationContext&) = default;
  CSerializationContext& operator=(const CSerializationContext&) = default;
  virtual ~CSerializationContext() = default;

  /// The context that is used where none is given. Change it before threads start, if at all.
  static CSerializationContext& GetDefaultContext() noexcept { return m_defaultContext; }

  /// The options of Fast Infoset. They are made at the first call, which several threads may do at once, and then stay
  /// the same object, owned by this context; assignment to this context changes what is in it. A copy has a copy of
  /// them. Throws std::bad_alloc.
  CFastInfosetContext* GetFIContext() const { return m_fastInfoset.Get(); }

  // The next five are written by the root object, which a generated class does; a class written by hand passes them to
  // its writer itself.

  /// The default namespace that is declared on the root element of output; empty for none.
  WString GetDefaultNamespaceURI() const { return m_strDefaultNamespaceURI; }
  /// The same without a copy; valid until it changes.
  WStringView GetDefaultNamespaceView() const noexcept { return m_strDefaultNamespaceURI; }
  void SetDefaultNamespaceURI(const WChar* uri) { m_strDefaultNamespaceURI = ViewOf(uri); }

  /// The aliases that are declared on the root element of output.
  const CNamespaceAliasMap& GetNamespaceAliases() const noexcept { return m_namespaceAliases; }
  CNamespaceAliasMap& GetNamespaceAliases() noexcept { return m_namespaceAliases; }

  /// Written on the root element ahead of its own attributes. Any namespace is allowed. The collection is made at the
  /// first call, which several threads may do at once, and then stays the same; copies of this context that are made
  /// later share it. Throws std::bad_alloc.
  CSmartPtr<CAttributeCol> GetAdditionalRootAttributes() const;

  /// How JSON is read and written; never null. Owned by this context, made at the first call, which several threads may
  /// do at once, and then the same for the life of the context. A copy of this context gets a copy. Throws
  /// std::bad_alloc.
  CJsonContext* GetJsonContext() const { return m_jsonContext.Get(); }

  /// Written ahead of the root element, each as it stands, delimiters included (`<?pi data?>`); not checked.
  const std::vector<WString>& GetProcessingInstructions() const noexcept { return m_processingInstructions; }
  std::vector<WString>& GetProcessingInstructions() noexcept { return m_processingInstructions; }

  /// Written as it stands behind the attributes of the root element, inside its start tag; not checked.
  WString GetInLineSchema() const { return m_strInLineSchema; }
  void SetInLineSchema(const WChar* text) { m_strInLineSchema = ViewOf(text); }

  /// Whether `xsi:type` may be written for an object of a derived class. Default true.
  bool GetWriteTypeAttribute() const noexcept { return m_bWriteTypeAttribute; }
  void SetWriteTypeAttribute(bool write) noexcept { m_bWriteTypeAttribute = write; }

  /// Whether the bounds of collections go untested, on reading and writing. Default false.
  bool GetIgnoreInvalidCollectionCounts() const noexcept { return m_bIgnoreInvalidCollectionCounts; }
  void SetIgnoreInvalidCollectionCounts(bool ignore) noexcept { m_bIgnoreInvalidCollectionCounts = ignore; }

  /// Whether a choice with no member set passes, on reading and writing. Default false.
  bool GetIgnoreMissingChoice() const noexcept { return m_bIgnoreMissingChoice; }
  void SetIgnoreMissingChoice(bool ignore) noexcept { m_bIgnoreMissingChoice = ignore; }

  /// Whether an absent mandatory element of a sequence is accepted. Default false. Throws COvInvalidStateException, and
  /// changes nothing, when it is switched on while IgnoreUnknownElements is on.
  bool GetIgnoreMissingMandatoryElements() const noexcept { return m_bIgnoreMissingMandatoryElements; }
  void SetIgnoreMissingMandatoryElements(bool ignore);

  /// Whether child elements that no metadata entry takes are skipped. Default false. Throws COvInvalidStateException,
  /// and changes nothing, when it is switched on while IgnoreMissingMandatoryElements is on.
  bool GetIgnoreUnknownElements() const noexcept { return m_bIgnoreUnknownElements; }
  void SetIgnoreUnknownElements(bool ignore);

  /// Whether attributes that no metadata entry takes are accepted. Default false.
  bool GetIgnoreUnknownAttributes() const noexcept { return m_bIgnoreUnknownAttributes; }
  void SetIgnoreUnknownAttributes(bool ignore) noexcept { m_bIgnoreUnknownAttributes = ignore; }

  /// Whether elements and enumeration attributes are matched by local name alone. Default false; always true for
  /// SchemaType_NoNamespaces.
  bool GetIgnoreNamespaces() const noexcept { return m_bIgnoreNamespaces || m_schemaType == SchemaType_NoNamespaces; }
  void SetIgnoreNamespaces(bool ignore) noexcept { m_bIgnoreNamespaces = ignore; }

  /// The kind of schema. With SchemaType_NoNamespaces the parser does not process namespaces: a prefix stays part of
  /// the name and declarations are ordinary attributes. Default SchemaType_Namespaces.
  SchemaType GetSchemaType() const noexcept { return m_schemaType; }
  void SetSchemaType(SchemaType type) noexcept { m_schemaType = type; }

  /// Whether an optional attribute at its default value is left out. Default false.
  bool GetNoOptionalAttributeDefaultOutput() const noexcept { return m_bNoOptionalAttributeDefaultOutput; }
  void SetNoOptionalAttributeDefaultOutput(bool leaveOut) noexcept { m_bNoOptionalAttributeDefaultOutput = leaveOut; }

  /// Whether the facets of a value are checked when it is read. Otherwise a value is checked when it is written, or by
  /// the setter of its property, if that does. Default false.
  bool GetValidateOnRead() const noexcept { return m_bValidateOnRead; }
  void SetValidateOnRead(bool validate) noexcept { m_bValidateOnRead = validate; }

  /// Whether an element at its default value is written with its text; otherwise it is written empty. Default false.
  bool GetWriteDefaultElementValues() const noexcept { return m_bWriteDefaultElementValues; }
  void SetWriteDefaultElementValues(bool write) noexcept { m_bWriteDefaultElementValues = write; }

  /// Whether the markers of CDATA sections are dropped on reading. When false they stay in the text, and a text that
  /// begins with such a section is written back as one. Default true.
  bool GetStripCDATA() const noexcept { return m_bStripCDATA; }
  void SetStripCDATA(bool strip) noexcept { m_bStripCDATA = strip; }

  /// One level of indentation of formatted output. Default one tab. Null stores the empty text; a text with anything
  /// but blanks and tabs throws COvInvalidParamException and changes nothing.
  WString GetIndentChars() const { return m_strIndentChars; }
  void SetIndentChars(const WChar* text);

  // Limits on what a document may cost. 0 means no limit. A document above one fails with a COvException that names the
  // limit and its setter, and with the place where it was passed.

  /// How deep elements may be nested, the document element counting as 1. Default 1,000: binding and writing use stack
  /// in proportion to the depth, and 1,000 levels fit into a stack of 1 MiB.
  std::size_t GetMaxElementDepth() const noexcept { return m_maxElementDepth; }
  void SetMaxElementDepth(std::size_t depth) noexcept { m_maxElementDepth = depth; }

  /// How many attributes an element may have, namespace declarations counted. Default 10,000. A start tag of many
  /// thousand attributes is refused before it is read to its end.
  std::size_t GetMaxAttributesPerElement() const noexcept { return m_maxAttributesPerElement; }
  void SetMaxAttributesPerElement(std::size_t count) noexcept { m_maxAttributesPerElement = count; }

  /// How long a name may be, in UTF-16 code units, its namespace URI not counted. Default 0.
  std::size_t GetMaxNameLength() const noexcept { return m_maxNameLength; }
  void SetMaxNameLength(std::size_t units) noexcept { m_maxNameLength = units; }

  /// How long a namespace URI may be, in UTF-16 code units. Each name in the namespace costs time in proportion to it.
  /// Default 8,000, the length that every HTTP recipient should support (RFC 9110, section 4.1).
  std::size_t GetMaxNamespaceLength() const noexcept { return m_maxNamespaceLength; }
  void SetMaxNamespaceLength(std::size_t units) noexcept { m_maxNamespaceLength = units; }

  /// How long the text of one element or the value of one attribute may be, in UTF-16 code units. The white space
  /// between child elements is text of their parent, and stays when a callback drops the children. Default 0.
  std::size_t GetMaxTextLength() const noexcept { return m_maxTextLength; }
  void SetMaxTextLength(std::size_t units) noexcept { m_maxTextLength = units; }

  /// How many bytes a document may have as it comes, that is before it is decompressed. Default 0.
  std::uint64_t GetMaxInputBytes() const noexcept { return m_maxInputBytes; }
  void SetMaxInputBytes(std::uint64_t bytes) noexcept { m_maxInputBytes = bytes; }

  /// How many bytes a compressed document may expand to. Default 0.
  std::uint64_t GetMaxDecompressedBytes() const noexcept { return m_maxDecompressedBytes; }
  void SetMaxDecompressedBytes(std::uint64_t bytes) noexcept { m_maxDecompressedBytes = bytes; }

  /// Whether a document may have a DOCTYPE. Default true. External entities are never read in either case.
  bool GetAllowDoctype() const noexcept { return m_bAllowDoctype; }
  void SetAllowDoctype(bool allow) noexcept { m_bAllowDoctype = allow; }

  /// Sets every limit for documents that come from strangers: depth 256, 256 attributes an element, names and
  /// namespaces of 1,024 and texts of 16 Mi code units, 64 MiB of input, 256 MiB decompressed, no DOCTYPE. Each can be
  /// changed afterwards.
  void SetUntrustedInput() noexcept;

 private:
  // A reference to a collection that the first to ask for makes. Copies refer to the same collection.
  class RootAttributes {
   public:
    RootAttributes() noexcept = default;
    RootAttributes(const RootAttributes& other);
    RootAttributes& operator=(const RootAttributes& other);
    ~RootAttributes();

    CAttributeCol* Get() const;

   private:
    mutable std::atomic<CAttributeCol*> m_made = nullptr;  // one reference is owned
  };

  // An object that the first to ask for makes. A copy has a copy of it.
  template <class T>
  class OVXMLLIB_API MadeOnFirstUse {
   public:
    MadeOnFirstUse() noexcept = default;
    MadeOnFirstUse(const MadeOnFirstUse& other);
    MadeOnFirstUse& operator=(const MadeOnFirstUse& other);
    ~MadeOnFirstUse() { Drop(); }

    T* Get() const;

   private:
    void Drop() noexcept;

    mutable std::atomic<T*> m_made = nullptr;  // owned
  };

  static CSerializationContext m_defaultContext;

  MadeOnFirstUse<CFastInfosetContext> m_fastInfoset;
  MadeOnFirstUse<CJsonContext> m_jsonContext;
  WString m_strDefaultNamespaceURI;
  bool m_bWriteTypeAttribute = true;
  CNamespaceAliasMap m_namespaceAliases;
  RootAttributes m_additionalRootAttributes;
  std::vector<WString> m_processingInstructions;
  WString m_strInLineSchema;
  bool m_bIgnoreInvalidCollectionCounts = false;
  bool m_bIgnoreMissingChoice = false;
  bool m_bIgnoreMissingMandatoryElements = false;
  bool m_bIgnoreUnknownElements = false;
  bool m_bIgnoreUnknownAttributes = false;
  bool m_bIgnoreNamespaces = false;
  SchemaType m_schemaType = SchemaType_Namespaces;
  bool m_bNoOptionalAttributeDefaultOutput = false;
  bool m_bWriteDefaultElementValues = false;
  bool m_bValidateOnRead = false;
  bool m_bStripCDATA = true;
  WString m_strIndentChars = u"\t";

  std::size_t m_maxElementDepth = 1'000;
  std::size_t m_maxAttributesPerElement = 10'000;
  std::size_t m_maxNameLength = 0;
  std::size_t m_maxNamespaceLength = 8'000;
  std::size_t m_maxTextLength = 0;
  std::uint64_t m_maxInputBytes = 0;
  std::uint64_t m_maxDecompressedBytes = 0;
  bool m_bAllowDoctype = true;
};

}  // namespace OvXmlLib16
