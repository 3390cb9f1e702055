// What a call throws, for comparing in one line.
#pragma once

#include "ovxmllib/binding/OvException.h"

namespace OvXmlLib16::test {

/// The message of the Exception that `call` throws, or a text that no message equals. Other exceptions pass.
template <class Exception = COvException, class Call>
WString MessageOf(const Call& call) {
  try {
    call();
  } catch (const Exception& exception) {
    return exception.GetMessage();
  }
  return u"(nothing was thrown)";
}

}  // namespace OvXmlLib16::test
