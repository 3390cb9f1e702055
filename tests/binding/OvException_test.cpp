#include "ovxmllib/binding/OvException.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <type_traits>
#include <typeinfo>

namespace OvXmlLib16 {
namespace {

static_assert(!std::is_base_of_v<std::exception, COvException> &&
              std::is_base_of_v<COvValidationException, COvInvalidValueException> &&
              std::is_base_of_v<COvValidationException, COvInvalidNamespaceException>);

TEST(OvException, ChainsMessagesFromTheOutermostToTheCause) {
  const COvException cause(u"cause", WString()), middle(u"middle", u"/p", cause);
  EXPECT_EQ(middle.GetMessage(), u"middle\nPath: /p");
  EXPECT_EQ(COvInvalidValueException(u"outer", middle).GetFullMessage(), u"outer\nmiddle\nPath: /p\ncause");
}

// One row a class that can be thrown: wrapped, copied and outlived, it is still itself.
template <class Exception>
class OvExceptionFamily : public testing::Test {};

using Family =
    testing::Types<COvException, COvValidationException, COvInvalidValueException, COvInvalidNamespaceException,
                   COvInvalidStateException, COvInvalidParamException, COvOverFlowException>;
TYPED_TEST_SUITE(OvExceptionFamily, Family);

TYPED_TEST(OvExceptionFamily, KeepsItsTypeAsInnerException) {
  std::optional<COvException> copy;
  {
    TypeParam inner(COvException(u"inner", u"/p", COvOverFlowException(u"cause")));
    inner.SetPlace(3, 7);
    const COvException outer(u"outer", inner);
    inner = TypeParam();
    copy = outer;
  }
  const COvException* const kept = copy->GetInnerException();
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(typeid(*kept), typeid(TypeParam));
  EXPECT_EQ(kept->GetMessage(), u"inner\nPath: /p");
  EXPECT_EQ(kept->GetPath(), u"/p");
  EXPECT_EQ(kept->GetLine(), 3u);
  EXPECT_EQ(kept->GetColumn(), 7u);
  EXPECT_NE(dynamic_cast<const COvOverFlowException*>(kept->GetInnerException()), nullptr);
}

TEST(OvException, PrintsItsMessageAndItsPlaceInUtf8) {
  COvException exception(u"sch\u00F6n \xD800", COvException(u"cause"));
  const auto print = [&] { return (std::ostringstream() << exception).str(); };
  EXPECT_EQ(print(), "sch\xC3\xB6n \xEF\xBF\xBD\ncause");
  exception.SetPlace(12, 5);
  EXPECT_EQ(print(), "sch\xC3\xB6n \xEF\xBF\xBD\ncause (line 12, column 5)");
}

}  // namespace
}  // namespace OvXmlLib16
