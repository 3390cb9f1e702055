#include "ovxmllib/fastinfoset/FastInfosetBinaryData.h"

#include <memory>

#include "ovxmllib/fastinfoset/EncodedValues.h"

namespace OvXmlLib16 {

CFastInfosetBinaryData::~CFastInfosetBinaryData() = default;

void CFastInfosetBinaryData::SetAsEncodedString(std::uint32_t encoding, WStringView value) {
  Clear();
  const auto room = std::make_unique_for_overwrite<unsigned char[]>(fastinfoset::GetEncodedRoom(value.size()));
  SetBuffer(room.get(), fastinfoset::EncodeValue(encoding, value, room.get()));
}

WString CFastInfosetBinaryData::GetAsString(std::uint32_t encoding) const {
  WString text;
  fastinfoset::DecodeValues(encoding, {GetData(), GetLength()}, text);
  return text;
}

}  // namespace OvXmlLib16
