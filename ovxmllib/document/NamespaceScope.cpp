#include "ovxmllib/document/NamespaceScope.h"

#include <algorithm>

#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/foundation/KeptNames.h"

namespace OvXmlLib16 {

namespace {

constexpr std::size_t kLetters = 26;

// Two letters for the first 676 numbers, then three, then four.
WString AliasOfNumber(std::size_t number) {
  std::size_t length = 2;
  for (std::size_t count = kLetters * kLetters; number >= count; count *= kLetters, ++length) number -= count;
  WString alias(length, u'A');
  for (std::size_t i = length; i-- > 0; number /= kLetters) alias[i] = static_cast<WChar>(u'A' + number % kLetters);
  return alias;
}

const WString& XmlAlias() noexcept {
  static const WString alias = u"xml";
  return alias;
}

auto LowerBound(auto& entries, WStringView uri) {
  return std::lower_bound(
      entries.begin(), entries.end(), uri,
      [](const NamespaceScope::Entry& entry, WStringView wanted) { return entry.uri.compare(wanted) < 0; });
}

}  // namespace

void NamespaceScope::SetDefaultNamespace(WStringView uri) {
  m_keptDefault = nullptr;
  m_defaultNamespace = uri;
  m_keptDefault = FindKeptName(uri);
}

const WString* NamespaceScope::FindAlias(WStringView uri) const noexcept {
  // One name after the other is in the same namespace.
  if (m_lastFound >= m_entries.size() || !AreSame(m_entries[m_lastFound].uri, uri)) {
    const auto found = LowerBound(m_entries, uri);
    if (found == m_entries.end() || !AreSame(found->uri, uri))
      return AreSame(uri, kXmlNamespace) ? &XmlAlias() : nullptr;
    m_lastFound = static_cast<std::size_t>(found - m_entries.begin());
  }
  const WString& alias = m_entries[m_lastFound].alias;
  return alias.empty() ? nullptr : &alias;
}

void NamespaceScope::Set(WStringView uri, WStringView alias) {
  const auto found = LowerBound(m_entries, uri);
  if (found == m_entries.end() || found->uri != uri) {
    m_entries.insert(found, {WString(uri), WString(alias)});
    return;
  }
  found->alias = alias;
  m_firstCandidate = 0;  // the alias that it had is free again
}

bool NamespaceScope::IsAliasTaken(WStringView alias) const noexcept {
  return std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry& entry) { return entry.alias == alias; });
}

WString NamespaceScope::GenerateAlias() {
  while (true) {
    WString candidate = AliasOfNumber(m_firstCandidate);
    if (!IsAliasTaken(candidate)) return candidate;
    ++m_firstCandidate;
  }
}

}  // namespace OvXmlLib16
