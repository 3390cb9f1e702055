// Writes orders as Fast Infoset in three ways: all values as text, values in their binary form, and with names that
// both sides know beforehand. Prints the sizes and reads everything again: fast_infoset [orders [folder for the
// output]]

#include <filesystem>
#include <iostream>

#include "../orders/Orders.h"

using namespace orders;
using std::filesystem::path;

/// Numbers, dates and the like in their binary form. The moments of these orders have fractions of a second and zones
/// ahead of UTC, for which the short form of dates has no characters; they stay text.
CSerializationContext BinaryContext() {
  CSerializationContext context = COrders::MakeContext();
  context.GetFIContext()->SetSuggestedValues();
  context.GetFIContext()->SetEncoding(ItemType_datetime, {});
  return context;
}

/// The same, and no name of the schema in the document. Writer and reader must both be prepared like this, in this
/// order: the document tells names by their numbers.
CSerializationContext PreparedContext() {
  CSerializationContext context = BinaryContext();
  CFIVocabulary& vocabulary = *context.GetFIContext()->GetVocabulary();
  for (const WChar* name : {u"orders", u"header",      u"sender",   u"receiver", u"created",  u"sequence", u"order",
                            u"date",   u"placed",      u"customer", u"name",     u"city",     u"country",  u"cash",
                            u"card",   u"number",      u"holder",   u"expires",  u"invoice",  u"due",      u"reference",
                            u"item",   u"description", u"quantity", u"price",    u"discount", u"total",    u"note"}) {
    vocabulary.AddElement(u"", kOrdersNamespace, name);
  }
  for (const WChar* name : {u"id", u"status", u"currency", u"sku", u"line"}) vocabulary.AddAttribute(u"", u"", name);
  for (const WChar* value : {u"open", u"EUR", u"GBP"}) vocabulary.AddAttributeValue(value);
  context.GetFIContext()->SetExternalVocabularyURI(u"urn:example:orders:vocabulary:1");
  context.GetFIContext()->SetUseGeneratedVocabulary(true);
  return context;
}

bool AreEqual(const COrders& a, const COrders& b) { return a.ToXml() == b.ToXml(); }

/// Writes a file, prints its size, and says whether the same orders come back.
bool RoundTrip(const char* what, const COrders& document, const CSerializationContext& context, const path& file) {
  document.ToFastInfosetFile(file, FInfoDecl_None, context);
  const CSmartPtr<COrders> again(new COrders);
  again->FromXmlFile(file, context);  // it knows Fast Infoset by its first bytes
  std::cout << what << file_size(file) << " bytes in " << file.string() << '\n';
  return AreEqual(document, *again.operator->());
}

/// Prints the failure of `work`; returns whether there was one.
bool Fails(const char* what, const auto& work) {
  try {
    work();
    return false;
  } catch (const COvException& failure) {
    std::cout << what << ToUtf8(failure.GetFullMessage()) << '\n';
    return true;
  }
}

int main(int argc, char** argv) {
  const path source = argc > 1 ? argv[1] : "orders.xml";
  const path folder = argc > 2 ? path(argv[2]) : std::filesystem::current_path();
  CXmlObjectBase::Register(16, 1);
  try {
    const CSmartPtr<COrders> read(new COrders);
    read->FromXmlFile(source);
    COrders& document = *read.operator->();
    document.GetOrders().At(0).GetItems().At(1).quantity = 1;  // the file has 0, which the schema forbids
    const CSerializationContext asText = COrders::MakeContext(), binary = BinaryContext(), prepared = PreparedContext();

    std::cout << "XML, without formatting:  "
              << document.ToXmlStream(true, /*formatted=*/false, XmlEncoding_UTF8, EOLType_LF, asText).GetLength()
              << " bytes\n";
    const path preparedFile = folder / "prepared.finf";
    const bool areRight = RoundTrip("Fast Infoset, as text:    ", document, asText, folder / "text.finf") &&
                          RoundTrip("with binary values:       ", document, binary, folder / "binary.finf") &&
                          RoundTrip("with names known before:  ", document, prepared, preparedFile);

    const bool needsVocabulary = Fails("Read without the names:   ",
                                       [&] { CSmartPtr<COrders>(new COrders)->FromXmlFile(preparedFile, binary); });
    const bool needsText = Fails("All dates in short form:  ", [&] {
      CSerializationContext suggested = COrders::MakeContext();
      suggested.GetFIContext()->SetSuggestedValues();
      document.ToFastInfosetStream(FInfoDecl_None, suggested);
    });
    return areRight && needsVocabulary && needsText ? 0 : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
