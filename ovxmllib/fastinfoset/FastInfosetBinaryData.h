// A value in the binary form of Fast Infoset.
#pragma once

#include <cstdint>

#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16 {

/// The octets of typed values, and the way between them and the text of the values. Algorithms are named by their index
/// in the built-in table of ITU-T Rec. X.891, clause 10: 1 hexadecimal, 2 base64, 3 short, 4 int, 5 long, 6 boolean,
/// 7 float, 8 double, 9 uuid (bare hexadecimal digits), 10 cdata.
class CFastInfosetBinaryData : public CBinaryData {
 public:
  using CBinaryData::CBinaryData;
  CFastInfosetBinaryData() = default;
  CFastInfosetBinaryData(const CBinaryData& other) : CBinaryData(other) {}
  CFastInfosetBinaryData(const CFastInfosetBinaryData&) = default;
  CFastInfosetBinaryData& operator=(const CFastInfosetBinaryData&) = default;
  ~CFastInfosetBinaryData() override;

  /// Replaces the data by the octets of the one value that the text stands for. Throws COvException
  /// "Unknown byte encoding." for another index, and what the conversion of the value throws; the data are empty then.
  void SetAsEncodedString(std::uint32_t encoding, const WChar* value) { SetAsEncodedString(encoding, ViewOf(value)); }
  void SetAsEncodedString(std::uint32_t encoding, WStringView value);

  /// The text of the values, with a blank between them; "" for empty data, whatever the index. Booleans that share an
  /// octet have no blank between them. Throws COvException for data that are no whole number of values, and
  /// "Unknown byte encoding." for an index other than 1 to 9: text is nothing to be decoded here.
  WString GetAsString(std::uint32_t encoding) const;
};

}  // namespace OvXmlLib16
