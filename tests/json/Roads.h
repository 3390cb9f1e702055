// Reading JSON on both of its roads.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "ovxmllib/document/DocumentTree.h"
#include "ovxmllib/json/JsonContext.h"
#include "ovxmllib/json/JsonTreeReader.h"
#include "tests/mapping/Failures.h"
#include "tests/support/AnyObject.h"

namespace OvXmlLib16::test {

/// For JSON in rows: ' stands for a quotation mark.
inline std::string Json(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return text;
}

/// The modes n, a, f.
inline CSerializationContext ContextOf(char mode, const std::string& root = {}) {
  CSerializationContext context;
  context.GetJsonContext()->SetSupportRoundtrip(mode == 'n'   ? RoundTripNone
                                                : mode == 'a' ? RoundTripAttributes
                                                              : RoundTripFull);
  context.GetJsonContext()->SetRootElementName(ToWide(root).c_str());
  return context;
}

/// What a text reads as: an object, or a failure.
struct JsonOutcome {
  CSmartPtr<AnyObject> object;
  std::string failure;

  static JsonOutcome Of(std::string_view text, const CSerializationContext& context) {
    JsonOutcome outcome{new AnyObject, {}};
    outcome.failure = FailureOf([&] { outcome.object->FromJson(text, context); });
    return outcome;
  }
  bool operator==(const JsonOutcome& other) const {
    return failure == other.failure && (!failure.empty() || *object == *other.object);
  }
};

/// Whether the text goes the short road to its end.
inline bool GoesShortRoad(std::string_view text, const CSerializationContext& context) {
  CXmlDocument document(context);
  DocumentTree tree(document, nullptr, context);
  return ReadJsonIntoTree(text, context, tree);
}

/// The outcome, which must be that of the long road.
inline JsonOutcome ReadOnBothRoads(std::string_view text, const CSerializationContext& context) {
  JsonOutcome outcome = JsonOutcome::Of(text, context);
  SetJsonTreeReaderForTest(false);
  const JsonOutcome longRoad = JsonOutcome::Of(text, context);
  SetJsonTreeReaderForTest(true);
  EXPECT_TRUE(outcome == longRoad) << text << '\n' << outcome.failure << "\nand on the long road\n" << longRoad.failure;
  return outcome;
}

}  // namespace OvXmlLib16::test
