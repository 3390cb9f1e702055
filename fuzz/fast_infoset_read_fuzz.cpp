// Input: the options of reading (see Document.h), one byte of options of Fast Infoset, then octets, ahead of which the
// identification is put. What is read, if it is, is written and read again as an equal tree, and written once more as
// the same octets.

#include "fuzz/Document.h"
#include "ovxmllib/fastinfoset/BinaryForms.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"

namespace OvXmlLib16::fuzz {
namespace {

void TakeOptions(Input& input, CFastInfosetContext& options) {
  const unsigned switches = input.TakeByte();
  options.SetElementMaxAddLength(switches & 0x0F);
  options.SetAttributeMaxAddLength(switches >> 4 & 0x07);
  if ((switches & 0x80) == 0) return;
  options.SetUseGeneratedVocabulary(true);
  CFIVocabulary& vocabulary = *options.GetVocabulary();
  vocabulary.AddElement(u"p", u"u", u"a");
  vocabulary.AddAttribute(u"", u"", u"b");
  vocabulary.AddAttributeValue(u"value");
  vocabulary.AddElementValue(u"chunk");
  for (const WChar* alphabet : {u"AB", u"ABCDEFGHIJKLMNOPQRS"}) vocabulary.m_restrictedAlphabets.push_back(alphabet);
}

Tree ReadAgain(const CBinaryData& data, const CSerializationContext& context) {
  const Tree tree(new AnyObject);
  tree->FromXmlStream(data, context);
  return tree;
}

void Run(Input input) {
  CSerializationContext context = TakeContext(input);
  TakeOptions(input, *context.GetFIContext());
  CBinaryData document(fastinfoset::kIdentification, sizeof fastinfoset::kIdentification);
  const Bytes octets = input.TakeRest();
  document.Append(octets.data(), octets.size());
  const Outcome outcome = OutcomeOf([&](CXmlObjectBase& object) { object.FromXmlStream(document, context); });
  if (outcome.tree == nullptr) return;
  // What was read within limits may be written in more octets.
  CSerializationContext open;
  *open.GetFIContext() = *context.GetFIContext();
  open.SetSchemaType(context.GetSchemaType());
  open.SetMaxElementDepth(0);
  open.SetMaxAttributesPerElement(0);
  open.SetMaxNamespaceLength(0);
  const CBinaryData written = outcome.tree->ToFastInfosetStream(FInfoDecl_None, open);
  const Tree again = ReadAgain(written, open);
  Require(*again == *outcome.tree, "what was written reads again as an equal tree");
  Require(again->ToFastInfosetStream(FInfoDecl_None, open) == written, "an equal tree is written as the same octets");
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::CXmlObjectBase::Register(16, 1);
  OvXmlLib16::fuzz::Run({data, size});
  OvXmlLib16::fuzz::RequireNothingLeft();
  return 0;
}
