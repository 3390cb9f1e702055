// What a read or write made of an object, for comparing in one line.
#pragma once

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16::test {

/// The class of an exception without "COv" and "Exception"; empty for COvException itself.
inline std::string ClassOf(const COvException& exception) {
  if (dynamic_cast<const COvInvalidValueException*>(&exception) != nullptr) return "InvalidValue";
  if (dynamic_cast<const COvInvalidNamespaceException*>(&exception) != nullptr) return "InvalidNamespace";
  if (dynamic_cast<const COvValidationException*>(&exception) != nullptr) return "Validation";
  if (dynamic_cast<const COvInvalidParamException*>(&exception) != nullptr) return "InvalidParam";
  if (dynamic_cast<const COvInvalidStateException*>(&exception) != nullptr) return "InvalidState";
  return "";
}

/// "Class: message @path", without the path where there is none, with " < " and the same of the inner exception.
/// GetMessage ends in the path too; it is told once.
inline std::string ChainOf(const COvException& exception) {
  std::string text = ToUtf8(exception.GetMessage());
  const std::string path = ToUtf8(exception.GetPath());
  if (!path.empty()) text.erase(std::min(text.size(), text.find("\n")));
  if (!ClassOf(exception).empty()) text.insert(0, ClassOf(exception) + ": ");
  if (!path.empty()) text += " @" + path;
  const COvException* inner = exception.GetInnerException();
  return inner == nullptr ? text : text + " < " + ChainOf(*inner);
}

/// ChainOf what `call` throws, "" when it throws nothing.
template <class Call>
std::string FailureOf(const Call& call) {
  try {
    call();
  } catch (const COvException& exception) {
    return ChainOf(exception);
  }
  return "";
}

}  // namespace OvXmlLib16::test
