#include "ovxmllib/collections/XmlCollection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <ranges>
#include <sstream>

#include "ovxmllib/collections/OvIterator.h"
#include "ovxmllib/document/XmlWriter.h"
#include "ovxmllib/values/OvVariant.h"
#include "tests/collections/Listener.h"
#include "tests/support/AnyObject.h"
#include "tests/support/SmallStack.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::AnyObject;
using test::HeardDuring;
using test::Listener;

// As generated code makes a collection. Written, it is an element with the attributes of all items.
class Objects : public CXmlCollection {
 public:
  explicit Objects(int minOccurs = 0, int maxOccurs = -1)
      : CXmlCollection(u"item", u"urn:items", minOccurs, maxOccurs) {}

  using CXmlCollection::AddAfterItem, CXmlCollection::AddBeforeItem, CXmlCollection::AddItemAt,
      CXmlCollection::AppendItem, CXmlCollection::GetHead, CXmlCollection::PrependItem;
  COvIterator<AnyObject> begin() const { return COvIterator<AnyObject>(GetHead()); }
  COvIterator<AnyObject> end() const { return {}; }

 protected:
  WString GetTargetNamespace() const override { return GetNamespace(); }
  void ToXml_Int(CXmlWriter* writer, bool, const WChar* ns, const CSerializationContext& context, bool) const override {
    writer->StartElement(GetElementName(), ViewOf(ns));
    AttributesToXml_Int(writer, context);
    writer->EndElement();
  }
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* child, const CSerializationContext&, bool) override {
    return child;
  }
};

// Objects by their names.
class Names {
 public:
  AnyObject* Object(const WString& name) {
    if (name == u"-") return nullptr;
    CSmartPtr<AnyObject>& object = m_objects[name];
    if (object == nullptr) {
      object = new AnyObject;
      object->SetElementName(name.c_str());
    }
    return object;
  }
  WString Of(const void* data) const {
    for (const auto& [name, object] : m_objects) {
      if (data == static_cast<CXmlObjectBase*>(object)) return name;
    }
    return u"?";
  }

 private:
  std::map<WString, CSmartPtr<AnyObject>> m_objects;
};

void Change(Objects& objects, Names& names, const std::string& change) {
  std::istringstream words(change);
  std::string verb, first, second;
  words >> verb >> first >> second;
  const auto object = [&](const std::string& name) { return names.Object(ToWide(name)); };
  if (verb == "append") objects.AppendItem(object(first));
  if (verb == "prepend") objects.PrependItem(object(first));
  if (verb == "at") objects.AddItemAt(std::stoi(first), object(second));
  if (verb == "after") objects.AddAfterItem(object(first), object(second));
  if (verb == "before") objects.AddBeforeItem(object(first), object(second));
  if (verb == "remove") objects.Remove(std::stoi(first));
  if (verb == "clear") objects.Clear();
}

// The names of the items, and a word where the list does not hang together.
WString ItemsOf(const Objects& objects) {
  WString names;
  int count = 0;
  const CNode* previous = nullptr;
  for (const CNode* node = objects.GetHead(); node != nullptr; previous = node, node = node->pNext) {
    if (node->pPrev != previous) return u"broken";
    ++count;
  }
  for (const AnyObject* item : objects) names += (names.empty() ? u"" : u" ") + item->GetElementName();
  return count == objects.GetCount() ? names : u"miscounted";
}

TEST(XmlCollection, ChangesAndTellsInOrder) {
  for (const test::VectorRow& row : test::ReadVectors("collections/collection.vec", "change")) {
    SCOPED_TRACE(row.Place());
    Names names;
    Objects objects;
    std::istringstream before(row["before"]);
    for (std::string name; before >> name;) objects.AppendItem(names.Object(ToWide(name)));

    const WString refuse = row["refuse"] == "-" ? WString() : row.Wide("refuse");
    Listener listener([&](const void* data) { return names.Of(data); }, refuse);
    objects.AddEventListener(&listener);
    EXPECT_EQ(HeardDuring(listener, [&] { Change(objects, names, row["change"]); }), row.Wide("heard"));
    EXPECT_EQ(ItemsOf(objects), row.Wide("after"));
    EXPECT_EQ(listener.last, listener.heard.starts_with(u"!") || listener.heard.empty() ? nullptr : objects.GetBase());

    objects.RemoveEventListener(&listener);
    objects.AppendItem(names.Object(u"z"));  // the tail is where it should be
    EXPECT_EQ(ItemsOf(objects), row.Wide("after") + (row["after"].empty() ? u"z" : u" z"));
  }
}

TEST(XmlCollection, CountsAgainstItsLimits) {
  for (const test::VectorRow& row : test::ReadVectors("collections/collection.vec", "count")) {
    SCOPED_TRACE(row.Place());
    Objects objects(static_cast<int>(row.Number("min")), static_cast<int>(row.Number("max")));
    for (long long i = 0; i < row.Number("count"); ++i) objects.AppendItem(new AnyObject);
    CSerializationContext context;
    context.SetIgnoreInvalidCollectionCounts(row.Number("ignore") != 0);
    EXPECT_EQ(objects.IsValidCount(context), row["message"].empty());
    EXPECT_EQ(test::MessageOf<COvValidationException>([&] { objects.ValidateCount(context); }),
              row["message"].empty() ? u"(nothing was thrown)" : row.Wide("message"));
  }
}

TEST(XmlCollection, TellsListenersInTheOrderOfRegistration) {
  WString order;
  const auto say = [&](const WChar* name) { return [&order, name](const void*) { return order += name, u"x"; }; };
  Listener a(say(u"a")), b(say(u"b")), c(say(u"c"));
  Objects objects;
  for (IEventSink* sink : {&a, &b, &a, &c}) objects.AddEventListener(sink);
  objects.AppendItem(new AnyObject);
  EXPECT_EQ(order, u"abacabac");
  order.clear();
  objects.RemoveEventListener(&a);
  objects.RemoveEventListener(&a);
  objects.AppendItem(new AnyObject);
  EXPECT_EQ(order, u"bcbc");
}

TEST(XmlCollection, ListenersMayLeaveDuringAnEvent) {
  Objects objects;
  Listener other([](const void*) { return u""; });
  Listener leaver([&](const void*) {
    objects.RemoveEventListener(&other);
    objects.RemoveEventListener(&leaver);
    return u"";
  });
  for (IEventSink* sink : {&other, &leaver, &other}) objects.AddEventListener(sink);
  objects.AppendItem(new AnyObject);
  EXPECT_EQ(leaver.heard, u"add:");
  EXPECT_EQ(other.heard, u"add:");
}

TEST(XmlCollection, WalksWithForwardIterators) {
  static_assert(std::forward_iterator<COvIterator<AnyObject>>);
  static_assert(std::ranges::forward_range<const Objects>);
  Names names;
  Objects objects;
  EXPECT_TRUE(objects.begin() == objects.end());
  for (const WChar* name : {u"a", u"b", u"c"}) objects.AppendItem(names.Object(name));

  const auto isB = [](AnyObject* item) { return item->GetElementName() == u"b"; };
  auto found = std::find_if(objects.begin(), objects.end(), isB);
  ASSERT_TRUE(found != objects.end());
  EXPECT_TRUE(found == std::next(objects.begin()) && found == std::ranges::find_if(objects, isB));
  EXPECT_EQ(*found++, names.Object(u"b"));
  EXPECT_EQ(found->GetElementName(), u"c");
  EXPECT_TRUE(++found == objects.end() && found == COvIterator<AnyObject>());
  EXPECT_EQ(test::MessageOf([&] { ++found; }), u"No More Elements in the Collection");
  EXPECT_EQ(test::MessageOf([&] { found++; }), u"No More Elements in the Collection");
}

// Keeps the source for the time of each event.
class Holder final : public IEventSink {
 public:
  void OnEvent(CXmlObjectBase* source, MsgType, void*) override {
    const CSmartPtr<CXmlObjectBase> held = source;
    ++events;
  }
  int events = 0;
};

TEST(XmlCollection, TellsOfRemovalsAtDestruction) {
  Listener listener([](const void*) { return u""; });
  Listener refuser([](const void*) { return u""; }, u"removed");
  Holder holder;
  for (IEventSink* sink : std::initializer_list<IEventSink*>{&listener, &refuser, &holder}) {
    const CSmartPtr<AnyObject> item = new AnyObject;
    CSmartPtr<Objects> objects = new Objects;
    for (int i = 0; i < 2; ++i) objects->AppendItem(item);
    objects->AddEventListener(sink);
    objects = nullptr;
    item->AddRef();
    EXPECT_EQ(item->Release(), 1);
  }
  EXPECT_EQ(listener.heard, u"remove removed change remove removed change");
  EXPECT_EQ(refuser.heard, u"remove removed");
  EXPECT_EQ(holder.events, 6);
}

// An item that has a collection itself.
class Branch : public AnyObject {
 public:
  CSmartPtr<Objects> branches = new Objects;
};

TEST(XmlCollection, FreesTreesOfAnyDepthInASmallStack) {
  for (const bool isCleared : {true, false}) {
    CSmartPtr<Objects> top = new Objects;
    Objects* last = top;
    for (int depth = 0; depth < 100'000; ++depth) {
      Branch* const branch = new Branch;
      last->AppendItem(branch);
      last->AppendItem(new AnyObject);
      last = branch->branches;
    }
    Listener listener([](const void*) { return u""; });
    last->AppendItem(new AnyObject);
    last->AppendItem(new AnyObject);
    last->AddEventListener(&listener);
    test::OnSmallStack([&] { isCleared ? top->Clear() : void(top = nullptr); });
    EXPECT_EQ(listener.heard, u"remove removed change remove removed change") << "the whole tree is gone";
  }
}

TEST(XmlCollection, TravelsInAVariant) {
  const CSmartPtr<Objects> objects = new Objects;
  OvVariant value;
  value.SetXmlCollection(objects);
  EXPECT_EQ(value.GetTypeAsEnum(), ItemType_XmlCollection);
  EXPECT_EQ(value.GetXmlCollection(), static_cast<CXmlCollectionBase*>(objects));
  EXPECT_EQ(value.GetXmlObject(), objects->GetBase());
  EXPECT_EQ(test::MessageOf([&] { value.GetType(); }), u"Invalid Type 28");
  OvVariant copy = value;
  value.Clear();
  EXPECT_EQ(copy.GetXmlCollection()->GetCount(), 0);
  copy.SetXmlCollection(nullptr);
  EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlCollection);
  EXPECT_EQ(objects->AddRef(), 2) << "nothing else holds it";
  objects->Release();
}

TEST(XmlCollection, WritesTheAttributesOfItsItems) {
  Objects objects;
  for (const WChar* name : {u"a", u"b"}) {
    CSmartPtr<AnyObject> item = new AnyObject;
    item->attributes.push_back({name, u"", u"1"});
    objects.AppendItem(item);
  }
  EXPECT_EQ(objects.ToXml(/*header=*/false, /*formatted=*/false), u"<AA:item xmlns:AA=\"urn:items\" a=\"1\" b=\"1\"/>");
}

}  // namespace
}  // namespace OvXmlLib16
