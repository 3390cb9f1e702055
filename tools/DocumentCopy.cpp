#include "tools/DocumentCopy.h"

namespace ovxml {

void DocumentCopy::ToXml_Int(OvXmlLib16::CXmlWriter* writer, bool, const OvXmlLib16::WChar*,
                             const CSerializationContext&, bool) const {
  m_source.Read(*m_makeCopier(*writer, m_plan), m_progress);
}

}  // namespace ovxml
