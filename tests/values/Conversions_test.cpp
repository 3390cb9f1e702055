#include "ovxmllib/values/Conversions.h"

#include <gtest/gtest.h>

#include <sstream>

#include "ovxmllib/values/FacetShortcut.h"
#include "ovxmllib/values/OvVariant.h"
#include "ovxmllib/values/PrimitiveRows.h"
#include "ovxmllib/values/ValueChecks.h"
#include "tests/support/Thrown.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

ItemType TypeNamed(WStringView name) {
  for (int number = ItemType_none; number <= ItemType_integer; ++number) {
    const auto type = static_cast<ItemType>(number);
    bool isIt = false;
    VisitPrimitive(type, [&](auto row) { isIt = row.kName == name; });
    if (isIt) return type;
  }
  return name == u"object" ? ItemType_XmlObjectBase : ItemType_none;
}

// What `make` returns, or the message that it throws behind `mark`.
template <class Make>
WString TextOrMessage(const WString& mark, const Make& make) {
  try {
    return make();
  } catch (const COvException& exception) {
    return mark + exception.GetMessage();
  }
}

TEST(Conversions, ReadAndPrint) {
  for (const test::VectorRow& row : test::ReadVectors("values/conversions.vec", "convert")) {
    SCOPED_TRACE(row.Place());
    const auto rule = static_cast<CWhitespaceUtils::WhitespaceRule>(row.Number("rule"));
    EXPECT_EQ(TextOrMessage(u"! ",
                            [&] {
                              OvVariant value;
                              value.FromString(row.Wide("text"), TypeNamed(row.Wide("type")), rule);
                              return value.ToString(row.Wide("format").c_str());
                            }),
              row.Wide("result"));
  }
}

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

// Each function under the name of its type, in the order of the types.
TEST(Conversions, HaveAFunctionForEachType) {
#define CONVERSION(type)                                                                                            \
  {                                                                                                                 \
    [](WStringView text) { return CConversions::type##ToString(CConversions::type##FromString(text, kCollapse)); }, \
        ItemType_##type                                                                                             \
  }
  const struct {
    WString (*convert)(WStringView);
    ItemType type;
  } conversions[] = {CONVERSION(hexBinary), CONVERSION(base64Binary), CONVERSION(i1),       CONVERSION(i2),
                     CONVERSION(i4),        CONVERSION(i8),           CONVERSION(ui1),      CONVERSION(ui2),
                     CONVERSION(ui4),       CONVERSION(ui8),          CONVERSION(r4),       CONVERSION(r8),
                     CONVERSION(duration),  CONVERSION(yearMonth),    CONVERSION(monthDay), CONVERSION(year),
                     CONVERSION(month),     CONVERSION(day),          CONVERSION(date),     CONVERSION(datetime),
                     CONVERSION(time),      CONVERSION(char),         CONVERSION(string),   CONVERSION(boolean),
                     CONVERSION(decimal),   CONVERSION(integer)};
#undef CONVERSION
  ASSERT_EQ(std::size(conversions), 26u);
  for (const WStringView text :
       {u" 1 ", u"-7", u"300", u"1.250", u"true", u"INF", u"2000-01-02", u"--05", u"---05", u"--05-06", u"2000-05",
        u"2000", u"12:00:00", u"2000-01-02T12:00:00Z", u"PT1S", u"AAEC", u"x"}) {
    for (const auto& conversion : conversions) {
      OvVariant value;
      const WString expected = TextOrMessage(u"! ", [&] {
        value.FromString(text, conversion.type, kCollapse);
        return value.ToString(nullptr);
      });
      EXPECT_EQ(TextOrMessage(u"! ", [&] { return conversion.convert(text); }), expected) << conversion.type;
    }
  }
  EXPECT_EQ(CConversions::r4ToString(0.5f, u"%.2f") + CConversions::r8ToString(0.25, u"%.1f"), u"0.500.2");
  EXPECT_EQ(CConversions::decimalToString(CDecimal(u"2.5"), u"2"), u"2.50");
}

std::int32_t& NumberFacet(CPrimitiveRestrictions& facets, std::string_view name) {
  if (name == "minLength") return facets.m_minLength;
  if (name == "maxLength") return facets.m_maxLength;
  if (name == "length") return facets.m_length;
  if (name == "totalDigits") return facets.m_totalDigits;
  if (name == "fractionDigits") return facets.m_fractionDigits;
  throw std::invalid_argument(std::string(name));
}

void SetFacet(CPrimitiveRestrictions& facets, std::string_view name, const std::string& value) {
  if (name == "pattern") {
    facets.m_pattern = ToWide(value);
  } else if (name.ends_with("clusive")) {
    const bool isLower = name.starts_with("min"), isInclusive = name.ends_with("Inclusive");
    (isLower ? (isInclusive ? facets.m_minInclusive : facets.m_minExclusive)
             : (isInclusive ? facets.m_maxInclusive : facets.m_maxExclusive)) = ToWide(value);
  } else {
    NumberFacet(facets, name) = std::stoi(value);
  }
}

CPrimitiveRestrictions FacetsFrom(std::string text) {
  CPrimitiveRestrictions facets;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t equal = text.find('=', at), end = std::min(text.find(' ', at), text.size());
    SetFacet(facets, text.substr(at, equal - at), text.substr(equal + 1, end - equal - 1));
    at = end + 1;
  }
  return facets;
}

TEST(ValueChecks, HoldFacetsAsSpecified) {
  for (const test::VectorRow& row : test::ReadVectors("values/value_checks.vec", "check")) {
    SCOPED_TRACE(row.Place());
    const ItemType type = TypeNamed(row.Wide("type"));
    EXPECT_EQ(TextOrMessage(u"",
                            [&] {
                              OvVariant value;
                              value.FromString(row.Wide("value"), type, kCollapse);
                              CheckPrimitiveValue(u"p", value, type, FacetsFrom(row["facets"]));
                              return WString(u"ok");
                            }),
              row.Wide("result"));
  }
  OvVariant object;
  object.SetXmlObject(nullptr);
  EXPECT_EQ(test::MessageOf([&] { CheckPrimitiveValue(u"p", object, ItemType_XmlObjectBase, {}); }),
            u"Invalid Type 27");
}

OvVariant ValueOf(const std::string& text, ItemType type) {
  OvVariant value;
  value.FromString(ToWide(text), type, kCollapse);
  return value;
}

TEST(FacetShortcut, SaysYesOnlyWhereTheCheckDoes) {
  for (const test::VectorRow& row : test::ReadVectors("values/facet_shortcut.vec", "shortcut")) {
    SCOPED_TRACE(row.Place());
    const ItemType type = TypeNamed(row.Wide("type"));
    const CPrimitiveRestrictions facets = FacetsFrom(row["facets"]);
    const FacetShortcut shortcut(type, facets);
    std::istringstream sure(row["sure"]), others(row["others"]);
    for (std::string text; sure >> text;) {
      const OvVariant value = ValueOf(text, type);
      EXPECT_TRUE(shortcut.SurelyPasses(value)) << text;
      EXPECT_NO_THROW(CheckPrimitiveValue(u"p", value, type, facets)) << text;
    }
    for (std::string text; others >> text;) EXPECT_FALSE(shortcut.SurelyPasses(ValueOf(text, type))) << text;
  }
}

// Nil and values of other types are for the full check.
TEST(FacetShortcut, LooksAtValuesOfItsTypeAlone) {
  const FacetShortcut shortcut(ItemType_i4, FacetsFrom("minInclusive=-5"));
  OvVariant value;
  EXPECT_FALSE(shortcut.SurelyPasses(value));
  value.SetI8(1);
  EXPECT_FALSE(shortcut.SurelyPasses(value));
  value.SetI4(1);
  EXPECT_TRUE(shortcut.SurelyPasses(value));
  value.SetNil();
  EXPECT_FALSE(shortcut.SurelyPasses(value));
  EXPECT_FALSE(FacetShortcut(ItemType_none, {}).SurelyPasses(OvVariant()));
  EXPECT_FALSE(FacetShortcut().SurelyPasses(OvVariant()));
}

}  // namespace
}  // namespace OvXmlLib16
