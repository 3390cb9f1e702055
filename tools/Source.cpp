#include "tools/Source.h"

#include "tools/JsonInput.h"

namespace ovxml {

using OvXmlLib16::COvException;
using OvXmlLib16::CXmlDocument;

Source::Source(const std::string& name, const CSerializationContext& context)
    : m_input(name, context.GetMaxInputBytes()), m_format(FormatOf(m_input)), m_context(context) {
  try {
    ReadAhead();
  } catch (const COvException& exception) {
    throw ovxml::FailureOf(exception, name, name);
  }
}

Source::~Source() = default;

void Source::ReadAhead() {
  const bool hasRootName = !m_context.GetJsonContext()->GetRootElementName().empty();
  if (hasRootName && m_format.kind != FormatKind::kJson) {
    throw Failure{kUsage, m_input.GetName() + ": --root is for JSON, and this is " + m_format.title};
  }
  if (m_format.kind == FormatKind::kJson) m_converted.emplace(m_input.GetName(), ConvertJson(m_input, m_context));
  if (m_format.kind != FormatKind::kFastInfoset) return;
  OvXmlLib16::AsyncFromXmlFile(false);
  m_tree = std::make_unique<CXmlDocument>(m_context);
  m_tree->Load(m_input.GetPath());
}

std::uint64_t Source::GetBytesPerReading() const noexcept {
  if (m_tree) return 0;
  return (m_converted ? *m_converted : m_input).GetSize();
}

void Source::Read(const CSerializationContext& context, DocumentEvents& events, Progress& progress) const {
  if (m_tree) return WalkTree(*m_tree->GetDocumentElement(), events, progress);
  if (!m_converted) return ReadText(m_input, context, events, progress);
  CSerializationContext ofText(context);
  ofText.SetMaxInputBytes(0);  // the JSON text has passed it
  WithoutFormatting bare(events);
  ReadText(*m_converted, ofText, bare, progress);
}

// In what was made of JSON, places are of no use to anybody.
Failure Source::FailureOf(const COvException& exception, const std::string& output) const {
  return ovxml::FailureOf(exception, m_input.GetName(), output, m_converted ? Place::kElsewhere : Place::kKnown);
}

}  // namespace ovxml
