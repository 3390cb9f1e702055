#include "ovxmllib/values/NamespaceList.h"

#include <algorithm>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

namespace {

bool DoesTokenAllow(WStringView token, WStringView ns, WStringView target) {
  if (token == u"##any") return true;
  if (token == u"##other") return ns != target;
  if (token == u"##local") return ns.empty();
  if (token == u"##targetNamespace") return ns == target;
  return ns == token || ns.empty();
}

}  // namespace

bool IsNamespaceInList(WStringView ns, WStringView allowed, WStringView target) {
  while (true) {
    const std::size_t blank = std::min(allowed.find(u' '), allowed.size());
    if (DoesTokenAllow(allowed.substr(0, blank), ns, target)) return true;
    if (blank == allowed.size()) return false;
    allowed.remove_prefix(blank + 1);
  }
}

void TestNamespace(WStringView ns, WStringView allowed, WStringView target) {
  if (IsNamespaceInList(ns, allowed, target)) return;
  throw COvInvalidNamespaceException(
      FormatString(u"Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is [%s].", ns,
                   allowed, target),
      WString());
}

}  // namespace OvXmlLib16
