// One parsed document.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

class COvException;
class DocumentTree;
class JsonInput;
enum class DeclaredEncoding;

namespace platform {
class File;
}

/// Switches chunked reading of files on or off for the whole process; off at load. Set it once, before files are read.
///
/// Off, CXmlDocument::Load reads the whole file and takes XML text or Fast Infoset, plain or compressed. On, it reads
/// 128 KiB at a time and parses one piece while the system fetches the next: memory then holds the tree and not the
/// file, but Fast Infoset and compressed input fail as XML that is not well-formed.
OVXMLLIB_API void AsyncFromXmlFile(bool on) noexcept;

/// Switches direct writing of files on or off for the whole process; off at load. Set it once, before files are
/// written.
///
/// Off, the whole document is made in memory and then written. On, output without compression goes to the file as the
/// writer produces it, in flat memory; after a failure the file may be partly written.
OVXMLLIB_API void AsyncToXmlFile(bool on) noexcept;

/// Reads XML text, bytes or a file, as XML or Fast Infoset, into a tree of CXmlElement, which it owns.
///
/// A document can be loaded again: each load drops the tree before it. After a failed load there is no tree
/// to use. A document belongs to one thread at a time. The context is kept by reference and must outlive the document.
///
/// Every failure is a COvException. Text that is not well-formed gives the parser's message and line, as
/// "mismatched tag at line 3", with GetLine and GetColumn on the exception. External entities are never read: a
/// reference to one, like a reference in text to an entity that the internal subset does not declare, is an error and
/// not a gap in the text. In the attribute values of a document with an external subset the parser passes over
/// references to undeclared entities, and says nothing.
class OVXMLLIB_API CXmlDocument : public CInstanceMonitor {
 public:
  /// Called on the parsing thread for each element at its end tag, when it is complete and still linked to its parent.
  /// True drops the element with all its descendants: it leaves the tree and its memory serves the elements to come. So
  /// a document of any size can be read in the memory of one branch. For the document element the answer is
  /// ignored. Parts come before the whole: an element that needs its children must not have them dropped. Of an element
  /// that stays, the text grows while its children are dropped, by 2 to 8 bytes for each character of white space
  /// between them; documents that are to be read so are best written unformatted. CXmlObjectBase::FromXmlElement may be
  /// called here. An exception thrown here ends the load and reaches the caller of Load... unchanged. Elements of a
  /// Fast Infoset document are not shown to it.
  using ElementComplete = bool (*)(CXmlElement*);

  /// A document on the default context.
  CXmlDocument();
  explicit CXmlDocument(const CSerializationContext& context);
  explicit CXmlDocument(ElementComplete callback);
  /// `callback` may be null.
  CXmlDocument(ElementComplete callback, const CSerializationContext& context);
  ~CXmlDocument() override;
  CXmlDocument(const CXmlDocument&) = delete;
  CXmlDocument& operator=(const CXmlDocument&) = delete;

  /// Reads a file: XML text or Fast Infoset, or the same in a gzip or zlib wrapper; see AsyncFromXmlFile. The system's
  /// error numbers in messages are errno values. A file that changes its size while it is read fails. Pipes and devices
  /// are read to their end.
  void Load(const WChar* path) { Load(PathOf(path)); }
  void Load(const std::filesystem::path& path);

  /// Parses text in the encoding that it declares, UTF-8 by default. A null pointer counts as empty, which throws.
  void LoadXml(const char* text);
  void LoadXml(std::string_view text);
  /// Parses terminated UTF-16 text, whatever encoding it declares.
  void LoadXml(const WChar* text);
  /// Parses bytes: XML text in the encoding that it declares or shows by a byte order mark, a Fast Infoset document,
  /// which shows by its first bytes, or the same in a gzip or zlib wrapper. The bytes are not kept.
  void LoadXmlStream(const unsigned char* data, std::size_t length);

  /// Converts JSON to the XML document that it stands for, in UTF-8, and leaves this document empty: LoadXmlStream
  /// takes the result. The text is UTF-8, with or without a byte order mark. Throws COvException when it is empty, and
  /// the COvValidationException or COvInvalidStateException that tells what is wrong with it, with the path, line and
  /// column where there are any; see CJsonContext for the form.
  CBinaryData LoadJson(const char* text);
  CBinaryData LoadJson(std::string_view text);
  /// The same for terminated UTF-16 text, which is taken as it is.
  CBinaryData LoadJson(const WChar* text);
  /// The same for bytes of UTF-8, plain or in a gzip or zlib wrapper. The bytes are not kept.
  CBinaryData LoadJsonStream(const unsigned char* data, std::size_t length);
  /// The same for a file, which is read as a whole whatever AsyncFromXmlFile says.
  CBinaryData LoadJsonFile(const WChar* path);
  CBinaryData LoadJsonFile(const std::filesystem::path& path);

  /// The document element; null before a load. Owned by the document.
  CXmlElement* GetDocumentElement() const noexcept;
  /// How many elements the tree has.
  std::size_t GetElementCount() const noexcept;

  /// The namespace that the document declares for an alias, the empty alias being the default namespace; empty for
  /// none. One map serves the whole document, so of an alias declared twice the last declaration counts, wherever it
  /// stood.
  WString LookupNamespaceFromAlias(const WChar* alias) const;
  /// The first alias, in code unit order, that the document declares for a namespace; empty for none.
  WString LookupAliasFromNamespace(const WChar* uri) const;

  /// Gives the memory that is kept for later documents to the system: up to 128 MiB in the process, and up to 1 MiB
  /// that this thread keeps for itself; that of other threads stays until they end. Any thread may call it at any time.
  static void ReleaseSpareMemory() noexcept;

 protected:
  /// Drops the tree and the namespaces. Each load calls it first.
  virtual void Cleanup();

 private:
  friend class CXmlElement;
  friend class CXmlObjectBase;
  friend class CXmlAttribute;

  static std::filesystem::path PathOf(const WChar* path);
  static ClassType& Record();

  CBinaryData ReadWhole(const std::filesystem::path& path) const;
  CBinaryData ReadToEnd(platform::File& file, const std::filesystem::path& path) const;
  void LoadInChunks(const std::filesystem::path& path);
  void Parse(const unsigned char* data, std::size_t length);
  void ParseText(const unsigned char* data, std::size_t length);
  bool ReadPlain(WStringView text);
  bool ReadPlain(const unsigned char* data, std::size_t length, DeclaredEncoding declared);
  void CheckInputLength(std::uint64_t length) const;
  JsonInput OpenJson(std::string_view text);
  JsonInput OpenJson(WStringView text);
  JsonInput OpenJsonStream(const unsigned char* data, std::size_t length);
  JsonInput OpenJsonFile(const std::filesystem::path& path);
  CBinaryData ParseJson(JsonInput input) const;
  /// Adds line and column to an exception that has the path of an element or attribute. `load` is what loaded the
  /// document: it does so once more, up to that element.
  void AddPlace(COvException& exception, const std::function<void(CXmlDocument&)>& load) const;

  const CSerializationContext* m_context;  // not owned
  std::unique_ptr<DocumentTree> m_tree;
};

}  // namespace OvXmlLib16
