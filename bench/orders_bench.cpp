// Reading the orders documents into bound objects and writing them, each as a ratio to bare Expat on the same document.
// Beside them a binding written by hand on Expat, which keeps the same values.

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "bench/BoundOrders.h"
#include "bench/OrdersByHand.h"
#include "bench/OrdersDocument.h"
#include "bench/Roads.h"

namespace {

using namespace OvXmlLib16;
using namespace OvXmlLib16::bench;

Pass PrepareWriteByHand(std::string_view document) {
  return [orders = std::make_shared<const byhand::Orders>(byhand::ReadXml(document))] { byhand::WriteXml(*orders); };
}

std::shared_ptr<const void> KeepObject(std::string_view document) {
  return std::make_shared<CSmartPtr<orders::COrders>>(ReadObject(document));
}

std::shared_ptr<const void> KeepStructs(std::string_view document) {
  return std::make_shared<byhand::Orders>(byhand::ReadXml(document));
}

/// The two bindings are comparable only as long as they keep the same: what they write must be the same bytes.
bool AgreeOn(std::string_view document) {
  const CBinaryData bound = WriteObject(*ReadObject(document).operator->());
  const bool agree = TextOf(bound) == byhand::WriteXml(byhand::ReadXml(document));
  if (!agree) std::fprintf(stderr, "The bound objects and the binding by hand write different documents.\n");
  return agree;
}

}  // namespace

int main(int argc, char** argv) {
  AddObjectRoads();
  AddRoad("ByHandRead", [](std::string_view document) { byhand::ReadXml(document); });
  AddPreparedRoad("ByHandWrite", PrepareWriteByHand);
  AddHeapFigure("ObjectHeap", KeepObject);
  AddHeapFigure("ByHandHeap", KeepStructs);
  if (!AgreeOn(MakeOrdersDocument(100'000))) return 1;
  return RunRoads(argc, argv);
}
