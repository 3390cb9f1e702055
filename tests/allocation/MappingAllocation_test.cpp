#include <gtest/gtest.h>

#include "tests/support/AllocationLoop.h"
#include "tests/support/KitchenSink.h"

namespace OvXmlLib16 {
namespace {

using test::ExpectSafe;
using test::KitchenSink;

TEST(MappingAllocation, LosesNothingAndBreaksNothing) {
  const CSmartPtr<KitchenSink> sink = test::FilledSink(1), again = KitchenSink::Make();
  const CSerializationContext context;
  const WString text = sink->ToXml(true, true, EOLType_LF, context);
  ExpectSafe("reading", [&] { KitchenSink::Make()->FromXml(text.c_str(), context); });
  ExpectSafe("writing", [&] { sink->ToXml(true, true, EOLType_LF, context); });

  test::g_callsToFailure = 300;
  EXPECT_THROW(again->FromXml(text.c_str(), context), std::bad_alloc);
  test::g_callsToFailure = 0;
  again->FromXml(text.c_str(), context);
  EXPECT_TRUE(Equal(sink, again)) << "an object can be read after a failure";
}

TEST(MappingAllocation, FailuresAreSafeToo) {
  const char* text = "<p xmlns='urn:sample' version='1'><primitives><i4>x</i4></primitives></p>";
  ExpectSafe("a failed read", [&] {
    try {
      KitchenSink::Make()->FromXml(text);
    } catch (const COvException& exception) {
      exception.GetFullMessage();
    }
  });
}

}  // namespace
}  // namespace OvXmlLib16
