#include "ovxmllib/document/PlainNames.h"

#include <algorithm>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/document/WellKnownNamespaces.h"

namespace OvXmlLib16 {

using plaintext::Position;

namespace {

// Prefixes are looked for one by one; documents that have more of them at once are left to the parser.
constexpr std::size_t kMaxBindings = 64;

constexpr char kSeparator = '|';  // as NameTable takes it

Position EndOfNcName(Position at, Position end) noexcept {
  if (at == end || !plaintext::Is(plaintext::kNameStart, *at)) return at;
  return std::find_if_not(at, end, [](char c) { return plaintext::Is(plaintext::kNameByte, c); });
}

bool EndsName(char c) noexcept { return plaintext::IsAscii(c) && c != ':' && !plaintext::Is(plaintext::kNameByte, c); }

// A URI that stands for itself in the text and in a name.
bool IsPlainUri(std::string_view uri) noexcept {
  return std::all_of(uri.begin(), uri.end(), [](char c) { return c > ' ' && c < 0x7F && c != '&' && c != kSeparator; });
}

const std::string& XmlNamespace() {
  static const std::string uri = ToUtf8(kXmlNamespace);
  return uri;
}

bool IsReserved(std::string_view uri) {
  static const std::string xmlns = ToUtf8(kXmlnsNamespace);
  return uri == XmlNamespace() || uri == xmlns;
}

}  // namespace

PlainName::PlainName(std::string_view name) noexcept
    : text(name), colon(name.find(':') == std::string_view::npos ? 0 : name.find(':')), declares(IsDeclaration()) {
  name.copy(head.data(), head.size());
}

bool PlainName::StandsAt(Position at, Position end) const noexcept {
  const auto left = static_cast<std::size_t>(end - at);
  if (left <= text.size()) return false;
  if (left < kHead) return std::string_view(at, text.size()) == text && EndsName(at[text.size()]);
  plaintext::Block own, found;
  std::memcpy(&own, head.data(), sizeof own);
  std::memcpy(&found, at, sizeof found);
  const std::size_t same = plaintext::FirstOf(own != found);
  if (same < std::min(text.size(), kHead)) return false;
  if (text.size() > kHead && std::memcmp(at + kHead, text.data() + kHead, text.size() - kHead) != 0) return false;
  return EndsName(at[text.size()]);
}

PlainNames::PlainNames(DocumentTree& tree, bool withNamespaces) : m_tree(tree), m_withNamespaces(withNamespaces) {
  m_bindings.push_back({"xml", XmlNamespace()});
  m_scopes.push_back({m_lastScope, 0});
}

// Documents repeat themselves: the name behind a name is nearly always the one that was there before.
PlainName* PlainNames::Find(Position at, Position end) {
  PlainName* const expected = m_last == nullptr ? nullptr : m_last->follower;
  PlainName* const found = expected != nullptr && expected->StandsAt(at, end) ? expected : FindAnew(at, end);
  if (m_last != nullptr) m_last->follower = found;
  m_last = found;
  return found;
}

PlainName* PlainNames::FindAnew(Position at, Position end) {
  Position behind = EndOfNcName(at, end);
  if (behind == at || behind == end) return nullptr;
  if (*behind == ':') {
    const Position local = behind + 1;
    behind = EndOfNcName(local, end);
    if (behind == local || behind == end) return nullptr;
  }
  if (!EndsName(*behind)) return nullptr;
  const std::string_view text(at, static_cast<std::size_t>(behind - at));
  const auto known = m_names.find(text);
  return &(known != m_names.end() ? known : m_names.emplace(text, PlainName(text)).first)->second;
}

const ExpandedName* PlainNames::ResolveAnew(PlainName& name, PlainName::Meaning& meaning, bool isElement) {
  const ExpandedName* found = nullptr;
  if (!m_withNamespaces || (name.colon == 0 && !isElement)) {
    found = &m_tree.InternName(name.text);
  } else if (const std::string_view* const uri = FindNamespace(name.Prefix())) {
    found = &m_tree.InternName(*uri, name.Local());
  }
  if (found != nullptr) meaning = {found, m_scopes.back().number};
  return found;
}

const std::string_view* PlainNames::FindNamespace(std::string_view prefix) const noexcept {
  static constexpr std::string_view kNone;
  const auto found = std::find_if(m_bindings.rbegin(), m_bindings.rend(),
                                  [&](const Binding& binding) { return binding.prefix == prefix; });
  if (found != m_bindings.rend()) return &found->uri;
  return prefix.empty() ? &kNone : nullptr;
}

void PlainNames::OpenScope() { m_scopes.push_back({++m_lastScope, m_bindings.size()}); }

// Beside what Namespaces in XML 1.0, section 3, forbids, the parser refuses a URI that holds its separator.
bool PlainNames::Declare(const PlainName& declaration, std::string_view uri) {
  const std::string_view prefix = declaration.colon == 0 ? std::string_view() : declaration.Local();
  if (prefix == "xml" || prefix == "xmlns" || IsReserved(uri)) return false;
  if (uri.empty() && !prefix.empty()) return false;
  if (!IsPlainUri(uri) || m_bindings.size() == kMaxBindings) return false;
  m_tree.DeclareNamespace(prefix, uri);
  m_bindings.push_back({prefix, uri});
  return true;
}

void PlainNames::CloseScope() noexcept {
  m_bindings.resize(m_scopes.back().bindings);
  m_scopes.pop_back();
}

}  // namespace OvXmlLib16
