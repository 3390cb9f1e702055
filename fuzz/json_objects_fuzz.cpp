// Bound objects and JSON: any text is read, on both roads to the same end, and what has become an object is written as
// JSON and read again to an equal object, or one of the steps fails with an exception.
//
// Input: a byte of options (3: the mode, 4: no unknown elements, 8: a name for the root), then the text.

#include "fuzz/Input.h"
#include "ovxmllib/document/WellKnownNamespaces.h"
#include "ovxmllib/json/JsonContext.h"
#include "ovxmllib/json/JsonTreeReader.h"
#include "tests/support/KitchenSink.h"
// A fuzz target is one file, and builds without the tests.
#include "tests/support/AnyObject.cpp"  // NOLINT(bugprone-suspicious-include)

namespace OvXmlLib16::fuzz {
namespace {

using test::AnyObject;
using test::KitchenSink;

CSerializationContext ContextOf(unsigned options) {
  CSerializationContext context;
  context.SetUntrustedInput();
  context.SetIgnoreUnknownElements((options & 4) == 0);
  context.SetIgnoreUnknownAttributes(true);
  context.SetDefaultNamespaceURI(test::kNs);
  context.GetNamespaceAliases().Add(u"s", test::kNs);
  context.GetNamespaceAliases().Add(u"o", u"urn:other");
  context.GetNamespaceAliases().Add(u"xsi", WString(kXsiNamespace).c_str());
  context.GetJsonContext()->SetSupportRoundtrip(static_cast<JsonRoundTrip>((options & 3) % 3));
  if ((options & 8) != 0) context.GetJsonContext()->SetRootElementName(u"kitchenSink");
  return context;
}

struct Outcome {
  CSmartPtr<AnyObject> object{new AnyObject};
  std::optional<COvException> failure;
};

Outcome Read(std::string_view text, const CSerializationContext& context, bool shortRoad) {
  Outcome outcome;
  SetJsonTreeReaderForTest(shortRoad);
  outcome.failure = FailureOf([&] { outcome.object->FromJson(text, context); });
  SetJsonTreeReaderForTest(true);
  return outcome;
}

void CheckRoads(std::string_view text, const CSerializationContext& context) {
  const Outcome one = Read(text, context, true), other = Read(text, context, false);
  Require(one.failure.has_value() == other.failure.has_value(), "both roads fail or none does");
  if (one.failure) {
    Require(one.failure->GetFullMessage() == other.failure->GetFullMessage(), "both roads fail alike");
  } else {
    Require(*one.object == *other.object, "both roads read the same");
  }
}

// What is written may be no JSON by what is in it: infinities, and members that a mode does not tell apart.
void CheckAgain(const KitchenSink& sink, const CSerializationContext& context) {
  WString text;
  if (FailureOf([&] { text = sink.ToJson(/*formatted=*/false, EOLType_LF, context); })) return;
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  if (FailureOf([&] { again->FromJson(text.c_str(), context); })) return;
  WString textAgain;
  Require(!FailureOf([&] { textAgain = again->ToJson(false, EOLType_LF, context); }), "what was read is written");
  // The first pass has dropped line feeds and taken nil for empty.
  const CSmartPtr<KitchenSink> third = KitchenSink::Make();
  if (context.GetJsonContext()->GetSupportRoundtrip() != RoundTripFull) return;
  if (FailureOf([&] { third->FromJson(textAgain.c_str(), context); })) return;
  Require(Equal(again, third), "what has been through once stays");
}

void Run(Input input) {
  const CSerializationContext context = ContextOf(input.TakeByte());
  const std::string text(CharactersOf(input.TakeRest()));
  if (text.empty()) return;
  CheckRoads(text, context);
  const CSmartPtr<KitchenSink> sink = KitchenSink::Make();
  if (!FailureOf([&] { sink->FromJson(std::string_view(text), context); })) CheckAgain(*sink, context);
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace OvXmlLib16::fuzz;
  Run(Input(data, size));
  RequireNothingLeft();
  return 0;
}
