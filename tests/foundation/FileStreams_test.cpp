#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>

#include "ovxmllib/foundation/FileBinaryStream.h"
#include "ovxmllib/foundation/FileTextStream.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16 {
namespace {

using std::filesystem::directory_iterator;
using test::MessageOf;
using test::ReadFile;
using test::TemporaryFolder;

constexpr XmlEncoding kEncodings[] = {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader};

// Each test ends with as many open files as it began with.
class FileStreams : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(CountDescriptors(), m_descriptors); }

  static std::ptrdiff_t CountDescriptors() {
    return std::distance(directory_iterator("/proc/self/fd"), directory_iterator());
  }

  const std::ptrdiff_t m_descriptors = CountDescriptors();
  const TemporaryFolder m_folder;
};

std::string Utf16(const std::string& ascii) {
  std::string result = "\xFF\xFE";
  for (const char c : ascii) (result += c) += '\0';
  return result;
}

std::string Expected(const std::string& ascii, XmlEncoding encoding) {
  return encoding == XmlEncoding_UTF8 ? ascii : Utf16(ascii);
}

WString Line(const std::filesystem::path& path, WStringView number) {
  return u"Failed to write data to the file [" + path.u16string() + u"] error [0x" + WString(number) + u"]";
}

TEST_F(FileStreams, WriteTextPieceByPiece) {
  for (const XmlEncoding encoding : kEncodings) {
    const auto path = m_folder / "text";
    test::WriteFile(path, "something longer that stood here before");
    CFileTextStream stream(path, encoding);
    stream.Open();
    EXPECT_EQ(ReadFile(path), Expected("", encoding));
    stream.Flush();
    stream.Write(u"one ");
    stream.Flush();
    EXPECT_EQ(ReadFile(path), Expected("one ", encoding));
    EXPECT_EQ(stream.GetBufferedLength(), 0u);
    stream.Write(u"two ");
    stream.Flush();
    stream.Write(u"three");
    EXPECT_EQ(ReadFile(path), Expected("one two ", encoding));
    stream.Close();
    EXPECT_EQ(ReadFile(path), Expected("one two three", encoding));

    stream.Open();
    stream.Close();
    stream.Close();
    EXPECT_EQ(ReadFile(path), Expected("", encoding));
  }
}

TEST_F(FileStreams, SplitPairsAtEveryFlush) {
  const WString text = u"\U0001F600a\U0001F601\U0001F602";
  for (std::size_t step = 1; step < text.size(); ++step) {
    CFileTextStream stream(m_folder / "pairs", XmlEncoding_UTF8);
    stream.Open();
    for (std::size_t i = 0; i < text.size(); i += step) {
      stream.Write(WStringView(text).substr(i, step));
      stream.Flush();
    }
    stream.Close();
    EXPECT_EQ(ReadFile(m_folder / "pairs"), ToUtf8(text));
  }
}

TEST_F(FileStreams, WriteFinishedBytes) {
  const unsigned char bytes[] = {'<', 0, 0xFF};
  for (const XmlEncoding encoding :
       {XmlEncoding_None, XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader}) {
    const std::string mark = encoding >= XmlEncoding_UTF16 ? "\xFF\xFE" : "";
    CFileBinaryStream stream((m_folder / "b\u00FCtes").u16string().c_str(), encoding, CBinaryData(bytes, 3));
    stream.WriteToFile();
    EXPECT_EQ(ReadFile(m_folder / "b\xC3\xBCtes"), mark + std::string("<\0\xFF", 3));
    CFileBinaryStream(m_folder / "b\xC3\xBCtes", encoding).WriteToFile();
    EXPECT_EQ(ReadFile(m_folder / "b\xC3\xBCtes"), mark);
  }
}

TEST_F(FileStreams, NameTheFileThatCannotBeBegun) {
  const struct {
    std::filesystem::path path;
    WStringView number;
  } cases[] = {{m_folder / "", u"00000015"}, {m_folder / "missing/f\xC3\xBC", u"00000002"}, {"", u"00000002"}};
  for (const auto& [path, number] : cases) {
    CFileTextStream text(path, XmlEncoding_UTF16);
    EXPECT_EQ(MessageOf([&] { text.Open(); }), Line(path, number));
    CFileBinaryStream bytes(path, XmlEncoding_UTF8);
    EXPECT_EQ(MessageOf([&] { bytes.WriteToFile(); }), Line(path, number));
  }
  CFileTextStream marked("/dev/full", XmlEncoding_UTF16);
  EXPECT_EQ(MessageOf([&] { marked.Open(); }), Line("/dev/full", u"0000001C"));
  const WChar notAName[] = {u'a', 0xD800, 0};
  EXPECT_THROW(CFileTextStream(notAName, XmlEncoding_UTF8), COvInvalidValueException);
  EXPECT_THROW(CFileBinaryStream(notAName, XmlEncoding_UTF8), COvInvalidValueException);
}

TEST_F(FileStreams, ReportAFullDevice) {
  const unsigned char bytes[] = {'x'};
  CFileBinaryStream finished("/dev/full", XmlEncoding_UTF8, CBinaryData(bytes, 1));
  EXPECT_EQ(MessageOf([&] { finished.WriteToFile(); }), Line("/dev/full", u"0000001C"));

  for (const bool inClose : {false, true}) {
    CFileTextStream stream("/dev/full", XmlEncoding_UTF8);
    stream.Open();
    stream.Write(u"text");
    EXPECT_EQ(CountDescriptors(), m_descriptors + 1);
    EXPECT_EQ(MessageOf([&] { inClose ? stream.Close() : stream.Flush(); }),
              u"Failed to write data to the file. Error [0x0000001C]");
    EXPECT_EQ(CountDescriptors(), m_descriptors) << "the file is closed though the stream lives";
    stream.Write(u"more");
    EXPECT_EQ(MessageOf([&] { stream.Close(); }), u"Failed to write data to the file. Error [0x00000009]");
  }
}

TEST_F(FileStreams, LeaveThePartThatWasWritten) {
  const auto path = m_folder / "part";
  const auto failAfterOnePiece = [&](XmlEncoding encoding, WStringView rest) {
    CFileTextStream stream(path, encoding);
    stream.Open();
    stream.Write(u"one ");
    if (encoding != XmlEncoding_None) stream.Flush();
    stream.Write(rest);
    const WString message = MessageOf([&] { stream.Close(); });
    EXPECT_EQ(CountDescriptors(), m_descriptors);
    return message;
  };
  for (const XmlEncoding encoding : kEncodings) {
    EXPECT_EQ(failAfterOnePiece(encoding, u"two \xDC00"),
              u"The text holds the unpaired surrogate U+DC00 at position 8.");
    EXPECT_EQ(ReadFile(path), Expected("one ", encoding));
    EXPECT_EQ(failAfterOnePiece(encoding, u"two \xD800"),
              u"The text holds the unpaired surrogate U+D800 at position 8.");
    EXPECT_EQ(ReadFile(path), Expected("one two ", encoding));
  }
  EXPECT_EQ(failAfterOnePiece(XmlEncoding_None, u"two"), u"Unknown Encoding, select UTF-8 (contact our support team)");
  EXPECT_EQ(ReadFile(path), "");

  {
    CFileTextStream abandoned(path, XmlEncoding_UTF8);
    abandoned.Open();
    abandoned.Write(u"flushed ");
    abandoned.Flush();
    abandoned.Write(u"lost");
  }
  EXPECT_EQ(ReadFile(path), "flushed ") << "the destructor writes nothing";
}

}  // namespace
}  // namespace OvXmlLib16
