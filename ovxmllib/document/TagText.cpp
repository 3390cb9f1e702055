#include "ovxmllib/document/TagText.h"

namespace OvXmlLib16 {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

bool IsDeclaration(std::string_view name) noexcept { return name == "xmlns" || name.starts_with("xmlns:"); }

}  // namespace

// A line ends with CR LF, CR or LF (XML 1.0, section 2.11).
void TextPlace::MoveOver(std::string_view text) noexcept {
  char before = 0;
  for (const char c : text) {
    const bool isContinuation = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (c == '\r' || (c == '\n' && before != '\r')) {
      ++line;
      column = 1;
    } else if (c != '\n' && !isContinuation) {
      ++column;
    }
    before = c;
  }
}

// tag = "<" name *(1*space name [space] "=" [space] quote value quote)
std::size_t FindAttribute(std::string_view text, std::size_t number, bool skipsDeclarations) noexcept {
  constexpr auto kNone = std::string_view::npos;
  std::size_t at = text.find_first_of(kSpace);
  while (at != kNone && (at = text.find_first_not_of(kSpace, at)) != kNone) {
    const std::size_t nameEnd = text.find_first_of(" \t\r\n=", at);
    const std::size_t quote = text.find_first_of("'\"", at);
    if (nameEnd == kNone || quote == kNone) break;
    const bool counts = !skipsDeclarations || !IsDeclaration(text.substr(at, nameEnd - at));
    if (counts && --number == 0) return at;
    const std::size_t valueEnd = text.find(text[quote], quote + 1);
    at = valueEnd == kNone ? kNone : valueEnd + 1;
  }
  return 0;
}

}  // namespace OvXmlLib16
