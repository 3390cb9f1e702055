// Input: the options of reading (see Document.h), then a document in any encoding. What is read into a wildcard element
// is what the document holds, and what is written of it and of its clone reads again as an equal tree.

#include "fuzz/Document.h"
#include "fuzz/ReadBack.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/collections/ElementCol.h"

namespace OvXmlLib16::fuzz {
namespace {

using Element = CSmartPtr<CElement>;

bool HasSameAttributes(CElement& element, const AnyObject& expected) {
  const CSmartPtr<CAttributeCol> attributes = element.GetAttributes();
  return std::equal(attributes->begin(), attributes->end(), expected.attributes.begin(), expected.attributes.end(),
                    [](CAttribute* a, const AnyObject::Attribute& b) {
                      return a->GetName() == b.name && a->GetNamespace() == b.ns && a->GetValue() == b.value;
                    });
}

bool IsSame(CElement& element, const AnyObject& expected) {
  const CSmartPtr<CElementCol> children = element.GetChildElements();
  return element.GetName() == expected.GetElementName() && element.GetNamespace() == expected.ns &&
         element.GetText() == expected.text && HasSameAttributes(element, expected) &&
         std::equal(children->begin(), children->end(), expected.children.begin(), expected.children.end(),
                    [](CElement* a, const AnyObject* b) { return IsSame(*a, *b); });
}

// What is read of a tree that was written with its texts and values as they are.
void TellAsRead(AnyObject& object, bool stripsSections) {
  object.text = ReadText(object.text, stripsSections);
  for (AnyObject::Attribute& attribute : object.attributes) attribute.value = ReadValue(attribute.value);
  for (AnyObject* child : object.children) TellAsRead(*child, stripsSections);
}

// A name with a prefix that nobody declares cannot be written as a name with a namespace.
bool IsReadable(const CSerializationContext& context) { return context.GetSchemaType() == SchemaType_Namespaces; }

void CheckWritten(const CElement& element, const Tree& expected, bool stripsSections) {
  const CBinaryData bytes = element.ToXmlStream(/*header=*/false, /*formatted=*/false);
  CSerializationContext context;
  context.SetStripCDATA(stripsSections);
  context.SetMaxElementDepth(0);
  context.SetMaxAttributesPerElement(0);
  context.SetMaxNamespaceLength(0);
  const Element again(new CElement(u"unread"));
  again->FromXmlStream(bytes, context);
  Require(IsSame(*again, *expected), "what was written reads again as an equal tree");
}

void Run(Input input) {
  const CSerializationContext context = TakeContext(input);
  const Bytes document = input.TakeRest();
  const auto load = [&](CXmlObjectBase& object) { object.FromXmlStream(document.data(), document.size(), context); };
  const Outcome expected = OutcomeOf(load);
  const Element element(new CElement(u"unread"));
  const auto failure = FailureOf([&] { load(*element); });
  Require(failure.has_value() == (expected.tree == nullptr), "a wildcard takes what any object takes");
  if (failure) return;
  Require(IsSame(*element, *expected.tree), "a wildcard holds what the document holds");
  const Element clone = element->Clone();
  Require(IsSame(*clone, *expected.tree), "a clone holds the same");
  if (!IsReadable(context)) return;
  TellAsRead(*expected.tree, context.GetStripCDATA());
  CheckWritten(*element, expected.tree, context.GetStripCDATA());
  CheckWritten(*clone, expected.tree, context.GetStripCDATA());
}

}  // namespace
}  // namespace OvXmlLib16::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  OvXmlLib16::CXmlObjectBase::Register(16, 1);
  OvXmlLib16::fuzz::Run({data, size});
  OvXmlLib16::fuzz::RequireNothingLeft();
  return 0;
}
