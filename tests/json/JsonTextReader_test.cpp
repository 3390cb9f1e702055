#include "ovxmllib/json/JsonTextReader.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/platform/DebugOutput.h"
#include "tests/json/Recorder.h"
#include "tests/support/Vectors.h"

namespace OvXmlLib16 {
namespace {

std::string Quoted(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return text;
}

TEST(JsonTextReader, TellsWhatIsInATextInBothForms) {
  for (const test::VectorRow& row : test::ReadVectors("json/json_text.vec", "events")) {
    SCOPED_TRACE(row.Place());
    const std::string text = Quoted(row["text"]);
    const bool comments = row["comments"] == "on";
    test::EventLog record;
    test::ReadWide(ToWide(text), comments, row.Wide("root"), record);
    EXPECT_EQ(record.text, row["events"]);
    EXPECT_EQ(test::EventsOfBytes(text, comments, row["root"]), row["events"]);
  }
}

TEST(JsonTextReader, TellsFaultsWithPlaceAndPathAsSpecified) {
  for (const test::VectorRow& row : test::ReadVectors("json/json_text.vec", "faults")) {
    SCOPED_TRACE(row.Place());
    const std::string text = Quoted(row["text"]);
    const bool comments = row["comments"] == "on";
    EXPECT_EQ(test::EventsOfBytes(text, comments, {}), "declined");
    test::EventLog record;
    try {
      test::ReadWide(ToWide(text), comments, {}, record);
      ADD_FAILURE() << record.text;
    } catch (const COvValidationException& exception) {
      EXPECT_EQ(ToUtf8(exception.GetMessage()), row["message"] + "\nPath: " + row["path"]);
      EXPECT_EQ(ToUtf8(exception.GetPath()), row["path"]);
      const WString place = FormatString(u"at line %d, position %d.", exception.GetLine(), exception.GetColumn());
      EXPECT_TRUE(row["message"].ends_with(ToUtf8(place)));
    }
  }
}

TEST(JsonTextReader, TakesAHundredLevelsAsSpecified) {
  const auto nested = [](std::size_t depth, const char* inner) {
    return std::string(depth, '[') + inner + std::string(depth, ']');
  };
  const auto messageOf = [](const std::string& text) {
    test::EventLog record;
    try {
      test::ReadWide(ToWide(text), true, {}, record);
    } catch (const COvException& exception) {
      return ToUtf8(exception.GetMessage());
    }
    return std::string();
  };
  EXPECT_EQ(messageOf(nested(100, "")), "");
  EXPECT_EQ(messageOf(nested(100, "1")), "JSON exceeded depth limit at line 1, position 101.\nPath: $");
  EXPECT_EQ(messageOf(std::string(1'000'000, '[')), "JSON exceeded depth limit at line 1, position 101.\nPath: $");
  std::string comments;
  for (int i = 0; i < 500'000; ++i) comments += "/**///\n";
  EXPECT_EQ(messageOf(comments + "1"), "");
  EXPECT_EQ(test::EventsOfBytes(comments + "1", true, {}), "^ 1 $");
}

WString g_traced;

TEST(JsonTextReader, TracesItsEvents) {
  g_traced.clear();
  const auto before = platform::GetDebugOutput();
  platform::SetDebugOutput([](WStringView text) { g_traced += text; });
  test::EventLog log;
  test::ReadWide(u"{\"a\": [1, \"b\", true, null]}", true, {}, log);
  platform::SetDebugOutput(before);
  EXPECT_EQ(ToUtf8(g_traced),
            "StartDocument\nStartObject\nName: a\nStartArray\nNumber: 1\nString: b\nBool: true\nNull\nEndArray\n"
            "EndObject\nEndDocument\n");
}

// The place of the other half of a pair is the end of the text for one who looks at units, and its middle for bytes.
TEST(JsonTextReader, LeavesHalvesOfPairsToTheUnits) {
  for (const char* text : {R"("\ud83d")", R"("\ude00x")", R"("\ud83d\n")", R"("\ud83d\u0041")", R"("\ud83dx")"}) {
    EXPECT_EQ(test::EventsOfBytes(text, true, {}), "declined") << text;
    test::EventLog record;
    test::ReadWide(ToWide(text), true, {}, record);
    EXPECT_NE(record.text.find("\xEF\xBF\xBD"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace OvXmlLib16
