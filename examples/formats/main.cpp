// The same orders in every format: bytes plain and with gzip, and the milliseconds to write them from objects and to
// read them into new ones: formats [number of orders]

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>

#include "OrdersMaker.h"

using namespace orders;

struct Format {
  const char* name;
  std::function<CBinaryData(const COrders&, CompressionType)> write;
  std::function<void(COrders&, const CBinaryData&)> read;
};

Format Xml(const char* name, bool formatted) {
  return {name,
          [=, context = COrders::MakeContext()](const COrders& orders, CompressionType compression) {
            return orders.ToXmlStream(true, formatted, XmlEncoding_UTF8, EOLType_LF, context, compression);
          },
          [](COrders& orders, const CBinaryData& data) { orders.FromXmlStream(data); }};
}

Format Json(const char* name, JsonRoundTrip mode) {
  CSerializationContext context = COrders::MakeContext();
  context.GetJsonContext()->SetSupportRoundtrip(mode);
  return {name,
          [=](const COrders& orders, CompressionType compression) {
            return orders.ToJsonStream(/*formatted=*/false, XmlEncoding_UTF8, EOLType_LF, context, compression);
          },
          [=](COrders& orders, const CBinaryData& data) { orders.FromJsonStream(data, context); }};
}

Format FastInfoset(const char* name, bool binaryValues) {
  CSerializationContext context = COrders::MakeContext();
  if (binaryValues) context.GetFIContext()->SetSuggestedValues();
  return {name,
          [=](const COrders& orders, CompressionType compression) {
            return orders.ToFastInfosetStream(FInfoDecl_None, context, compression);
          },
          [](COrders& orders, const CBinaryData& data) { orders.FromXmlStream(data); }};
}

/// The shortest time of several, since other programs take their share of a machine.
double MillisecondsOf(const auto& work) {
  double shortest = 1e9;
  for (int i = 0; i < 3; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    shortest = std::min(shortest, taken.count());
  }
  return shortest;
}

/// Prints the format's line; says whether what was written reads back.
bool Measure(const COrders& orders, const Format& format) {
  CBinaryData data;
  const double writing = MillisecondsOf([&] { data = format.write(orders, CompressionType_None); });
  CSmartPtr<COrders> again;
  const double reading = MillisecondsOf([&] {
    again = new COrders;
    format.read(*again.operator->(), data);
  });
  const auto gzip = format.write(orders, CompressionType_GZip).GetLength();
  std::cout << std::left << std::setw(34) << format.name << std::right << std::setw(10) << data.GetLength()
            << std::setw(10) << gzip << std::setw(9) << writing << std::setw(9) << reading << '\n';
  return again->ToXml() == orders.ToXml();
}

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 10'000;
  CXmlObjectBase::Register(16, 1);
  try {
    const CSmartPtr<COrders> orders(new COrders);
    OrdersMaker().Make(*orders.operator->(), count);
    std::cout << std::fixed << std::setprecision(1) << std::left << std::setw(34) << std::to_string(count) + " orders"
              << "     bytes      gzip    write     read\n";
    bool areRight = true;
    for (const Format& format :
         {Xml("XML, indented", true), Xml("XML", false), Json("JSON", RoundTripFull),
          FastInfoset("Fast Infoset", false), FastInfoset("Fast Infoset, binary values", true)}) {
      areRight = Measure(*orders.operator->(), format) && areRight;
    }
    return areRight ? 0 : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
