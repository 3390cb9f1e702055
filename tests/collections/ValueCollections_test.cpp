#include "ovxmllib/collections/ValueCollections.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <concepts>
#include <map>
#include <numeric>
#include <ranges>
#include <sstream>

#include "ovxmllib/document/XmlElement.h"
#include "ovxmllib/document/XmlTextWriter.h"
#include "ovxmllib/foundation/TextStream.h"
#include "ovxmllib/values/PrimitiveText.h"
#include "tests/collections/Listener.h"
#include "tests/support/AnyObject.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

using test::HeardDuring;
using test::Listener;

// The types of the elements that are written.
class TypeRecorder : public CXmlTextWriter {
 public:
  using CXmlTextWriter::CXmlTextWriter;
  void WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type) override {
    types.push_back(type);
    CXmlTextWriter::WriteTextElement(name, ns, text, type);
  }
  std::vector<ItemType> types;
};

// An object with a collection, as generated code has them. `rest` is the element at which the collection stopped.
class Owner : public test::AnyObject {
 public:
  explicit Owner(CXmlCollectionBase* collection) : values(collection) { SetElementName(u"r"); }
  CSmartPtr<CXmlCollectionBase> values;
  WString rest;
  std::vector<ItemType> WrittenTypes() const {
    CTextStream stream;
    TypeRecorder writer(&stream);
    writer.Open();
    ToXml_Int(&writer, true, u"", {}, false);
    writer.Close();
    return writer.types;
  }

 protected:
  void ToXml_Int(CXmlWriter* writer, bool, const WChar*, const CSerializationContext& context, bool) const override {
    writer->StartElement(GetElementName(), u"");
    CXmlObjectBase::ToXml_Int(values, writer, false, u"urn:unused", context, false);
    writer->EndElement();
  }
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                           bool) override {
    const CXmlElement* const left = CXmlObjectBase::FromXml_Int(values, parent, child, context);
    rest = left == nullptr ? WString() : left->GetLocalName();
    return nullptr;
  }
};

WString WrittenBy(CXmlCollectionBase* collection) {
  return Owner(collection).ToXml(/*header=*/false, /*formatted=*/false);
}

// Reads elements of the given texts; returns the name of the element behind them.
WString Read(CXmlCollectionBase* collection, const std::vector<std::string>& texts) {
  std::string document = "<r>";
  for (const std::string& text : texts) document += "<v>" + text + "</v>";
  Owner owner(collection);
  owner.FromXml(document + "<w/><v/></r>");
  return owner.rest;
}

template <class Col, ItemType kItemType>
struct Class {
  static constexpr ItemType kType = kItemType;
  using T = typename Primitive<kItemType>::Value;
  static constexpr bool kIsDate = std::derived_from<Col, CdatetimeBaseCol>;

  static CSmartPtr<Col> Make(const CPrimitiveRestrictions& facets = {}, WStringView format = {}, int minOccurs = 0) {
    return new Col(u"v", u"", minOccurs, -1, facets.m_pattern.c_str(), facets.m_minLength, facets.m_maxLength,
                   facets.m_minInclusive.c_str(), facets.m_maxInclusive.c_str(), facets.m_minExclusive.c_str(),
                   facets.m_maxExclusive.c_str(), facets.m_length, facets.m_totalDigits, facets.m_fractionDigits,
                   CWhitespaceUtils::WhitespaceRule_Collapse, format.empty() ? nullptr : WString(format).c_str());
  }
  static WString Told(const void* data) {
    WString text;
    AppendPrimitive<kItemType>(*static_cast<const T*>(data), text);
    return text;
  }
};

// Calls `visit` with the row of each class.
template <class Visitor>
void ForEachClass(const Visitor& visit) {
#define CLASS(type) visit("C" #type "Col", Class<C##type##Col, ItemType_##type>())
  CLASS(hexBinary), CLASS(base64Binary), CLASS(i1), CLASS(i2), CLASS(i4), CLASS(i8), CLASS(ui1), CLASS(ui2);
  CLASS(ui4), CLASS(ui8), CLASS(r4), CLASS(r8), CLASS(duration), CLASS(year), CLASS(month), CLASS(day);
  CLASS(string), CLASS(boolean), CLASS(decimal), CLASS(integer);
  CLASS(datetime), CLASS(date), CLASS(yearMonth), CLASS(time), CLASS(monthDay);
#undef CLASS
}

CPrimitiveRestrictions FacetsFrom(const std::string& text) {
  CPrimitiveRestrictions facets;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string name = word.substr(0, word.find('='));
    const std::string value = word.substr(word.find('=') + 1);
    const std::map<std::string, WString*> texts = {{"minInclusive", &facets.m_minInclusive},
                                                   {"maxInclusive", &facets.m_maxInclusive},
                                                   {"minExclusive", &facets.m_minExclusive},
                                                   {"maxExclusive", &facets.m_maxExclusive}};
    const std::map<std::string, std::int32_t*> numbers = {{"minLength", &facets.m_minLength},
                                                          {"length", &facets.m_length},
                                                          {"totalDigits", &facets.m_totalDigits},
                                                          {"fractionDigits", &facets.m_fractionDigits}};
    if (texts.contains(name)) *texts.at(name) = ToWide(value);
    if (numbers.contains(name)) *numbers.at(name) = std::stoi(value);
  }
  return facets;
}

template <class Row>
void ReadsAndWrites(Row, const test::VectorRow& row) {
  const WString format = row["format"] == "-" ? WString() : row.Wide("format");
  const auto values = Row::Make({}, format);
  EXPECT_EQ(Read(values, {row["first"], " \n" + row["second"] + "\t"}), u"w");
  ASSERT_EQ(values->GetCount(), 2);

  const WString written = row.Wide(row["written"] == "-" ? "first" : "written");
  EXPECT_TRUE(WrittenBy(values).starts_with(u"<r><v>" + written + u"</v><v>")) << ToUtf8(WrittenBy(values));
  // Deliberate: every kind of date is a datetime to the writer.
  const ItemType told = Row::kIsDate ? ItemType_datetime : Row::kType;
  EXPECT_EQ(Owner(values).WrittenTypes(), std::vector<ItemType>({told, told}));

  const auto again = Row::Make({}, format);
  again->Add(values->Item(0));
  again->AddAt(0, values->Item(1));
  values->AddAt(1, values->Item(0));
  values->Remove(0);
  std::ranges::reverse(*values);
  EXPECT_EQ(WrittenBy(values), WrittenBy(again));

  if (row["message"] == "-") return;
  EXPECT_EQ(test::MessageOf([&] { Read(values, {row["first"], row["bad"]}); }), row.Wide("message"));
  EXPECT_EQ(values->GetCount(), 3) << "what stood ahead is there";
}

template <class Row>
void TellsAndRefuses(Row, const test::VectorRow& row) {
  Listener listener(Row::Told);
  const auto values = Row::Make(FacetsFrom(row["facet"]));
  values->AddEventListener(&listener);
  HeardDuring(listener, [&] { Read(values, {row["first"]}); });
  const auto first = values->Item(0);
  const WString text = Row::Told(&first);
  EXPECT_EQ(listener.heard, u"add:" + text + u" added:" + text + u" change");
  EXPECT_EQ(listener.last, values->GetBase());
  EXPECT_EQ(HeardDuring(listener, [&] { values->AddAt(3, first); }), u"add:" + text + u" ! Index out of range");
  EXPECT_EQ(HeardDuring(listener, [&] { values->AddAt(-1, first); }), u"add:" + text + u" ! Index out of range");

  const WString outOfRange = u"! Index 1 is out of range, use 0 - 0";
  EXPECT_EQ(HeardDuring(listener, [&] { values->Item(1); }), outOfRange);
  EXPECT_EQ(HeardDuring(listener, [&] { values->Remove(1); }), u"remove:1 " + outOfRange);
  EXPECT_EQ(HeardDuring(listener, [&] { values->Remove(-1); }), u"remove ! Index -1 is out of range, use 0 - 0");
  if (row["facet"] != "-") {
    const auto any = Row::Make();
    Read(any, {row["second"]});
    const auto second = any->Item(0);
    const WString add = Row::kIsDate ? u"" : u"add:" + Row::Told(&second) + u" ";
    EXPECT_EQ(HeardDuring(listener, [&] { values->Add(second); }), add + u"! " + row.Wide("refused"));
  }
  Listener refuser(Row::Told, u"add:");
  values->AddEventListener(&refuser);
  EXPECT_EQ(HeardDuring(refuser, [&] { values->Add(first); }), u"add:" + text + u" ! refused");
  values->RemoveEventListener(&refuser);
  EXPECT_EQ(values->GetCount(), 1) << "whatever was refused is not there";
  values->Add(first);
  const WString removal = u"remove:0 removed:0 change";
  EXPECT_EQ(HeardDuring(listener, [&] { values->Clear(); }), removal + u" " + removal);
}

TEST(ValueCollections, FollowOnePatternAsSpecified) {
  std::map<std::string, int> rows;
  ForEachClass([&](const std::string& name, auto row) {
    for (const test::VectorRow& vector : test::ReadVectors("collections/value_collections.vec", "class")) {
      if (vector["class"] != name) continue;
      SCOPED_TRACE(vector.Place());
      ++rows[name];
      ReadsAndWrites(row, vector);
      TellsAndRefuses(row, vector);
    }
    const auto values = decltype(row)::Make({}, {}, /*minOccurs=*/1);
    EXPECT_NE((CInstanceMonitor::DumpState() + u"\n").find(u"--> " + ToWide(name) + u" = 1/"), WString::npos) << name;
    EXPECT_EQ(test::MessageOf([&] { WrittenBy(values); }),
              u"The Minimum number of [v] elements allowed in this collection is 1");
  });
  EXPECT_EQ(rows.size(), 25u);
}

TEST(ValueCollections, RefuseOtherKindsOfDatesAheadOfTheEvent) {
  const auto rows = test::ReadVectors("collections/value_collections.vec", "kind");
  ForEachClass([&](const std::string& name, auto row) {
    if constexpr (decltype(row)::kIsDate) {
      const auto vector = std::ranges::find_if(rows, [&](const auto& one) { return one["class"] == name; });
      ASSERT_TRUE(vector != rows.end()) << name;
      Listener listener(decltype(row)::Told);
      const auto values = decltype(row)::Make();
      values->AddEventListener(&listener);
      CDateTime value;
      value.ParseXSDDate(vector->Wide("value"));
      EXPECT_EQ(HeardDuring(listener, [&] { values->Add(value); }), u"! " + vector->Wide("message"));
      EXPECT_EQ(HeardDuring(listener, [&] { values->AddAt(-1, value); }), u"! " + vector->Wide("message"));
      EXPECT_EQ(values->GetCount(), 0);
    }
  });
}

TEST(ValueCollections, ReadUpToTheFirstOtherElement) {
  const CSmartPtr<CstringCol> texts = new CstringCol(u"v", u"urn:v", 0, 1);
  Owner owner(texts);
  const char* const document = "<r xmlns:p='urn:v'><p:v a='1'> a  b</p:v><p:v/><v>x</v><p:v>y</p:v></r>";
  owner.FromXml(document);
  EXPECT_EQ(owner.rest, u"v");
  ASSERT_EQ(texts->GetCount(), 2) << "the limits wait for the write";
  EXPECT_EQ(texts->Item(0), u" a  b");
  EXPECT_EQ(texts->Item(1), u"");
  EXPECT_EQ(test::MessageOf([&] { WrittenBy(texts); }),
            u"The Maximum number of [v] elements allowed in this collection is 1");
  CSerializationContext context;
  context.SetIgnoreNamespaces(true);
  context.SetIgnoreInvalidCollectionCounts(true);
  texts->Clear();
  owner.FromXml(document, context);
  EXPECT_EQ(owner.rest, u"");
  EXPECT_EQ(texts->GetCount(), 4);
  texts->Remove(3), texts->Remove(0);
  EXPECT_EQ(owner.ToXml(false, false, EOLType_LF, context),
            u"<r><AA:v xmlns:AA=\"urn:v\"/><AA:v xmlns:AA=\"urn:v\">x</AA:v></r>");
}

TEST(ValueCollections, CannotBeWrittenByThemselves) {
  const CSmartPtr<Ci4Col> values = new Ci4Col(u"v", u"");
  EXPECT_EQ(WrittenBy(values), u"<r/>");
  EXPECT_EQ(
      test::MessageOf([&] { values->ToXml(); }),
      u"CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program logic error)");
}

TEST(ValueCollections, HoldBooleansAsObjects) {
  const CSmartPtr<CbooleanCol> values = new CbooleanCol(u"v", u"");
  for (const bool value : {true, false, true}) values->Add(value);
  for (bool& value : *values) value = !value;
  *values->begin() = true;
  EXPECT_EQ(WrittenBy(values), u"<r><v>true</v><v>true</v><v>false</v></r>");
  EXPECT_EQ(std::ranges::count(*values, true), 2);
}

TEST(ValueCollections, GiveTheFrontAwayInLinearTime) {
  Listener listener(Class<Ci4Col, ItemType_i4>::Told);
  const CSmartPtr<Ci4Col> queue = new Ci4Col(u"v", u"");
  std::vector<std::int32_t> expected;
  for (int i = 0; i < 100; ++i) {
    queue->Add(i);
    expected.push_back(i);
    const int at = i % 3 == 0 ? 0 : static_cast<int>(expected.size()) / 2;
    if (i % 4 != 0) queue->AddAt(at, -i), expected.insert(expected.begin() + at, -i);
    queue->Remove(at / 2);
    expected.erase(expected.begin() + at / 2);
    if (i % 5 == 4) queue->Remove(0), expected.erase(expected.begin());
    ASSERT_TRUE(std::ranges::equal(*queue, expected)) << i;
    ASSERT_EQ(queue->GetCount(), static_cast<int>(expected.size()));
  }
  const CSmartPtr<Ci1Col> many = new Ci1Col(u"v", u"");
  for (int i = 0; i < 1'000'000; ++i) many->Add(1);
  many->Clear();
  EXPECT_EQ(many->GetCount(), 0);
}

TEST(ValueCollections, TakeTheirOwnValues) {
  const WString text = u"123456789012345678901234567890123456789012345678901234567890";
  const CSmartPtr<CintegerCol> values = new CintegerCol(u"v", u"");
  values->Add(CBigInteger(text));
  Listener listener(Class<CintegerCol, ItemType_integer>::Told);
  values->AddEventListener(&listener);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(HeardDuring(listener, [&] { values->AddAt(i / 2, values->begin()[i / 3]); }),
              u"add:" + text + u" added:" + text + u" change");
  }
  EXPECT_EQ(std::ranges::count(*values, CBigInteger(text)), 21);
}

TEST(ValueCollections, LetAListenerChangeWhatIsTakenByValue) {
  Listener listener([](const void* data) {
    *const_cast<std::int32_t*>(static_cast<const std::int32_t*>(data)) = 5;
    return u"x";
  });
  const CSmartPtr<Ci4Col> values = new Ci4Col(u"v", u"");
  values->AddEventListener(&listener);
  values->Add(1);
  EXPECT_EQ(values->Item(0), 5);
}

}  // namespace
}  // namespace OvXmlLib16
