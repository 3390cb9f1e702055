// A choice takes one of its members, an all-group takes its members in any order.

#include <iostream>

#include "Delivery.h"

using namespace delivery;

int unexpected = 0;

/// Reads a document and prints what became of it, as `expected` says it should begin.
void Read(const char* what, const WString& content, WStringView expected) {
  const WString text = u"<delivery xmlns='urn:example:delivery'>" + content + u"</delivery>";
  WString got;
  try {
    const CSmartPtr<CDelivery> read(new CDelivery);
    read->FromXml(text.c_str());
    CSerializationContext context;
    context.SetDefaultNamespaceURI(kDeliveryNamespace);
    got = read->ToXml(/*header=*/false, /*formatted=*/true, EOLType_LF, context);
  } catch (const COvException& exception) {
    got = exception.GetFullMessage();
  }
  std::cout << "--- " << what << '\n' << ToUtf8(got) << '\n';
  if (!got.starts_with(expected)) ++unexpected;
}

void ChangeChoice() {
  const CSmartPtr<CPlace> place(new CPlace);
  place->SetLocker(12);
  try {
    place->SetAddress(u"Elm Street 3");
    ++unexpected;
  } catch (const COvInvalidStateException& refused) {
    std::cout << "--- a second member\n" << refused << '\n';
  }
  place->ClearLocker();
  place->SetAddress(u"Elm Street 3");
  std::cout << "Now the " << ToUtf8(place->GetSelected()) << " is set: " << ToUtf8(place->GetAddress()) << '\n';
}

int main() {
  CXmlObjectBase::Register(16, 1);
  const WString place = u"<place><locker>7</locker></place>", parcel = u"<parcel>A-17</parcel>";
  Read("any order; written in the order of the schema", place + u"<date>2024-05-14</date>" + parcel,
       u"<delivery xmlns=\"urn:example:delivery\">\n\t<parcel>A-17</parcel>\n\t<date>2024-05-14</date>\n\t<place>");
  Read("a mandatory member is missing", place, u"Failed to process the element.\nPath: /delivery");
  Read("a member twice", parcel + place + parcel, u"Failed read all the elements held within the element [delivery].");
  Read("a choice with two members", parcel + u"<place><locker>7</locker><address>Elm Street 3</address></place>",
       u"Failed read all the elements held within the element [place].");
  ChangeChoice();
  return unexpected;
}
