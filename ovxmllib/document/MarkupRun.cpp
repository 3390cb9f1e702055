#include "ovxmllib/document/MarkupRun.h"

#include <algorithm>
#include <limits>

namespace OvXmlLib16 {

template <class Unit>
char* MarkupText<Unit>::PutUnescaped(char* out, WStringView text) {
  return plainrun::PutEscaped(out, text, 0, text.size(), UnescapedRules());
}

template class MarkupText<char>;

void Indentation::Set(WStringView lead, WStringView indent) {
  if (lead == m_lead && indent == m_indent) return;
  m_wide.ready.clear();
  m_utf8.ready.clear();
  m_lead = lead;
  m_indent = indent;
}

template <class Unit>
void Indentation::Grow(Form<Unit>& form, int depth) const {
  constexpr int kUsualDepth = 6;
  const auto converted = [](const WString& text) {
    if constexpr (std::is_same_v<Unit, char>) {
      const bool isAscii = std::all_of(text.begin(), text.end(), [](WChar unit) { return unit < 0x80; });
      return isAscii ? std::string(text.begin(), text.end()) : ToUtf8(text);
    } else {
      return text;
    }
  };
  const std::basic_string<Unit> indent = converted(m_indent);
  form.ready = converted(m_lead);
  form.lead = form.ready.size();
  form.indent = indent.size();
  form.maxDepth = indent.empty() ? std::numeric_limits<int>::max() : std::max(2 * depth, kUsualDepth);
  for (int i = 0; i < form.maxDepth && !indent.empty(); ++i) form.ready += indent;
  form.ready.resize(form.ready.size() + kRoomySlack);
}

template void Indentation::Grow(Form<WChar>& form, int depth) const;
template void Indentation::Grow(Form<char>& form, int depth) const;

}  // namespace OvXmlLib16
