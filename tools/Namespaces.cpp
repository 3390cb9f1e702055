#include "tools/Namespaces.h"

#include "tools/Source.h"

namespace ovxml {

namespace {

constexpr std::size_t kMostDeclarations = 1000;  // a root with all of them can still be read under the default limits

constexpr WStringView kDeclaration = u"xmlns";
constexpr WStringView kXmlNamespace = u"http://www.w3.org/XML/1998/namespace";

const WString kXmlAlias = u"xml";

// An alias that is none of `taken`, and is from now on.
WString NewAlias(std::set<WString>& taken) {
  for (std::size_t number = 1;; ++number) {
    const WString alias = OvXmlLib16::ToWide("ns" + std::to_string(number));
    if (taken.insert(alias).second) return alias;
  }
}

}  // namespace

/// For documents read as XML without namespaces.
class Namespaces::TextSurvey : public DocumentEvents {
 public:
  explicit TextSurvey(Namespaces& result) : m_result(result) {}

  void OnStart(const CXmlElement& element) override {
    const bool isRoot = element.GetParentElm() == nullptr;
    ForEachAttribute(element, [&](const CXmlAttribute& attribute) {
      const WStringView name = attribute.GetLocalName();
      if (!name.starts_with(kDeclaration)) return;
      const WStringView rest = name.substr(kDeclaration.size());
      if (!rest.empty() && rest.front() != u':') return;
      if (rest.empty() && isRoot) m_result.m_rootDefault = attribute.GetValueView();
      if (rest.empty() && attribute.GetValueView().empty()) m_result.m_leavesDefault = true;
      m_result.Add(WString(rest.substr(rest.empty() ? 0 : 1)), WString(attribute.GetValueView()));
    });
  }

 private:
  Namespaces& m_result;
};

/// For trees, of which the declarations can only be asked for by what is in them.
class Namespaces::TreeSurvey : public DocumentEvents {
 public:
  TreeSurvey(Namespaces& result, const OvXmlLib16::CXmlDocument& tree) : m_result(result), m_tree(tree) {
    const WString& ofRoot = tree.GetDocumentElement()->GetNamespaceURI();
    if (ofRoot == tree.LookupNamespaceFromAlias(u"")) m_result.m_rootDefault = ofRoot;
  }

  void OnStart(const CXmlElement& element) override {
    const WString& ns = element.GetNamespaceURI();
    AddNamespace(ns);
    if (ns.empty()) m_result.m_leavesDefault = true;
    ForEachAttribute(element, [this](const CXmlAttribute& attribute) {
      const WString& ofAttribute = attribute.GetNamespaceURI();
      AddNamespace(ofAttribute);
      if (!ofAttribute.empty()) m_result.m_prefixed.insert(ofAttribute);
      AddPrefixesIn(attribute.GetValueView());
    });
  }

  void OnText(const TextPiece& piece) override { AddPrefixesIn(piece.text); }

 private:
  void AddNamespace(const WString& uri) {
    if (!uri.empty() && m_uris.insert(uri).second) m_result.Add(m_tree.LookupAliasFromNamespace(uri.c_str()), uri);
  }

  // Values may use prefixes, as names of types do: what stands ahead of each colon.
  void AddPrefixesIn(WStringView value) {
    constexpr std::size_t kLongest = 64;
    constexpr WStringView kNoNames = u" \t\n\r/|@()[]{}<>=,;:*+\"'";
    for (std::size_t end = value.find(u':'); end != WStringView::npos; end = value.find(u':', end + 1)) {
      const std::size_t before = end == 0 ? WStringView::npos : value.find_last_of(kNoNames, end - 1);
      const std::size_t start = before == WStringView::npos ? 0 : before + 1;
      if (end == start || end - start > kLongest) continue;
      const WString prefix(value.substr(start, end - start));
      if (m_prefixes.insert(prefix).second) m_result.Add(prefix, m_tree.LookupNamespaceFromAlias(prefix.c_str()));
    }
  }

  Namespaces& m_result;
  const OvXmlLib16::CXmlDocument& m_tree;
  std::set<WString> m_uris, m_prefixes;  // that were looked up
};

Namespaces::Namespaces(const Source& source, const CSerializationContext& context, Progress& progress) {
  if (source.GetTree() != nullptr) {
    TreeSurvey survey(*this, *source.GetTree());
    source.Read(survey, progress);
    return;
  }
  CSerializationContext raw(context);
  raw.SetSchemaType(OvXmlLib16::SchemaType_NoNamespaces);
  TextSurvey survey(*this);
  source.Read(raw, survey, progress);
}

void Namespaces::Add(WString alias, WString uri) {
  if (uri.empty() || uri == kXmlNamespace || alias == kXmlAlias || m_declarations.size() == kMostDeclarations) return;
  if (!m_seen.emplace(alias, uri).second) return;
  m_declarations.push_back({alias, uri});
  if (!alias.empty()) m_prefixed.insert(uri);
  // The writer takes all URIs that begin so for the one that needs no declaration.
  if (alias.empty() || uri.starts_with(kXmlNamespace) || !m_taken.insert(alias).second) return;
  if (!m_aliases.emplace(uri, alias).second) m_further.push_back({std::move(alias), std::move(uri)});
}

const WString* Namespaces::FindAlias(const WString& uri) const {
  if (uri == kXmlNamespace) return &kXmlAlias;
  const auto found = m_aliases.find(uri);
  return found == m_aliases.end() ? nullptr : &found->second;
}

void Namespaces::DeclareAtRoot(OvXmlLib16::CXmlWriter& writer) const {
  for (const auto& [uri, alias] : m_aliases) writer.AddNamespace(alias, uri);
  const WString& byDefault = m_leavesDefault ? WString() : m_rootDefault;
  if (!byDefault.empty()) writer.SetDefaultNamespace(byDefault);
  std::set<WString> taken = m_taken, done;
  for (const Declaration& declaration : m_declarations) {
    const WString& uri = declaration.uri;
    const bool hasAlias = m_aliases.contains(uri) || uri.starts_with(kXmlNamespace);
    const bool needsAlias = !hasAlias && (uri != byDefault || m_prefixed.contains(uri));
    if (needsAlias && done.insert(uri).second) writer.AddNamespace(NewAlias(taken), uri);
  }
}

}  // namespace ovxml
