// The namespace list of wildcards (XML Schema Part 1, section 3.10.2, attribute `namespace`).
#pragma once

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// Whether `ns` is allowed by `allowed`, tokens separated by single blanks: "##any", "##other" (differs from `target`),
/// "##local" (no namespace), "##targetNamespace", or a URI.
/// Deliberate: a URI token lets an unqualified name pass as well, and an empty list is one empty token.
bool IsNamespaceInList(WStringView ns, WStringView allowed, WStringView target);

/// Throws COvInvalidNamespaceException, with an empty path, when IsNamespaceInList says no.
void TestNamespace(WStringView ns, WStringView allowed, WStringView target);

}  // namespace OvXmlLib16
