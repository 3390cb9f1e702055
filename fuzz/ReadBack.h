// What becomes of texts and values that are written as XML and read again.
#pragma once

#include <algorithm>
#include <string>

#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16::fuzz {

inline WString WithoutCr(WStringView text) {
  WString result(text);
  std::erase(result, u'\r');
  return result;
}

/// The ends of lines as a parser reports them (XML 1.0, section 2.11).
inline WString WithLineFeeds(WStringView text) {
  WString result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'\r') result += text[i];
    if (text[i] == u'\r' && text.substr(i + 1, 1) != u"\n") result += u'\n';
  }
  return result;
}

/// What is read of a text that was written by one call: carriage returns are left out, except in sections, which a text
/// that begins with one is written with.
inline WString ReadText(WStringView text, bool stripsSections) {
  constexpr WStringView kStart = u"<![CDATA[", kEnd = u"]]>";
  if (!text.starts_with(kStart)) return WithoutCr(text);
  WString result;
  while (true) {
    const std::size_t start = text.find(kStart);
    const std::size_t end = start == WStringView::npos ? start : text.find(kEnd, start + kStart.size());
    if (end == WStringView::npos) return result + WithoutCr(text);
    const WString content = WithLineFeeds(text.substr(start + kStart.size(), end - start - kStart.size()));
    result += WithoutCr(text.substr(0, start));
    result += stripsSections ? content : WString(kStart) + content + WString(kEnd);
    text.remove_prefix(end + kEnd.size());
  }
}

/// What is read of an attribute value that was written.
inline WString ReadValue(WStringView value) {
  WString result = WithoutCr(value);
  std::replace(result.begin(), result.end(), u'\t', u' ');
  return result;
}

}  // namespace OvXmlLib16::fuzz
