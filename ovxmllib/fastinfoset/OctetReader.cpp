#include "ovxmllib/fastinfoset/OctetReader.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16::fastinfoset {

void OctetReader::Fail(const WChar* message) const {
  throw COvException(message, COvException(FormatString(u"Octet %d of %d.", m_at - m_start, GetLength())));
}

void OctetReader::ThrowEnd() const { Fail(u"Failed to parse FastInfoset. Unexpected End of File."); }

}  // namespace OvXmlLib16::fastinfoset
