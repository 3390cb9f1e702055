#include "ovxmllib/json/JsonTreeReader.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <optional>
#include <utility>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/json/JsonNamespaces.h"
#include "ovxmllib/json/JsonParser.h"
#include "ovxmllib/json/JsonToElements.h"

namespace OvXmlLib16 {

namespace {

constinit std::atomic<bool> g_isOn = true;

// Thrown where the other road is to be taken.
struct Declined {};

// More elements are open only in documents that are built to have them.
constexpr std::size_t kMaxDepth = 128;
// Each is compared with all before it.
constexpr std::size_t kMaxAttributes = 32;

constexpr bool IsNameStart(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

// The characters of names, and the colon as another kind (XML 1.0, section 2.3, those of ASCII).
enum class NameClass : unsigned char { None, Start, Inner, Colon };
constexpr auto kNameClasses = [] {
  std::array<NameClass, 256> classes{};
  for (std::size_t i = 0; i < 128; ++i) {
    const char c = static_cast<char>(i);
    const bool isInner = (c >= '0' && c <= '9') || c == '-' || c == '.';
    classes[i] = IsNameStart(c) ? NameClass::Start
                 : isInner      ? NameClass::Inner
                 : c == ':'     ? NameClass::Colon
                                : NameClass::None;
  }
  return classes;
}();

// name = ncname [ ":" ncname ]
bool IsPlainName(std::string_view name) noexcept {
  bool expectsStart = true, hasColon = false;
  for (const char c : name) {
    const NameClass kind = kNameClasses[static_cast<unsigned char>(c)];
    if (kind == NameClass::Start) {
      expectsStart = false;
    } else if (kind == NameClass::None || expectsStart) {
      return false;
    } else if (kind == NameClass::Colon) {
      if (std::exchange(hasColon, true)) return false;
      expectsStart = true;
    }
  }
  return !expectsStart;
}

std::string_view LocalName(std::string_view name) noexcept { return name.substr(name.find(':') + 1); }

// Whether the text stands in XML as it is, escaping apart, and is read back so. U+FFFE and U+FFFF are not allowed.
bool IsPlainText(std::string_view text) noexcept {
  if (!json_scan::MayHoldUnusual(text)) return true;
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t'; };
  return std::none_of(text.begin(), text.end(), isControl) && text.find("\xEF\xBF\xBE") == text.npos &&
         text.find("\xEF\xBF\xBF") == text.npos;
}

// Writes elements as JsonToElements calls for them.
class TreeOutput {
 public:
  using StoredName = std::string_view;

  TreeOutput(const CSerializationContext& context, DocumentTree& tree)
      : m_tree(tree), m_hasNamespaces(context.GetSchemaType() != SchemaType_NoNamespaces) {
    m_levels.reserve(kMaxDepth);
  }

  void StartDocument() {}
  void StartElement(std::string_view name);
  void WriteAttribute(std::string_view name, std::string_view value);
  void WriteText(std::string_view text);
  void EndElement();

  // Whether the calls have made one whole document.
  bool IsComplete() const noexcept { return m_levels.empty() && m_tree.GetDocumentElement() != nullptr; }

  [[noreturn]] static void Decline() { throw Declined(); }
  [[noreturn]] static void FailEmptyName() { Decline(); }
  [[noreturn]] static void FailNamelessArray() { Decline(); }
  [[noreturn]] static void FailAttributeArray(std::string_view) { Decline(); }
  [[noreturn]] static void FailOutside(std::string_view, bool) { Decline(); }

 private:
  struct Attribute {
    std::string_view name;
    std::size_t valueStart, valueLength;
  };
  struct Level {
    bool isInStartTag;
    bool hasChildren;
  };

  static std::optional<std::string_view> DeclaredPrefix(std::string_view name) noexcept;

  std::string_view ValueOf(const Attribute& attribute) const noexcept {
    return std::string_view(m_values).substr(attribute.valueStart, attribute.valueLength);
  }
  void CloseStartTag();
  void Declare(std::string_view prefix, std::string_view uri);
  std::string_view Expand(std::string_view name, bool isElement);
  void IndentText(std::size_t depth);

  DocumentTree& m_tree;
  const bool m_hasNamespaces;
  JsonNamespaces m_namespaces;
  std::vector<Level> m_levels;  // of the open elements
  std::string_view m_name;      // of the start tag that is open, as are the next two
  std::vector<Attribute> m_attributes;
  std::string m_values;         // of the attributes
  bool m_isLineEndDue = false;  // behind what ended last in the open element
};

void TreeOutput::StartElement(std::string_view name) {
  if (!IsPlainName(name)) Decline();
  const std::size_t depth = m_levels.size();
  if (depth == kMaxDepth || (depth == 0 && m_tree.GetDocumentElement() != nullptr)) Decline();
  if (depth != 0) {
    if (m_levels.back().isInStartTag) {
      CloseStartTag();
      m_isLineEndDue = true;
    }
    m_levels.back().hasChildren = true;
    IndentText(depth);
  }
  m_name = name;
  m_levels.push_back({/*isInStartTag=*/true, /*hasChildren=*/false});
}

// A tab would be read as a blank. Attributes of one local name may be the same attribute.
void TreeOutput::WriteAttribute(std::string_view name, std::string_view value) {
  const auto isSame = [&](const Attribute& other) { return LocalName(other.name) == LocalName(name); };
  if (!m_levels.back().isInStartTag || m_attributes.size() == kMaxAttributes) Decline();
  if (!IsPlainText(value) || value.find('\t') != value.npos) Decline();
  if (std::any_of(m_attributes.begin(), m_attributes.end(), isSame)) Decline();
  m_attributes.push_back({name, m_values.size(), value.size()});
  m_values += value;
}

void TreeOutput::WriteText(std::string_view text) {
  if (text.empty()) return;
  if (!IsPlainText(text) || text.starts_with("<![CDATA[")) Decline();
  if (m_levels.back().isInStartTag) CloseStartTag();
  if (m_isLineEndDue) IndentText(0);
  m_tree.AppendText(text);
}

void TreeOutput::EndElement() {
  const std::size_t depth = m_levels.size() - 1;
  if (m_levels.back().isInStartTag) {
    CloseStartTag();
  } else if (m_levels.back().hasChildren) {
    IndentText(depth);
  }
  m_levels.pop_back();
  m_namespaces.EndElement(depth);
  m_tree.EndElement();
  m_isLineEndDue = true;
}

// What formatting puts ahead of a tag at this depth, and behind the tag before it.
void TreeOutput::IndentText(std::size_t depth) {
  static const std::string indentation = '\n' + std::string(kMaxDepth, '\t');
  const bool hasLineEnd = std::exchange(m_isLineEndDue, false);
  const std::string_view text = std::string_view(indentation).substr(hasLineEnd ? 0 : 1, depth + (hasLineEnd ? 1 : 0));
  if (!text.empty()) m_tree.AppendText(text);
}

// The prefix that an attribute declares, empty for the default namespace; nothing if it declares none.
std::optional<std::string_view> TreeOutput::DeclaredPrefix(std::string_view name) noexcept {
  constexpr std::string_view kDeclaration = "xmlns";
  if (!name.starts_with(kDeclaration)) return std::nullopt;
  name.remove_prefix(kDeclaration.size());
  if (name.empty()) return name;
  return name.front() == ':' ? std::optional(name.substr(1)) : std::nullopt;
}

// Declarations come ahead of what they may serve.
void TreeOutput::CloseStartTag() {
  m_levels.back().isInStartTag = false;
  if (m_hasNamespaces) {
    const auto declares = [&](const Attribute& attribute) {
      const auto prefix = DeclaredPrefix(attribute.name);
      if (prefix) Declare(*prefix, ValueOf(attribute));
      return prefix.has_value();
    };
    m_attributes.erase(std::remove_if(m_attributes.begin(), m_attributes.end(), declares), m_attributes.end());
  }
  m_tree.StartElement(m_tree.InternName(Expand(m_name, /*isElement=*/true)));
  for (const Attribute& attribute : m_attributes) {
    m_tree.AddAttribute(m_tree.InternName(Expand(attribute.name, /*isElement=*/false)), ValueOf(attribute));
  }
  m_attributes.clear();
  m_values.clear();
}

// Leaves to the parser what it may refuse: the reserved prefixes and namespaces, no namespace at all, and URIs with the
// character that it separates names with.
void TreeOutput::Declare(std::string_view prefix, std::string_view uri) {
  static const std::string xml = ToUtf8(kXmlNamespace), xmlns = ToUtf8(kXmlnsNamespace);
  if (prefix.starts_with("xml") || uri.empty() || uri == xml || uri == xmlns) Decline();
  if (uri.find('|') != uri.npos || uri.find('\n') != uri.npos) Decline();
  m_tree.DeclareNamespace(prefix, uri);
  m_namespaces.Declare(prefix, uri, m_levels.size() - 1);
}

std::string_view TreeOutput::Expand(std::string_view name, bool isElement) {
  if (!m_hasNamespaces) return name;
  const std::string_view expanded = m_namespaces.Expand(name, isElement);
  if (expanded.empty()) Decline();
  return expanded;
}

// The handler of the grammar: the convention, a way out, and a look at names, which have to last.
class TreeHandler : public JsonToElements<char, TreeOutput> {
 public:
  TreeHandler(std::string_view document, std::string_view rootName, TreeOutput& output, JsonRoundTrip mode)
      : JsonToElements(output, mode), m_document(document), m_rootName(rootName) {}

  void Name(std::string_view name) {
    if (!IsPart(name, m_document) && !IsPart(name, m_rootName)) Decline();
    // An attribute may come to nothing, but its name counts.
    if (name.starts_with('@') && !IsPlainName(name.substr(1))) Decline();
    JsonToElements::Name(name);
  }
  [[noreturn]] static void Decline() { TreeOutput::Decline(); }

 private:
  static bool IsPart(std::string_view part, std::string_view whole) noexcept {
    const std::less_equal<> isNotBehind;
    return isNotBehind(whole.data(), part.data()) &&
           isNotBehind(part.data() + part.size(), whole.data() + whole.size());
  }

  const std::string_view m_document, m_rootName;
};

}  // namespace

void SetJsonTreeReaderForTest(bool on) noexcept { g_isOn = on; }

bool ReadJsonIntoTree(std::string_view text, const CSerializationContext& context, DocumentTree& tree) {
  if (!g_isOn) return false;
  const CJsonContext& options = *context.GetJsonContext();
  const std::string rootName = unicode::ToUtf8Lossy(options.GetRootElementName());
  try {
    TreeOutput output(context, tree);
    TreeHandler handler(text, rootName, output, options.GetSupportRoundtrip());
    JsonParser<char, TreeHandler>(text, handler, options.GetAllowComments()).Parse(rootName);
    return output.IsComplete();
  } catch (const Declined&) {
  } catch (const COvException&) {  // a limit of the tree
  }
  return false;
}

}  // namespace OvXmlLib16
