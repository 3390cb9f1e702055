// Bound objects: any document is read into the sample classes with any options. What comes out is written and read
// again to an equal object, or one of the steps fails with an exception.
//
// Input: two bytes of options, then an XML document.

#include "fuzz/Input.h"
#include "tests/support/KitchenSink.h"

namespace OvXmlLib16::fuzz {
namespace {

using test::KitchenSink;

CSerializationContext ContextOf(unsigned options) {
  CSerializationContext context;
  context.SetIgnoreUnknownElements(options & 1);
  if (!(options & 1)) context.SetIgnoreMissingMandatoryElements(options & 2);
  context.SetIgnoreMissingChoice(options & 4);
  context.SetIgnoreInvalidCollectionCounts(options & 8);
  context.SetIgnoreNamespaces(options & 16);
  context.SetIgnoreUnknownAttributes(options & 32);
  context.SetValidateOnRead(options & 64);
  context.SetNoOptionalAttributeDefaultOutput(options & 256);
  context.SetWriteDefaultElementValues(options & 512);
  if (options & 1024) context.SetSchemaType(SchemaType_NoNamespaces);
  context.SetUntrustedInput();
  return context;
}

// What was written has namespaces and no more than it should.
void CheckAgain(const KitchenSink& sink, CSerializationContext context) {
  context.SetSchemaType(SchemaType_Namespaces);
  WString text;
  if (FailureOf([&] { text = sink.ToXml(/*header=*/true, /*formatted=*/false, EOLType_LF, context); })) return;
  const CSmartPtr<KitchenSink> again = KitchenSink::Make();
  if (FailureOf([&] { again->FromXml(text.c_str(), context); })) return;
  WString textAgain;
  Require(!FailureOf([&] { textAgain = again->ToXml(true, false, EOLType_LF, context); }), "what was read is written");
  Require(textAgain == text, "what was written is written again the same");
  // Left out, an attribute at its default is unset afterwards.
  if (!context.GetNoOptionalAttributeDefaultOutput()) Require(Equal(&sink, again), "what was written is read again");
}

void Run(Input input) {
  const CSerializationContext context = ContextOf(input.TakePair());
  const Bytes document = input.TakeRest();
  const CSmartPtr<KitchenSink> sink = KitchenSink::Make();
  if (!FailureOf([&] { sink->FromXmlStream(document.data(), document.size(), context); })) CheckAgain(*sink, context);
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace OvXmlLib16::fuzz;
  Run(Input(data, size));
  RequireNothingLeft();
  return 0;
}
