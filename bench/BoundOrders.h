// Our own roads over the orders documents: the bound classes of the example, read and written.
#pragma once

#include <string_view>

#include "bench/Roads.h"
#include "examples/orders/Orders.h"

namespace OvXmlLib16::bench {

/// Reads a document into bound objects. Throws COvException.
inline CSmartPtr<orders::COrders> ReadObject(std::string_view document) {
  const CSmartPtr<orders::COrders> read(new orders::COrders);
  read->FromXmlStream(reinterpret_cast<const unsigned char*>(document.data()), document.size());
  return read;
}

/// UTF-8, indented by tabs, as the documents are.
inline CBinaryData WriteObject(const orders::COrders& orders) {
  static const CSerializationContext context = orders::COrders::MakeContext();
  return orders.ToXmlStream(/*header=*/true, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF, context);
}

inline std::string_view TextOf(const CBinaryData& bytes) {
  return {reinterpret_cast<const char*>(bytes.GetData()), bytes.GetLength()};
}

/// The JSON form with the namespace, so that it reads back by itself; without line ends.
inline CBinaryData WriteObjectJson(const orders::COrders& orders) {
  static const CSerializationContext context = [] {
    CSerializationContext made = orders::COrders::MakeContext();
    made.GetJsonContext()->SetSupportRoundtrip(RoundTripFull);
    return made;
  }();
  return orders.ToJsonStream(/*formatted=*/false, XmlEncoding_UTF8, EOLType_LF, context);
}

inline CSmartPtr<orders::COrders> ReadObjectJson(const CBinaryData& json) {
  static const CSerializationContext context;
  const CSmartPtr<orders::COrders> read(new orders::COrders);
  read->FromJsonStream(json, context);
  return read;
}

inline CBinaryData WriteObjectInfoset(const orders::COrders& orders) {
  static const CSerializationContext context = orders::COrders::MakeContext();
  return orders.ToFastInfosetStream(FInfoDecl_None, context);
}

/// Enters ObjectRead and ObjectWrite, and the same for Fast Infoset.
inline void AddObjectRoads() {
  CXmlObjectBase::Register(16, 1);
  AddRoad("ObjectRead", [](std::string_view document) { ReadObject(document); });
  AddPreparedRoad("ObjectWrite", [](std::string_view document) -> Pass {
    return [orders = ReadObject(document)] { WriteObject(*orders.operator->()); };
  });
  AddPreparedRoad("InfosetRead", [](std::string_view document) -> Pass {
    return [infoset = WriteObjectInfoset(*ReadObject(document).operator->())] { ReadObject(TextOf(infoset)); };
  });
  AddPreparedRoad("InfosetWrite", [](std::string_view document) -> Pass {
    return [orders = ReadObject(document)] { WriteObjectInfoset(*orders.operator->()); };
  });
}

}  // namespace OvXmlLib16::bench
