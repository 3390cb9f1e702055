// A contact as two programs know it: one by its first schema, one with room for what later schemas add.
#pragma once

#include "../BoundClass.h"

namespace contact {

using namespace OvXmlLib16;
using namespace OvXmlLib16Data;

inline constexpr const WChar* kContactNamespace = u"urn:example:contact";

inline CParentElementInfo* NewInfo() {
  return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, u"contact", kContactNamespace,
                                /*failIfAttributeUnknown=*/true, /*hasBaseClasses=*/false, -1, ItemType_none, nullptr,
                                false);
}
template <class Entry>
CElementInfo* NewText(const WChar* name, int index) {
  return new Entry(name, kContactNamespace, index, /*nillable=*/false, ItemType_string, nullptr,
                   CWhitespaceUtils::WhitespaceRule_Preserve, {}, nullptr);
}

/// Knows the name and perhaps an email address, and nothing else.
class CContact : public BoundClass<CContact> {
 public:
  static constexpr const WChar* kNamespace = kContactNamespace;

  CContact() { SetElementName(u"contact"); }

  WString name;
  std::optional<WString> email;

  static ClassTables MakeTables() {
    return {NewInfo(),
            NewTable<CElementInfo>(
                {NewText<CElementInfoSeqPrimMnd>(u"name", 0), NewText<CElementInfoSeqPrimOpt>(u"email", 1)}),
            NewTable<CAttributeInfo>({})};
  }

 protected:
  void Init() override {
    name.clear();
    email.reset();
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    index == 0 ? Access<ItemType_string>(name, read, value) : Access<ItemType_string>(email, read, value);
  }
};

/// Knows the name and keeps all the rest, for its schema ends in `xs:any` and `xs:anyAttribute`.
class COpenContact : public BoundClass<COpenContact> {
 public:
  static constexpr const WChar* kNamespace = kContactNamespace;

  COpenContact() {
    SetElementName(u"contact");
    COpenContact::Init();
  }

  WString name;
  CElementCol& GetElements() const { return *m_elements.operator->(); }
  CAttributeCol& GetAttributes() const { return *m_attributes.operator->(); }

  static ClassTables MakeTables() {
    return {NewInfo(),
            NewTable<CElementInfo>(
                {NewText<CElementInfoSeqPrimMnd>(u"name", 0), new CElementInfoSeqUntpdCol(u"AnyElement", u"", 1)}),
            NewTable<CAttributeInfo>(
                {new CAttributeInfoAny(u"", u"", 2, /*optional=*/true, u"##any", kNamespace, nullptr)})};
  }

 protected:
  void Init() override {
    name.clear();
    m_elements = new CElementCol(kNamespace, u"##any", kNamespace, 0, -1);
    m_attributes = new CAttributeCol(u"", u"##any", kNamespace);
  }
  void AccessProperty(int index, bool read, OvVariant& value) override {
    switch (index) {
      case 0:
        return Access<ItemType_string>(name, read, value);
      case 1:
        return value.SetXmlCollection(m_elements);
      case 2:
        return value.SetXmlCollection(m_attributes);
    }
  }

 private:
  CSmartPtr<CElementCol> m_elements;
  CSmartPtr<CAttributeCol> m_attributes;
};

}  // namespace contact
