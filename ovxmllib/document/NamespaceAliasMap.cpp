#include "ovxmllib/document/NamespaceAliasMap.h"

#include <algorithm>
#include <iterator>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16 {

CNamespaceAliasMap::~CNamespaceAliasMap() = default;

void CNamespaceAliasMap::Add(const WChar* alias, const WChar* ns) { m_aliases[WString(ViewOf(ns))] = ViewOf(alias); }

void CNamespaceAliasMap::RemoveNamespace(const WChar* ns) {
  if (const auto entry = m_aliases.find(ViewOf(ns)); entry != m_aliases.end()) m_aliases.erase(entry);
}

// Deliberate: asking for a namespace adds it.
WString CNamespaceAliasMap::GetAliasFromNamespace(const WChar* ns) { return m_aliases[WString(ViewOf(ns))]; }

CNamespaceAliasMap::Aliases::const_iterator CNamespaceAliasMap::FindAlias(const WChar* alias) const {
  const auto hasAlias = [wanted = ViewOf(alias)](const auto& entry) { return entry.second == wanted; };
  return std::find_if(m_aliases.begin(), m_aliases.end(), hasAlias);
}

WString CNamespaceAliasMap::GetNamespaceFromAlias(const WChar* alias) const {
  const auto entry = FindAlias(alias);
  if (entry == m_aliases.end()) throw COvException(FormatString(u"Namespace alias [%s] not found", ViewOf(alias)));
  return entry->first;
}

bool CNamespaceAliasMap::DoesNamespaceExist(const WChar* ns) const { return m_aliases.contains(ViewOf(ns)); }

bool CNamespaceAliasMap::DoesAliasExist(const WChar* alias) const { return FindAlias(alias) != m_aliases.end(); }

WString CNamespaceAliasMap::GetNamespaceAt(int index) const {
  if (index < 0 || index >= GetNamespaceCount()) {
    // Decided: see docs/decisions.md.
    throw COvInvalidParamException(FormatString(u"There is no namespace at index %d.", index));
  }
  return std::next(m_aliases.begin(), index)->first;
}

}  // namespace OvXmlLib16
