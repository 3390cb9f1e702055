#include "ovxmllib/binding/OvException.h"

#include <ostream>
#include <utility>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16 {

namespace {

WString WithPath(WString message, const WString& path) {
  if (!path.empty()) (message += u"\nPath: ") += path;
  return message;
}

}  // namespace

COvException::COvException(WString message) : m_message(std::move(message)) {}
COvException::COvException(WString message, const COvException& inner)
    : m_message(std::move(message)), m_inner(inner.Clone()) {}
COvException::COvException(WString message, WString path)
    : m_message(WithPath(std::move(message), path)), m_path(std::move(path)) {}
COvException::COvException(WString message, WString path, const COvException& inner)
    : m_message(WithPath(std::move(message), path)), m_path(std::move(path)), m_inner(inner.Clone()) {}

WString COvException::GetFullMessage() const {
  WString result = m_message;
  for (const COvException* inner = GetInnerException(); inner != nullptr; inner = inner->GetInnerException()) {
    (result += u'\n') += inner->m_message;
  }
  return result;
}

void COvException::SetPlace(std::uint64_t line, std::uint64_t column) noexcept {
  m_line = line;
  m_column = column;
}

COvException* COvException::Clone() const { return new COvException(*this); }

COvValidationException::COvValidationException(WString message, WString path)
    : COvException(std::move(message), std::move(path)) {}
COvValidationException::COvValidationException(WString message, WString path, const COvException& inner)
    : COvException(std::move(message), std::move(path), inner) {}
COvValidationException::COvValidationException(const COvException& other) : COvException(other) {}
COvException* COvValidationException::Clone() const { return new COvValidationException(*this); }

COvInvalidValueException::COvInvalidValueException(WString message)
    : COvValidationException(std::move(message), WString()) {}
COvInvalidValueException::COvInvalidValueException(WString message, const COvException& inner)
    : COvValidationException(std::move(message), WString(), inner) {}
COvInvalidValueException::COvInvalidValueException(const COvException& other) : COvValidationException(other) {}
COvException* COvInvalidValueException::Clone() const { return new COvInvalidValueException(*this); }

COvInvalidNamespaceException::COvInvalidNamespaceException(WString message, WString path)
    : COvValidationException(std::move(message), std::move(path)) {}
COvInvalidNamespaceException::COvInvalidNamespaceException(WString message, WString path, const COvException& inner)
    : COvValidationException(std::move(message), std::move(path), inner) {}
COvInvalidNamespaceException::COvInvalidNamespaceException(const COvException& other) : COvValidationException(other) {}
COvException* COvInvalidNamespaceException::Clone() const { return new COvInvalidNamespaceException(*this); }

COvInvalidStateException::COvInvalidStateException(WString message) : COvException(std::move(message)) {}
COvInvalidStateException::COvInvalidStateException(WString message, const COvException& inner)
    : COvException(std::move(message), inner) {}
COvInvalidStateException::COvInvalidStateException(const COvException& other) : COvException(other) {}
COvException* COvInvalidStateException::Clone() const { return new COvInvalidStateException(*this); }

COvInvalidParamException::COvInvalidParamException(WString message) : COvException(std::move(message)) {}
COvInvalidParamException::COvInvalidParamException(WString message, const COvException& inner)
    : COvException(std::move(message), inner) {}
COvInvalidParamException::COvInvalidParamException(const COvException& other) : COvException(other) {}
COvException* COvInvalidParamException::Clone() const { return new COvInvalidParamException(*this); }

COvOverFlowException::COvOverFlowException(WString message) : COvException(std::move(message)) {}
COvOverFlowException::COvOverFlowException(WString message, const COvException& inner)
    : COvException(std::move(message), inner) {}
COvOverFlowException::COvOverFlowException(const COvException& other) : COvException(other) {}
COvException* COvOverFlowException::Clone() const { return new COvOverFlowException(*this); }

std::ostream& operator<<(std::ostream& out, const COvException& exception) {
  const WString message = exception.GetFullMessage();
  out << unicode::ToUtf8Lossy(message);
  if (exception.GetLine() == 0) return out;
  // The parser's messages end in the line.
  const bool tellsLine = message.ends_with(FormatString(u" at line %d", exception.GetLine()));
  if (tellsLine) return out << ", column " << exception.GetColumn();
  return out << " (line " << exception.GetLine() << ", column " << exception.GetColumn() << ')';
}

}  // namespace OvXmlLib16
