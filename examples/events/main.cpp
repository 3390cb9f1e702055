// An order that watches its items: it keeps its total up to date, and refuses items without a price.

#include <ovxmllib/ovxmllib.h>

#include <iostream>

using namespace OvXmlLib16;

/// A parent with a collection of `item` elements. It listens to the collection, so that whoever changes the items, by
/// code or by reading a document, need not tell it.
class Order : public IEventSink {
 public:
  Order() { m_items->AddEventListener(this); }
  Order(const Order&) = delete;
  Order& operator=(const Order&) = delete;
  // The collection may live longer than the order.
  virtual ~Order() { m_items->RemoveEventListener(this); }

  CElementCol& Items() { return *m_items.operator->(); }
  const CDecimal& Total() const { return m_total; }

  void OnEvent(CXmlObjectBase*, MsgType type, void* data) override {
    switch (type) {
      case OnCollectionAdd:  // before it is in: what is thrown here keeps it out
        PriceOf(*static_cast<CElement*>(static_cast<CXmlObjectBase*>(data)));
        break;
      case OnCollectionAddComplete:
        std::cout << "  added " << ToUtf8(static_cast<CElement*>(static_cast<CXmlObjectBase*>(data))->GetText());
        break;
      case OnCollectionRemoveComplete:
        std::cout << "  removed an item";
        break;
      case OnCollectionChange:  // the last event of each change
        AddUp();
        std::cout << ", total " << m_total << '\n';
        break;
      default:
        break;
    }
  }

 private:
  static CDecimal PriceOf(CElement& item) {
    for (CAttribute* attribute : *item.GetAttributes()) {
      if (attribute->GetName() == u"price") return CDecimal(attribute->GetValue().c_str());
    }
    throw COvInvalidValueException(u"An item needs a price.");
  }

  void AddUp() {
    m_total = CDecimal();
    for (CElement* item : *m_items.operator->()) m_total += PriceOf(*item);
  }

  CSmartPtr<CElementCol> m_items{new CElementCol(u"urn:example:order", u"##any", u"", 0, -1)};
  CDecimal m_total;
};

CSmartPtr<CElement> MakeItem(const WChar* text, const WChar* price) {
  CSmartPtr<CElement> item(new CElement(u"item", u"urn:example:order"));
  item->SetText(text);
  if (price != nullptr) item->GetAttributes()->Add(u"price", price, u"");
  return item;
}

int main() {
  CXmlObjectBase::Register(16, 1);
  try {
    Order order;
    order.Items().Add(MakeItem(u"tea", u"4.20"));
    order.Items().Add(MakeItem(u"cups", u"11.50"));

    std::cout << "  one without a price: ";
    try {
      order.Items().Add(MakeItem(u"nothing", nullptr));
    } catch (const COvInvalidValueException& exception) {
      std::cout << exception << '\n';
    }

    std::cout << "Two more items come from a document:\n";
    order.Items().FromXml(R"(<items xmlns="urn:example:order"><item price="2">milk</item>
                             <item price="0.35">sugar</item></items>)");
    order.Items().Remove(0);
    const bool isRight = order.Items().GetCount() == 3 && order.Total() == CDecimal(u"13.85");
    std::cout << order.Items().GetCount() << " items cost " << order.Total() << '\n';
    return isRight ? 0 : 1;
  } catch (const COvException& exception) {
    std::cerr << exception << '\n';
    return 1;
  }
}
