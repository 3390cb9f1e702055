#include <gtest/gtest.h>

#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "tests/support/AllocationLoop.h"
#include "tests/support/KitchenSink.h"

namespace OvXmlLib16 {
namespace {

using test::ExpectSafe;
using test::KitchenSink;

TEST(FastInfosetAllocation, LosesNothing) {
  const CSmartPtr<KitchenSink> sink = test::FilledSink(1);
  const CSerializationContext context;
  context.GetFIContext()->GetVocabulary()->AddElement(u"p", u"u", u"a");
  context.GetFIContext()->SetUseGeneratedVocabulary(true);
  const CBinaryData data = sink->ToFastInfosetStream(FInfoDecl_None, context);
  ExpectSafe("copying", [&] { const CSerializationContext copy(context); });
  ExpectSafe("writing", [&] { sink->ToFastInfosetStream(FInfoDecl_None, context); });
  ExpectSafe("reading", [&] { KitchenSink::Make()->FromXmlStream(data, context); });
}

}  // namespace
}  // namespace OvXmlLib16
