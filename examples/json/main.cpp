// Reads orders from JSON, changes them, writes them in the three modes, and shows what is said of texts with a fault:
// json [file [folder for the output]]

#include <filesystem>
#include <iostream>
#include <string>

#include "../orders/Orders.h"

using namespace orders;
using std::filesystem::path;

/// A context for one of the modes; reading and writing take the same.
CSerializationContext ContextOf(JsonRoundTrip mode) {
  CSerializationContext context = COrders::MakeContext();
  context.GetJsonContext()->SetSupportRoundtrip(mode);
  return context;
}

WString XmlOf(const COrders& document) { return document.ToXml(true, true, EOLType_LF, COrders::MakeContext()); }

/// Writes a file in a mode and reads it again; says whether the same orders came back.
bool RoundTrip(const COrders& document, JsonRoundTrip mode, const path& file) {
  const CSerializationContext context = ContextOf(mode);
  document.ToJsonFile(file, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF, context);
  std::cout << "Wrote " << file.string() << ", " << file_size(file) << " bytes; ";
  try {
    const CSmartPtr<COrders> again(new COrders);
    again->FromJsonFile(file, context);
    const bool isSame = XmlOf(*again.operator->()) == XmlOf(document);
    std::cout << (isSame ? "it reads back as it was.\n" : "it reads back as something else.\n");
    return isSame;
  } catch (const COvException& failure) {
    // The message of the failure itself is the XML that the text stands for.
    std::cout << "it does not read back:\n" << ToUtf8(failure.GetInnerException()->GetFullMessage()) << '\n';
    return false;
  }
}

/// Prints the failure of a text; returns whether there was one.
bool Fails(const char* what, const char* text) {
  try {
    CSmartPtr<COrders>(new COrders)->FromJson(text);
    return false;
  } catch (const COvException& failure) {
    std::cout << "--- " << what << ": line " << failure.GetLine() << ", column " << failure.GetColumn() << ", path "
              << ToUtf8(failure.GetPath()) << '\n'
              << ToUtf8(failure.GetFullMessage()) << '\n';
    return true;
  }
}

int main(int argc, char** argv) {
  const path source = argc > 1 ? argv[1] : "orders.json";
  const path folder = argc > 2 ? path(argv[2]) : std::filesystem::current_path();
  CXmlObjectBase::Register(16, 1);
  try {
    const CSmartPtr<COrders> document(new COrders);
    document->FromJsonFile(source);
    COrder& order = document->GetOrders().At(0);
    std::cout << "Read order " << order.id << " of " << ToUtf8(order.GetCustomer().name) << ", " << order.total << ' '
              << ToUtf8(order.currency) << ".\n";
    order.status = OrderStatus::shipped;
    order.note = u"Sent with \"Parcel & Co\";\tring twice.";
    std::cout << ToUtf8(order.GetItems().At(1).ToJson(true, EOLType_LF, ContextOf(RoundTripAttributes))) << '\n';

    const COrders& orders = *document.operator->();
    const bool isRight = RoundTrip(orders, RoundTripFull, folder / "full.json") &&
                         RoundTrip(orders, RoundTripAttributes, folder / "attributes.json") &&
                         !RoundTrip(orders, RoundTripNone, folder / "none.json");
    return isRight && Fails("no JSON", "{\n  \"orders\": {\n    \"header\": {\n      \"sender\" \"Oak\"\n") &&
                   Fails("no number",
                         "{\"orders\": {\"@xmlns\": \"urn:example:orders\", \"header\": {\n"
                         "\"sender\": \"a\", \"receiver\": \"b\", \"created\": \"2024-05-14T08:30:00Z\",\n"
                         "\"sequence\": \"many\"}}}")
               ? 0
               : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
