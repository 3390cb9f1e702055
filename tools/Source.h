// A document of any format, ready to be read as events.
#pragma once

#include <memory>
#include <optional>

#include "tools/DocumentEvents.h"
#include "tools/Failure.h"
#include "tools/Formats.h"

namespace ovxml {

/// XML is read from its file each time, in flat memory. JSON is converted to XML in a scratch file once. Fast Infoset
/// is in memory as a tree: the library reads it in no other way.
class Source {
 public:
  /// `name` as Input takes it. Throws Failure when it cannot be read or is no document, as far as that is known before
  /// it is read as events. The context is not owned and must outlive the object.
  Source(const std::string& name, const CSerializationContext& context);
  ~Source();

  const Input& GetInput() const noexcept { return m_input; }
  const Format& GetFormat() const noexcept { return m_format; }
  /// The bytes that each reading goes over.
  std::uint64_t GetBytesPerReading() const noexcept;
  /// The document as a tree, or null for one that is text.
  const OvXmlLib16::CXmlDocument* GetTree() const noexcept { return m_tree.get(); }

  /// Reports the document to `events`. Throws COvException, and what `events` throws.
  void Read(DocumentEvents& events, Progress& progress) const { Read(m_context, events, progress); }
  /// The same for a document that is text, with another context.
  void Read(const CSerializationContext& context, DocumentEvents& events, Progress& progress) const;

  /// What the library threw while it read this document and wrote `output`.
  Failure FailureOf(const OvXmlLib16::COvException& exception, const std::string& output) const;

 private:
  void ReadAhead();

  const Input m_input;
  const Format& m_format;
  const CSerializationContext& m_context;
  std::optional<Input> m_converted;                  // what JSON stands for
  std::unique_ptr<OvXmlLib16::CXmlDocument> m_tree;  // of Fast Infoset
};

}  // namespace ovxml
