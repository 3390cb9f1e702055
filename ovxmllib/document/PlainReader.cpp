#include "ovxmllib/document/PlainReader.h"

#include <algorithm>

#include "ovxmllib/document/DocumentTree.h"

namespace OvXmlLib16 {

using plaintext::Position;

namespace {

// Attributes with prefixes are compared each with each; tags with more of them are left to the parser.
constexpr std::size_t kMaxPrefixed = 32;

std::string_view Between(Position from, Position to) noexcept { return {from, static_cast<std::size_t>(to - from)}; }

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) noexcept {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == b; });
}

// XML 1.0, production 2, over UTF-8.
bool AreAllowed(std::string_view text) noexcept {
  Position at = text.data();
  const Position end = at + text.size();
  while (at != end) {
    if (plaintext::Is(plaintext::kCharacter, *at)) {
      ++at;
      continue;
    }
    if (plaintext::IsAscii(*at)) return false;
    at = plaintext::SkipHighCharacters(at, end);
    if (at == nullptr) return false;
  }
  return true;
}

}  // namespace

PlainReader::PlainReader(DocumentTree& tree, const CSerializationContext& context, DeclaredEncoding declared)
    : m_tree(tree),
      m_names(tree, context.GetSchemaType() != SchemaType_NoNamespaces),
      m_keepsSectionMarks(!context.GetStripCDATA()),
      m_declared(declared),
      m_maxAttributes(context.GetMaxAttributesPerElement()) {}

bool PlainReader::Read(const unsigned char* data, std::size_t length) {
  m_at = reinterpret_cast<Position>(data);
  m_end = m_at + length;
  Skip("\xEF\xBB\xBF");
  return ReadDeclaration() && ReadBetweenElements() && ReadTree() && ReadBetweenElements() && m_at == m_end;
}

// decl = "<?xml" S version [S encoding] [S standalone] [S] "?>"
bool PlainReader::ReadDeclaration() {
  constexpr std::string_view kStart = "<?xml";
  // Otherwise there is none; what only begins in the same way is an instruction.
  if (!Rest().starts_with(kStart) || Rest().size() == kStart.size() ||
      !plaintext::Is(plaintext::kSpace, m_at[kStart.size()]))
    return true;
  m_at += kStart.size();
  std::string_view value;
  if (!ReadPseudoAttribute("version", value) || value != "1.0") return false;
  if (ReadPseudoAttribute("encoding", value) && !IsEncodingSound(value)) return false;
  if (ReadPseudoAttribute("standalone", value) && value != "yes" && value != "no") return false;
  SkipSpace();
  return Skip("?>");
}

bool PlainReader::IsEncodingSound(std::string_view name) const noexcept {
  if (EqualsIgnoringCase(name, "utf-8")) return true;
  return m_declared == DeclaredEncoding::Outdated && EqualsIgnoringCase(name, "utf-16");
}

// Moves on only where the attribute stands.
bool PlainReader::ReadPseudoAttribute(std::string_view name, std::string_view& value) {
  const Position start = m_at;
  if (SkipSpace() && Skip(name) && Skip("=") && (Rest().starts_with('"') || Rest().starts_with('\''))) {
    const std::size_t end = Rest().find(*m_at, 1);
    if (end != std::string_view::npos) {
      value = Rest().substr(1, end - 1);
      m_at += end + 1;
      return true;
    }
  }
  m_at = start;
  return false;
}

// What may stand before and behind the document element: white space, comments and instructions.
bool PlainReader::ReadBetweenElements() {
  while (true) {
    SkipSpace();
    if (Rest().starts_with("<?")) {
      if (!ReadInstruction()) return false;
    } else if (Rest().starts_with("<!--")) {
      if (!ReadComment()) return false;
    } else {
      return true;
    }
  }
}

bool PlainReader::ReadTree() {
  if (!Rest().starts_with('<') || !ReadStartTag()) return false;
  while (!m_open.empty()) {
    if (!ReadText() || !ReadMarkup()) return false;
  }
  return true;
}

// Up to the next markup.
bool PlainReader::ReadText() {
  for (Position stop = m_at;;) {
    stop = plaintext::FindTextStop(stop, m_end);
    if (stop == m_end) return false;
    if (*stop == ']' || *stop == '\r') {
      const std::string_view rest = Between(stop, m_end);
      if (rest.starts_with("]]>")) return false;
      // The tree drops the carriage return of a line end; one alone is a line end itself (XML 1.0, section 2.11).
      if (*stop == ']' || rest.starts_with("\r\n")) {
        ++stop;
        continue;
      }
    }
    if (!plaintext::IsAscii(*stop)) {
      stop = plaintext::SkipHighCharacters(stop, m_end);
      if (stop == nullptr) return false;
      continue;
    }
    if (stop != m_at) m_tree.AppendText(Between(m_at, stop));
    m_at = stop;
    if (*stop == '<') return true;
    if (*stop == '\r') {
      m_tree.AppendText("\n");
      ++m_at;
    } else if (*stop != '&' || !AppendReferred()) {
      return false;
    }
    stop = m_at;
  }
}

bool PlainReader::AppendReferred() {
  const plaintext::Referred referred = plaintext::ReadReference(m_at, m_end);
  if (referred.next == nullptr) return false;
  m_tree.AppendText(referred.View());
  m_at = referred.next;
  return true;
}

// Within the document element, at a `<`.
bool PlainReader::ReadMarkup() {
  const char next = m_end - m_at < 2 ? '\0' : m_at[1];
  switch (next) {
    case '/':
      return ReadEndTag();
    case '?':
      return ReadInstruction();
    case '!':
      return Rest().starts_with("<!--") ? ReadComment() : ReadSection();
    default:
      return ReadStartTag();
  }
}

bool PlainReader::ReadStartTag() {
  PlainName* const name = m_names.Find(m_at + 1, m_end);
  if (name == nullptr) return false;
  m_at += 1 + name->text.size();
  m_attributes.clear();
  m_declares = false;
  m_prefixed = 0;
  ++m_tag;
  while (true) {
    const bool isSeparated = SkipSpace();
    if (m_at == m_end) return false;
    if (*m_at == '>' || *m_at == '/') break;
    if (!isSeparated || !ReadAttribute()) return false;
  }
  const bool isEmpty = *m_at == '/';
  if (!Skip(isEmpty ? "/>" : ">") || !OpenElementOf(*name)) return false;
  if (isEmpty) EndElement();
  return true;
}

bool PlainReader::ReadAttribute() {
  PlainName* const name = m_names.Find(m_at, m_end);
  if (name == nullptr || name->lastTag == m_tag) return false;
  name->lastTag = m_tag;
  m_at += name->text.size();
  if (*m_at != '=') {
    SkipSpace();
    if (m_at == m_end || *m_at != '=') return false;
  }
  ++m_at;
  SkipSpace();
  m_declares |= name->declares;
  m_prefixed += name->colon != 0 ? 1 : 0;
  Attribute attribute{name, {}, true};
  if (!ReadValue(attribute)) return false;
  if (m_attributes.size() == m_maxAttributes && m_maxAttributes != 0) return false;
  m_attributes.push_back(attribute);
  return true;
}

bool PlainReader::ReadValue(Attribute& attribute) {
  if (m_at == m_end || (*m_at != '"' && *m_at != '\'')) return false;
  const char quote = *m_at++;
  for (Position stop = m_at;;) {
    stop = plaintext::FindValueStop(stop, m_end, quote);
    if (stop == m_end) return false;
    if (*stop == quote) {
      attribute.value = Between(m_at, stop);
      m_at = stop + 1;
      return true;
    }
    if (!plaintext::IsAscii(*stop)) {
      stop = plaintext::SkipHighCharacters(stop, m_end);
      if (stop == nullptr) return false;
    } else if (*stop == '&' || plaintext::Is(plaintext::kSpace, *stop)) {
      attribute.isPlain = false;
      ++stop;
    } else {
      return false;
    }
  }
}

bool PlainReader::OpenElementOf(PlainName& name) {
  const bool hasScope = m_declares && m_names.WithNamespaces();
  if (hasScope) {
    m_names.OpenScope();
    for (const Attribute& attribute : m_attributes) {
      if (!attribute.name->declares) continue;
      if (!attribute.isPlain || !m_names.Declare(*attribute.name, attribute.value)) return false;
    }
  }
  const ExpandedName* const expanded = m_names.OfElement(name);
  if (expanded == nullptr) return false;
  m_tree.StartElement(*expanded);
  m_open.push_back({&name, hasScope});
  return m_attributes.empty() || AddAttributes();
}

bool PlainReader::AddAttributes() {
  const bool withNamespaces = m_names.WithNamespaces();
  const ExpandedName* prefixed[kMaxPrefixed];
  if (m_prefixed > kMaxPrefixed) return false;
  std::size_t count = 0;
  for (const Attribute& attribute : m_attributes) {
    if (attribute.name->declares && withNamespaces) continue;
    const ExpandedName* const name = m_names.OfAttribute(*attribute.name);
    if (name == nullptr) return false;
    if (attribute.name->colon != 0) {
      // Namespaces in XML 1.0, section 6.3.
      if (std::find(prefixed, prefixed + count, name) != prefixed + count) return false;
      prefixed[count++] = name;
    }
    if (!attribute.isPlain && !Decode(attribute.value)) return false;
    m_tree.AddAttribute(*name, attribute.isPlain ? attribute.value : m_decoded);
  }
  return true;
}

// XML 1.0, sections 2.11 and 3.3.3: white space becomes blanks, a line end one of them.
bool PlainReader::Decode(std::string_view value) {
  m_decoded.clear();
  const Position end = value.data() + value.size();
  for (Position at = value.data(); at != end;) {
    if (*at == '&') {
      const plaintext::Referred referred = plaintext::ReadReference(at, end);
      if (referred.next == nullptr) return false;
      m_decoded += referred.View();
      at = referred.next;
      continue;
    }
    if (*at == '\r' && at + 1 != end && at[1] == '\n') ++at;
    m_decoded += plaintext::Is(plaintext::kSpace, *at) ? ' ' : *at;
    ++at;
  }
  return true;
}

bool PlainReader::ReadEndTag() {
  m_at += 2;
  const PlainName& name = *m_open.back().name;
  if (!name.StandsAt(m_at, m_end)) return false;
  m_at += name.text.size();
  if (*m_at != '>') SkipSpace();
  if (!Skip(">")) return false;
  EndElement();
  return true;
}

void PlainReader::EndElement() {
  m_tree.EndElement();
  if (m_open.back().hasScope) m_names.CloseScope();
  m_open.pop_back();
}

bool PlainReader::ReadSection() {
  constexpr std::string_view kStart = "<![CDATA[", kEnd = "]]>";
  if (!Skip(kStart)) return false;
  const Position start = m_at;
  if (!SkipTo(kEnd)) return false;
  if (m_keepsSectionMarks) m_tree.AppendText(kStart);
  AppendWithLineEnds(Between(start, m_at));
  if (m_keepsSectionMarks) m_tree.AppendText(kEnd);
  return Skip(kEnd);
}

// The tree drops the carriage return of a line end; one alone is a line end itself.
void PlainReader::AppendWithLineEnds(std::string_view text) {
  while (!text.empty()) {
    std::size_t length = text.find('\r');
    while (length != std::string_view::npos && text.substr(length).starts_with("\r\n"))
      length = text.find('\r', length + 1);
    m_tree.AppendText(text.substr(0, length));
    if (length == std::string_view::npos) return;
    m_tree.AppendText("\n");
    text.remove_prefix(length + 1);
  }
}

bool PlainReader::ReadComment() { return Skip("<!--") && SkipTo("--") && Skip("-->"); }

// Targets that begin as the declaration does are the parser's to judge.
bool PlainReader::ReadInstruction() {
  m_at += 2;
  const Position target = m_at;
  if (m_at == m_end || !plaintext::Is(plaintext::kNameStart, *m_at)) return false;
  m_at = std::find_if_not(m_at, m_end, [](char c) { return plaintext::Is(plaintext::kNameByte, c); });
  if (EqualsIgnoringCase(Between(target, m_at), "xml")) return false;
  return (SkipSpace() || Rest().starts_with("?>")) && SkipTo("?>") && Skip("?>");
}

bool PlainReader::SkipTo(std::string_view terminator) {
  const std::size_t length = Rest().find(terminator);
  if (length == std::string_view::npos || !AreAllowed(Rest().substr(0, length))) return false;
  m_at += length;
  return true;
}

bool PlainReader::SkipSpace() noexcept {
  const Position start = m_at;
  while (m_at != m_end && plaintext::Is(plaintext::kSpace, *m_at)) ++m_at;
  return m_at != start;
}

bool PlainReader::Skip(std::string_view text) noexcept {
  if (!Rest().starts_with(text)) return false;
  m_at += text.size();
  return true;
}

}  // namespace OvXmlLib16
