// The namespaces that W3C recommendations fix.
#pragma once

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// XML Schema Part 1, section 2.6: `type`, `nil`, `schemaLocation`, `noNamespaceSchemaLocation`.
inline constexpr WStringView kXsiNamespace = u"http://www.w3.org/2001/XMLSchema-instance";
/// Namespaces in XML 1.0, section 3: the prefix `xmlns`.
inline constexpr WStringView kXmlnsNamespace = u"http://www.w3.org/2000/xmlns/";
/// Namespaces in XML 1.0, section 3: the prefix `xml`.
inline constexpr WStringView kXmlNamespace = u"http://www.w3.org/XML/1998/namespace";

}  // namespace OvXmlLib16
