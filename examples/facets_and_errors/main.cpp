// What a failure tells, on reading and on writing, and when facets are checked.

#include <iostream>
#include <string>

#include "Booking.h"

using namespace booking;

int unexpected = 0;

/// Prints a failure with all that it wraps, which ends in its cause.
void Show(const COvException& failure, WStringView expectedPath) {
  std::cout << failure << '\n';
  std::cout << "  type "
            << (dynamic_cast<const COvValidationException*>(&failure) ? "COvValidationException" : "COvException")
            << ", path " << ToUtf8(failure.GetPath()) << "\n\n";
  if (failure.GetPath() != expectedPath) ++unexpected;
}

void Read(const char* what, const std::string& booking, WStringView expectedPath, bool validates = false) {
  CSerializationContext context;
  context.SetValidateOnRead(validates);
  std::cout << "--- " << what << '\n';
  try {
    CSmartPtr<CBooking>(new CBooking)
        ->FromXml("<booking xmlns='urn:example:booking' " + booking + "</booking>", context);
    std::cout << "  read without complaint\n\n";
    if (!expectedPath.empty()) ++unexpected;
  } catch (const COvException& failure) {
    Show(failure, expectedPath);
  }
}

/// Writing always checks the facets; one line for each element around the fault.
void WriteSeatBeyondTheLast() {
  const CSmartPtr<CBooking> booking(new CBooking);
  booking->SetCode(u"ABC-1234");
  booking->GetSeats().Add().row = 61;
  std::cout << "--- writing a seat in row 61\n";
  try {
    booking->ToXml();
    ++unexpected;
  } catch (const COvException& failure) {
    Show(failure, u"");
  }
}

int main() {
  CXmlObjectBase::Register(16, 1);
  const std::string seat = "<seat><row>12</row><letter>C</letter></seat>";
  const std::string far = "<seat><row>61</row><letter>C</letter></seat>";
  Read("nothing is wrong", "code='ABC-1234'>" + seat, u"");
  Read("a text that is no number", "code='ABC-1234'>" + seat + "<seat><row>12B</row><letter>C</letter></seat>",
       u"/booking/seat[2]");
  Read("an element is missing", "code='ABC-1234'><seat><row>12</row></seat>", u"/booking/seat");
  Read("an element too many", "code='ABC-1234'>" + seat + "<meal/>", u"/booking");
  Read("an attribute too many", "code='ABC-1234' agent='7'>" + seat, u"/booking/@agent");
  Read("a setter refuses", "code='XYZ-0001'>" + seat, u"/booking/@code");
  Read("too few in a collection", "code='ABC-1234'>", u"/booking");
  Read("a facet does not hold", "code='ABC-1234'>" + far, u"");
  Read("the same with ValidateOnRead", "code='ABC-1234'>" + far, u"/booking/seat", /*validates=*/true);
  Read("and a pattern", "code='abc'>" + seat, u"/booking", /*validates=*/true);
  WriteSeatBeyondTheLast();
  return unexpected;
}
