#include "ovxmllib/foundation/WideString.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/Unicode.h"
#include "ovxmllib/foundation/WidenAscii.h"

namespace OvXmlLib16 {

std::string ToUtf8(WStringView text) {
  std::string result(text.size() * unicode::kMaxUtf8PerUnit, '\0');
  const unicode::Progress done = unicode::WideToUtf8(text, reinterpret_cast<unsigned char*>(result.data()));
  if (done.read != text.size()) unicode::ThrowUnwritable(text, done.read);
  result.resize(done.written);
  return result;
}

WString ToWide(std::string_view text) {
  WString result(text.size(), u'\0');
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  if (unicode::WidenIf<unicode::IsAscii>(bytes, text.size(), result.data())) return result;
  const unicode::Progress done = unicode::Utf8ToWide(bytes, text.size(), result.data());
  if (done.read != text.size()) {
    throw COvInvalidValueException(FormatString(u"The bytes are no UTF-8 text at position %d.", done.read));
  }
  result.resize(done.written);
  return result;
}

}  // namespace OvXmlLib16
