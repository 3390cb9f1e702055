// The orders classes on generated documents: every value comes out as it went in.

#include "examples/orders/Orders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "bench/OrdersDocument.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16::test {
namespace {

using orders::COrder;
using orders::COrders;

class Orders : public testing::Test {
 protected:
  static void SetUpTestSuite() { CXmlObjectBase::Register(16, 1); }

  static CSmartPtr<COrders> Read(const std::string& document, const CSerializationContext& context = {}) {
    CSmartPtr<COrders> read(new COrders);
    read->FromXml(std::string_view(document), context);
    return read;
  }
  static std::string Write(const COrders& document, XmlEncoding encoding = XmlEncoding_UTF8) {
    const CBinaryData bytes =
        document.ToXmlStream(/*header=*/true, /*formatted=*/true, encoding, EOLType_LF, COrders::MakeContext());
    return std::string(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetLength());
  }
  static std::string MessageOf(const std::string& document, const CSerializationContext& context = {}) {
    try {
      Read(document, context);
      return "read";
    } catch (const COvException& exception) {
      return ToUtf8(exception.GetFullMessage());
    }
  }
};

// The two spellings of a document that objects do not keep: character references, and zeros at the end of a fraction of
// a second.
std::string Canonical(const std::string& document) {
  const std::string text = std::regex_replace(document, std::regex("&#x20AC;"), "€");
  return std::regex_replace(std::regex_replace(text, std::regex("(:\\d\\d\\.\\d*[1-9])0+(?=[Z+-])"), "$1"),
                            std::regex("(:\\d\\d)\\.0+(?=[Z+-])"), "$1");
}

// The lines from the first one that differs on; empty when there is none.
std::string Difference(const std::string& got, const std::string& expected) {
  if (got == expected) return "";
  std::size_t i = 0;
  while (i < got.size() && i < expected.size() && got[i] == expected[i]) ++i;
  const std::size_t start = got.rfind('\n', i) + 1;
  return "got " + got.substr(start, 100) + "\nexpected " + expected.substr(start, 100);
}

TEST_F(Orders, EveryDocumentComesOutAsItWentIn) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    const std::string document = bench::MakeOrdersDocument(60'000, seed);
    const CSmartPtr<COrders> read = Read(document);
    ASSERT_EQ(Difference(Write(*read.operator->()), Canonical(document)), "") << "seed " << seed;
    read->FromXml(std::string_view(document));
    EXPECT_EQ(Difference(Write(*read.operator->()), Canonical(document)), "") << "read a second time, seed " << seed;
  }
}

TEST_F(Orders, FaultsAreToldWithTheirPlace) {
  const std::string good = Canonical(bench::MakeOrdersDocument(3'000));
  const auto with = [&](const char* pattern, const char* replacement) {
    const std::string faulty =
        std::regex_replace(good, std::regex(pattern), replacement, std::regex_constants::format_first_only);
    EXPECT_NE(faulty, good) << pattern;
    return faulty;
  };
  const struct {
    const char *pattern, *replacement, *message;
  } kFaults[] = {
      {"<total>", "<total>x",
       "Failed to process the element.\nPath: /orders/order[1]\nThe string representing a Decimal, contained an "
       "invalid char at position 0 [x"},
      {" status=\"\\w+\"", " status=\"lost\"", "/orders/order[1]\n[lost] is no status."},
      {" id=\"\\d+\"", "", "/orders/order[1]\nFailed to find the required Attribute [id]."},
      {" line=\"1\"", " line=\"1\" rank=\"1\"", "Unexpected Attribute found.\nPath: /orders/order[1]/item[1]/@rank"},
      {"<city>[^<]*</city>", "", "Failed to find the required child element [city].\nPath: /orders/order[1]/customer"},
      {"<card>(\n|.)*?</card>", "", "Failed to find the required child element [payment].\nPath: /orders/order[1]"},
      {"</card>", "</card><cash/>",
       "Failed to process the element.\nPath: /orders/order[1]\nThe Minimum number of [item]"},
      {"<quantity>", "<quantity unit=\"kg\">",
       "Unexpected Attribute found.\nPath: /orders/order[1]/item[1]/quantity/@unit"},
      {"</order>", "<gift/></order>",
       "Failed read all the elements held within the element [order]. The unexpected element [gift] remains un "
       "processed\nPath: /orders/order[1]"},
  };
  for (const auto& fault : kFaults) {
    EXPECT_THAT(MessageOf(with(fault.pattern, fault.replacement)), testing::HasSubstr(fault.message));
  }
}

TEST_F(Orders, FaultsInAttributesTellWhereTheyStand) {
  using Place = std::pair<std::uint64_t, std::uint64_t>;
  const auto placeOf = [](std::string_view text) -> Place {
    try {
      CSmartPtr<COrders>(new COrders)->FromXml(text);
    } catch (const COvException& exception) {
      return {exception.GetLine(), exception.GetColumn()};
    }
    return {};
  };
  EXPECT_EQ(placeOf("<orders xmlns='urn:example:orders'\r\n \t\t a='>\"'  b=''/>"), Place(2, 5));
  EXPECT_EQ(placeOf("<orders xmlns='urn:example:orders'><header\nx='é' p:x='' xmlns:p='p'/></orders>"), Place(2, 1));
  EXPECT_EQ(placeOf("<orders xml:a='é' p:x=\"'\"\nxmlns:p='urn:p' xmlns='urn:example:orders'/>"), Place(1, 9));
}

// The place is found by reading once more, which a pipe does not allow.
TEST_F(Orders, FaultsInFilesHaveALineAndFaultsInPipesNone) {
  const TemporaryFolder folder;
  const std::string fault = "<orders xmlns='urn:example:orders'>\n<header/>\n <unknown/></orders>";
  std::ofstream(folder / "file") << fault;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(folder / "pipe") << fault; });
  const auto lineOf = [&](const char* name) {
    try {
      CSmartPtr<COrders>(new COrders)->FromXmlFile(folder / name);
    } catch (const COvException& exception) {
      return exception.GetLine();
    }
    return std::uint64_t{99};
  };
  EXPECT_EQ(lineOf("pipe"), 0u);
  writer.join();
  EXPECT_EQ(lineOf("file"), 2u);
}

TEST_F(Orders, FacetsAreCheckedOnReadingWhenTheContextSaysSo) {
  const std::string document =
      std::regex_replace(bench::MakeOrdersDocument(1'000), std::regex("<quantity>\\d+"), "<quantity>0");
  EXPECT_EQ(MessageOf(document), "read");
  CSerializationContext strict;
  strict.SetValidateOnRead(true);
  EXPECT_EQ(MessageOf(document, strict),
            "Failed to process the element.\nPath: /orders/order/item[1]\nInvalid Value for quantity [0]");
}

// The names of the levels, from the outermost; each is wrapped once.
TEST_F(Orders, AFailureOfWritingTellsEachElementAroundIt) {
  const CSmartPtr<COrders> document = Read(bench::MakeOrdersDocument(1'000));
  document->GetOrders().At(0).GetItems().At(0).quantity = 0;
  try {
    document->ToXml();
    FAIL();
  } catch (const COvValidationException& exception) {
    EXPECT_EQ(ToUtf8(exception.GetFullMessage()),
              "Failed to convert the element [orders] to XML\nFailed to convert the element [order] to XML\n"
              "Failed to convert the element [item] to XML\nInvalid Value for quantity [0]");
  }
}

TEST_F(Orders, AChoiceKeepsOneMember) {
  orders::CPayment payment;
  payment.SetCash(new orders::CCash);
  EXPECT_THROW(payment.SetCard(new orders::CCard), COvInvalidStateException);
  EXPECT_NE(payment.GetCash(), nullptr);
  payment.SetCash(nullptr);
  payment.SetCard(new orders::CCard);
  EXPECT_EQ(payment.GetCash(), nullptr);
}

const char* const kItem =
    "<item xmlns=\"urn:example:orders\" sku=\"KX-00001, a long one\" line=\"1\"><description>Brass hinge, polished"
    "</description><quantity>2</quantity><price>3.60</price></item>";

std::string WrittenItem(const orders::CItem& item) {
  return ToUtf8(item.ToXml(/*header=*/false, /*formatted=*/false, EOLType_LF, COrders::MakeContext()));
}

// Reads and writes another item before each access to a property and behind it.
class BusyItem : public orders::CItem {
 protected:
  void AccessProperty(int index, bool read, OvVariant& value) override {
    UseAnother();
    CItem::AccessProperty(index, read, value);
    UseAnother();
  }

 private:
  static void UseAnother() {
    const CSmartPtr<CItem> another(new CItem);
    another->FromXml(
        "<item xmlns='urn:example:orders' sku='another, as long' line='7'><description>Something else"
        "</description><quantity>1</quantity><price>1</price></item>");
    another->ToXml();
  }
};

TEST_F(Orders, AccessorsMayReadAndWriteOtherObjects) {
  const CSmartPtr<BusyItem> item(new BusyItem);
  item->FromXml(kItem);
  EXPECT_EQ(WrittenItem(*item.operator->()), kItem);
}

// Has the tables of its base, whose objects cannot be nil.
class NillableItem : public orders::CItem, public INillable {
 public:
  bool IsNil() override { return m_isNil; }
  void SetNil(bool nil) override { m_isNil = nil; }

 private:
  bool m_isNil = false;
};

TEST_F(Orders, ADerivedClassMayBeNillableWhereItsBaseIsNot) {
  const CSmartPtr<orders::CItem> plain(new orders::CItem);
  const CSmartPtr<NillableItem> nillable(new NillableItem);
  const std::string nil =
      std::regex_replace(kItem, std::regex(" sku=(.|\n)*>"),
                         " sku='a' line='1' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'/>");
  for (int round = 0; round < 2; ++round) {
    plain->FromXml(kItem);
    EXPECT_EQ(WrittenItem(*plain.operator->()), kItem);
    nillable->FromXml(std::string_view(nil));
    EXPECT_TRUE(nillable->IsNil());
    EXPECT_THAT(WrittenItem(*nillable.operator->()), testing::HasSubstr(":nil=\"true\""));
  }
}

// Names that recur are kept in a table of limited size.
TEST_F(Orders, KeepMoreElementNamesThanTheProcessHasRoomFor) {
  std::vector<CSmartPtr<orders::CCash>> objects;
  const auto nameOf = [](int i) {
    return "n" + std::to_string(i) + std::string(static_cast<std::size_t>(i % 80), 'x');
  };
  for (int i = 0; i < 2000; ++i) {
    objects.emplace_back(new orders::CCash)->FromXml(std::string_view("<" + nameOf(i) + "/>"));
  }
  for (int i = 0; i < 2000; ++i) {
    EXPECT_THAT(ToUtf8(objects[static_cast<std::size_t>(i)]->ToXml()), testing::HasSubstr(":" + nameOf(i) + " "));
  }
}

using ThreadsOrders = Orders;

// All tables are given up first, so that the threads meet where they are made.
TEST_F(ThreadsOrders, MakeTheTablesAndReadAtTheSameTime) {
  for (int round = 0; round < 20; ++round) {
    orders::COrders::CleanTables();
    orders::CHeader::CleanTables();
    orders::COrder::CleanTables();
    orders::CCustomer::CleanTables();
    orders::CPayment::CleanTables();
    orders::CCash::CleanTables();
    orders::CCard::CleanTables();
    orders::CInvoice::CleanTables();
    orders::CItem::CleanTables();
    std::vector<std::string> results(8);
    {
      std::vector<std::jthread> threads;
      for (std::size_t i = 0; i < results.size(); ++i) {
        threads.emplace_back(
            [&results, i] { results[i] = Write(*Read(bench::MakeOrdersDocument(3'000, i)).operator->()); });
      }
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
      EXPECT_EQ(Difference(results[i], Canonical(bench::MakeOrdersDocument(3'000, i))), "");
    }
  }
}

}  // namespace
}  // namespace OvXmlLib16::test
