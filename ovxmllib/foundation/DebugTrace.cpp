#include "ovxmllib/foundation/DebugTrace.h"

#include <algorithm>

namespace OvXmlLib16 {

void DebugTraceText(WStringView text) {
  constexpr std::size_t kPiece = 128;
  const platform::DebugOutputFunction output = platform::GetDebugOutput();
  if (output == nullptr) return;
  for (; !text.empty(); text.remove_prefix(std::min(kPiece, text.size()))) output(text.substr(0, kPiece));
}

}  // namespace OvXmlLib16
