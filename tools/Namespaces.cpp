#include "tools/Namespaces.h"

namespace ovxml {

namespace {

constexpr std::size_t kMostDeclarations = 1000;  // a root with all of them can still be read under the default limits

constexpr WStringView kDeclaration = u"xmlns";
constexpr WStringView kXmlNamespace = u"http://www.w3.org/XML/1998/namespace";

const WString kXmlAlias = u"xml";

}  // namespace

class Namespaces::Survey : public DocumentEvents {
 public:
  explicit Survey(Namespaces& result) : m_result(result) {}

  void OnStart(const CXmlElement& element) override {
    const bool isRoot = element.GetParentElm() == nullptr;
    ForEachAttribute(element, [&](const CXmlAttribute& attribute) {
      const WStringView name = attribute.GetLocalName();
      if (!name.starts_with(kDeclaration)) return;
      const WStringView rest = name.substr(kDeclaration.size());
      if (!rest.empty() && rest.front() != u':') return;
      if (rest.empty() && isRoot) m_result.m_rootDefault = attribute.GetValueView();
      m_result.Add(WString(rest.substr(rest.empty() ? 0 : 1)), WString(attribute.GetValueView()));
    });
  }

 private:
  Namespaces& m_result;
};

Namespaces::Namespaces(const Input& input, const CSerializationContext& context, Progress& progress) {
  CSerializationContext raw(context);
  raw.SetSchemaType(OvXmlLib16::SchemaType_NoNamespaces);
  Survey survey(*this);
  ReadEvents(input, raw, survey, progress);
}

void Namespaces::Add(WString alias, WString uri) {
  if (uri.empty() || alias == kXmlAlias || m_declarations.size() == kMostDeclarations) return;
  if (!m_seen.emplace(alias, uri).second) return;
  m_declarations.push_back({alias, uri});
  // The writer takes all URIs that begin so for the one that needs no declaration.
  if (alias.empty() || uri.starts_with(kXmlNamespace) || !m_taken.insert(alias).second) return;
  if (!m_aliases.emplace(uri, alias).second) m_further.push_back({std::move(alias), std::move(uri)});
}

const WString* Namespaces::FindAlias(const WString& uri) const {
  if (uri == kXmlNamespace) return &kXmlAlias;
  const auto found = m_aliases.find(uri);
  return found == m_aliases.end() ? nullptr : &found->second;
}

}  // namespace ovxml
