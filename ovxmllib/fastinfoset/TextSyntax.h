// The names and texts of XML.
#pragma once

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fastinfoset {

/// Whether `text` is an NCName (Namespaces in XML 1.0, section 3), or with `allowsColons` a Name (XML 1.0,
/// section 2.3).
bool IsName(WStringView text, bool allowsColons) noexcept;

/// Throws COvException, with the place as inner exception, at a character of a document that XML does not allow (XML
/// 1.0, section 2.2).
void CheckAllowed(WStringView text);

}  // namespace OvXmlLib16::fastinfoset
