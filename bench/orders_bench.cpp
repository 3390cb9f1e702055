// Reading the orders documents into bound objects and writing them, each as a ratio to bare Expat on the same document.

#include <memory>
#include <string_view>

#include "bench/Roads.h"
#include "examples/orders/Orders.h"

namespace {

using namespace OvXmlLib16;
using namespace OvXmlLib16::bench;
using orders::COrders;

CSmartPtr<COrders> Read(std::string_view document) {
  const CSmartPtr<COrders> read(new COrders);
  read->FromXmlStream(reinterpret_cast<const unsigned char*>(document.data()), document.size());
  return read;
}

CBinaryData Write(const COrders& orders) {
  static const CSerializationContext context = COrders::MakeContext();
  return orders.ToXmlStream(/*header=*/true, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF, context);
}

void ReadObject(std::string_view document) { Read(document); }

Pass PrepareWrite(std::string_view document) {
  return [orders = Read(document)] { Write(*orders.operator->()); };
}

std::shared_ptr<const void> KeepObject(std::string_view document) {
  return std::make_shared<CSmartPtr<COrders>>(Read(document));
}

}  // namespace

int main(int argc, char** argv) {
  CXmlObjectBase::Register(16, 1);
  AddRoad("ObjectRead", ReadObject);
  AddPreparedRoad("ObjectWrite", PrepareWrite);
  AddHeapFigure("ObjectHeap", KeepObject);
  return RunRoads(argc, argv);
}
