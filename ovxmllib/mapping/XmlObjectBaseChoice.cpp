// What the setters of generated choices call to keep one member selected. `selected` is the name of that member.

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/binding/XmlObjectBase.h"
#include "ovxmllib/collections/XmlCollectionBase.h"

namespace OvXmlLib16 {

namespace {

[[noreturn]] void ThrowAlreadySelected(const WString& selected) {
  // Deliberate: the message says "bay".
  throw COvInvalidStateException(FormatString(
      u"The Property [%s] is already set. Only one element within this class bay be set at a time", selected));
}

}  // namespace

void CXmlObjectBase::Choice_SelectElement(const WChar* name, const CXmlObjectBase* value, WString& selected) {
  if (selected == ViewOf(name)) {
    if (value == nullptr) selected.clear();
  } else if (selected.empty()) {
    // Deliberate: also when the value is null.
    selected = ViewOf(name);
  } else if (value != nullptr) {
    ThrowAlreadySelected(selected);
  }
}

void CXmlObjectBase::Choice_SetElementValid(bool valid, const WChar* name, WString& selected) {
  // Deliberate: whichever member it named.
  if (!valid) return selected.clear();
  if (!selected.empty() && selected != ViewOf(name)) {
    throw COvInvalidStateException(FormatString(
        u"The Property %s is already set. Only one element within this class bay be set at a time", selected));
  }
  selected = ViewOf(name);
}

void CXmlObjectBase::Choice_CollectionChanged(const WChar* name, long count, WString& selected) {
  if (selected == ViewOf(name)) {
    if (count == 0) selected.clear();
  } else if (selected.empty()) {
    if (count > 0) selected = ViewOf(name);
  } else if (count != 0) {
    ThrowAlreadySelected(selected);
  }
}

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent, CXmlElement*& child,
                                            long& count, const CSerializationContext& context) {
  if (count > 0) return;
  CXmlElement* const unread = FromXml_Int(collection, parent, child, context);
  if (unread == child) return;
  child = unread;
  collection->ValidateCount(context);
  ++count;
}

}  // namespace OvXmlLib16
