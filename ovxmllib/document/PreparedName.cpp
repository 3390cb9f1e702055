#include "ovxmllib/document/PreparedName.h"

#include "ovxmllib/foundation/KeptNames.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/UnitCopy.h"

namespace OvXmlLib16 {

PreparedName::PreparedName(WStringView name, WStringView ns)
    : m_name(name), m_namespace(ns), m_keptNamespace(FindKeptName(ns)), m_keptLocalName(FindKeptName(name)) {
  m_utf8Name.resize(unicode::kMaxUtf8PerUnit * name.size() + kRoomySlack);
  const unicode::Progress done = unicode::WritableToUtf8(name, reinterpret_cast<unsigned char*>(m_utf8Name.data()));
  if (done.read == name.size()) m_utf8Length = done.written;
}

}  // namespace OvXmlLib16
