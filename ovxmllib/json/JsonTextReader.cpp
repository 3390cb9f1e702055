#include "ovxmllib/json/JsonTextReader.h"

#include "ovxmllib/json/JsonParser.h"

namespace OvXmlLib16 {

CJsonTextReader::CJsonTextReader(WStringView text) : CInstanceMonitor(Record()), m_strText(text) {}

CJsonTextReader::~CJsonTextReader() = default;

CInstanceMonitor::ClassType& CJsonTextReader::Record() {
  static ClassType& record = FindClass(u"CJsonTextReader");
  return record;
}

void CJsonTextReader::Parse() {
  JsonParser<WChar, CJsonReaderDefaultHandler>(m_strText, m_handler, m_bAllowComments).Parse(m_strRootElementName);
}

}  // namespace OvXmlLib16
