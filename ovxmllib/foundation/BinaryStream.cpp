#include "ovxmllib/foundation/BinaryStream.h"

namespace OvXmlLib16 {

CBinaryStream::~CBinaryStream() = default;

}  // namespace OvXmlLib16
