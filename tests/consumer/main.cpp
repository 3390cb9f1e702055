// A program outside the source tree: reads one element with the installed library and prints its text.
#include <ovxmllib/ovxmllib.h>

#include <iostream>

using namespace OvXmlLib16;

class CCity : public CXmlObjectBase {
 public:
  CXmlObjectBase* GetBase() override { return this; }
  WString GetNamespace() const override { return {}; }
  WString m_name;

 protected:
  WString GetTargetNamespace() const override { return {}; }
  void ToXml_Int(CXmlWriter*, bool, const WChar*, const CSerializationContext&, bool) const override {}
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement*, const CSerializationContext&, bool) override {
    m_name = parent->GetText();
    return nullptr;
  }
};

int main() {
  CXmlObjectBase::Register(16, 1);
  const CSmartPtr<CCity> city(new CCity);
  city->FromXml("<city>Oslo</city>");
  std::cout << ToUtf8(city->m_name) << '\n';
}
