// JSON as the XML document that it stands for.
#pragma once

#include "tools/DocumentEvents.h"
#include "tools/TempFile.h"

namespace ovxml {

/// Converts `input`, which is JSON, to XML in a scratch file, as the library does it: formatted. Throws COvException
/// with the place in the JSON text, where there is one, and Failure.
TempFile ConvertJson(const Input& input, const CSerializationContext& context);

/// Takes the white space out of the text of such a document that stands in it for the eye alone.
class WithoutFormatting : public DocumentEvents {
 public:
  /// `events` is told the rest; not owned.
  explicit WithoutFormatting(DocumentEvents& events) : m_events(events) {}

  void OnStart(const CXmlElement& element) override;
  void OnText(const TextPiece& piece) override;
  void OnEnd(const CXmlElement& element) override;

 private:
  DocumentEvents& m_events;
  std::size_t m_depth = 0;  // elements that are open
};

}  // namespace ovxml
