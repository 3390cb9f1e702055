// Reads orders from a file into objects, shows a fault in it with its place, mends the objects, and writes them as
// formatted XML, plain and as gzip, as JSON and as Fast Infoset: orders [file [folder for the output]]

#include <filesystem>
#include <iostream>

#include "Orders.h"

using namespace orders;
using std::filesystem::path;

CDecimal TotalOf(const COrder& order) {
  CDecimal total;
  for (const CItem* item : order.GetItems()) {
    total += item->price * CDecimal(item->quantity) - item->discount.value_or(CDecimal());
  }
  return total;
}

const char* PaymentOf(const COrder& order) {
  const CPayment& payment = order.GetPayment();
  return payment.GetCard() != nullptr ? "by card" : payment.GetInvoice() != nullptr ? "by invoice" : "in cash";
}

void Show(const COrders& document) {
  for (const COrder* order : document.GetOrders()) {
    std::cout << "  order " << order->id << " of " << order->date << ": " << ToUtf8(order->GetCustomer().name)
              << " pays " << order->total << ' ' << ToUtf8(order->currency) << ' ' << PaymentOf(*order) << " for "
              << order->GetItems().GetCount() << " items\n";
  }
}

/// Reads the file with every facet of the schema checked, and prints what is wrong with it.
bool IsFaultless(const path& file) {
  CSerializationContext strict;
  strict.SetValidateOnRead(true);
  try {
    CSmartPtr<COrders>(new COrders)->FromXmlFile(file, strict);
    std::cout << file.string() << " is as the schema wants it.\n";
    return true;
  } catch (const COvException& fault) {
    std::cout << file.string() << " has a fault: " << fault << "\nThe element is " << ToUtf8(fault.GetPath()) << ".\n";
    return false;
  }
}

/// An order of less than one piece is taken for one piece, and the totals follow.
void Mend(COrders& document) {
  for (COrder* order : document.GetOrders()) {
    for (CItem* item : order->GetItems()) {
      if (item->quantity < 1) item->quantity = 1;
    }
    order->total = TotalOf(*order);
  }
}

/// A payment is one of three; a second one is refused.
void ShowChoice(const COrder& order) {
  try {
    order.GetPayment().SetInvoice(new CInvoice);
  } catch (const COvInvalidStateException& refused) {
    std::cout << "Adding an invoice: " << refused << '\n';
  }
}

int main(int argc, char** argv) {
  const path source = argc > 1 ? argv[1] : "orders.xml";
  const path folder = argc > 2 ? path(argv[2]) : std::filesystem::current_path();
  CXmlObjectBase::Register(16, 1);  // the version that the classes were made for
  try {
    IsFaultless(source);

    const CSmartPtr<COrders> document(new COrders);
    document->FromXmlFile(source);  // without that check, so that the objects can be mended
    std::cout << "Read " << document->GetOrders().GetCount() << " orders:\n";
    Show(*document.operator->());
    Mend(*document.operator->());
    std::cout << "Mended:\n";
    Show(*document.operator->());
    ShowChoice(document->GetOrders().At(0));

    const path formatted = folder / "mended.xml", gzip = folder / "mended.xml.gz";
    const path json = folder / "mended.json", fastInfoset = folder / "mended.finf";
    const CSerializationContext context = COrders::MakeContext();
    document->ToXmlFile(formatted, /*header=*/true, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF, context);
    document->ToXmlFile(gzip, true, true, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_GZip);
    document->ToJsonFile(json, /*formatted=*/true, XmlEncoding_UTF8, EOLType_LF, context);
    document->ToFastInfosetFile(fastInfoset, FInfoDecl_None, context);
    for (const path& file : {formatted, gzip, json, fastInfoset}) {
      std::cout << "Wrote " << file.string() << ", " << file_size(file) << " bytes.\n";
    }
    return IsFaultless(formatted) && IsFaultless(gzip) ? 0 : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
