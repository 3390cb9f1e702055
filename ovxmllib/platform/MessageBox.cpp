#include "ovxmllib/platform/MessageBox.h"

#include <atomic>
#include <cstdio>

#include "ovxmllib/foundation/Unicode.h"

namespace OvXmlLib16::platform {

namespace {

void WriteOnceToStandardError(WStringView caption, WStringView text) {
  static std::atomic_flag written;
  if (written.test_and_set()) return;
  const std::string line = unicode::ToUtf8Lossy(caption) + ": " + unicode::ToUtf8Lossy(text) + "\n";
  std::fputs(line.c_str(), stderr);
}

constinit std::atomic<MessageBoxFunction> g_messageBox = &WriteOnceToStandardError;

}  // namespace

MessageBoxFunction SetMessageBox(MessageBoxFunction function) noexcept {
  return g_messageBox.exchange(function == nullptr ? &WriteOnceToStandardError : function);
}

void ShowMessageBox(WStringView caption, WStringView text) { g_messageBox.load()(caption, text); }

}  // namespace OvXmlLib16::platform
