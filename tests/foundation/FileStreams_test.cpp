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

constexpr XmlEncoding kEncodings[] = {XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader};

// Each test ends with as many open files as it began with.
class FileStreams : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(CountDescriptors(), m_descriptors); }

  static std::ptrdiff_t CountDescriptors() {
    return std::distance(directory_iterator("/proc/self/fd"), directory_iterator());
  }

  const std::ptrdiff_t m_descriptors = CountDescriptors();
  const test::TemporaryFolder m_folder;
};

std::string Content(const std::string& ascii, XmlEncoding encoding) {
  if (encoding == XmlEncoding_UTF8) return ascii;
  std::string result = "\xFF\xFE";
  for (const char c : ascii) (result += c) += '\0';
  return result;
}

WString Failure(const std::filesystem::path& path, WStringView number) {
  return u"Failed to write data to the file [" + path.u16string() + u"] error [0x" + WString(number) + u"]";
}

TEST_F(FileStreams, WriteTextPieceByPiece) {
  const auto path = m_folder / "text";
  for (const XmlEncoding encoding : kEncodings) {
    test::WriteFile(path, "something longer that stood here before");
    CFileTextStream stream(path, encoding);
    stream.Open();
    EXPECT_EQ(ReadFile(path), Content("", encoding));
    stream.Write(u"one ");
    stream.Flush();
    stream.Flush();
    stream.Write(u"two");
    EXPECT_EQ(ReadFile(path), Content("one ", encoding));
    stream.Close();
    stream.Close();
    EXPECT_EQ(ReadFile(path), Content("one two", encoding));
    stream.Open();
    stream.Close();
    EXPECT_EQ(ReadFile(path), Content("", encoding));
  }
}

TEST_F(FileStreams, WriteFinishedBytes) {
  const unsigned char bytes[] = {'<', 0};
  for (const XmlEncoding encoding :
       {XmlEncoding_None, XmlEncoding_UTF8, XmlEncoding_UTF16, XmlEncoding_UTF16NoHeader}) {
    const std::string mark = encoding >= XmlEncoding_UTF16 ? "\xFF\xFE" : "";
    CFileBinaryStream stream((m_folder / "b\xC3\xBC").u16string().c_str(), encoding, CBinaryData(bytes, 2));
    stream.Write(bytes[0]);
    stream.Write(bytes, 2);
    stream.Write(CBinaryData(bytes, 1));
    stream.WriteToFile();
    EXPECT_EQ(ReadFile(m_folder / "b\xC3\xBC"), mark + std::string("<\0<<\0<", 6));
    CFileBinaryStream(m_folder / "b\xC3\xBC", encoding).WriteToFile();
    EXPECT_EQ(ReadFile(m_folder / "b\xC3\xBC"), mark);
  }
}

TEST_F(FileStreams, NameTheFileThatCannotBeWritten) {
  const struct {
    std::filesystem::path path;
    WStringView number;
  } cases[] = {{m_folder / "", u"00000015"}, {m_folder / "missing/f\xC3\xBC", u"00000002"}, {"/dev/full", u"0000001C"}};
  for (const auto& [path, number] : cases) {
    CFileTextStream text(path, XmlEncoding_UTF16);
    EXPECT_EQ(MessageOf([&] { text.Open(); }), Failure(path, number));
    const unsigned char byte = 'x';
    CFileBinaryStream bytes(path, XmlEncoding_UTF8, CBinaryData(&byte, 1));
    EXPECT_EQ(MessageOf([&] { bytes.WriteToFile(); }), Failure(path, number));
  }
  EXPECT_THROW(CFileTextStream(u"a\xD800", XmlEncoding_UTF8), COvInvalidValueException);
}

TEST_F(FileStreams, CloseTheFileWhenAPieceFails) {
  for (const bool inClose : {false, true}) {
    CFileTextStream stream("/dev/full", XmlEncoding_UTF8);
    stream.Open();
    stream.Write(u"text");
    EXPECT_EQ(MessageOf([&] { inClose ? stream.Close() : stream.Flush(); }),
              u"Failed to write data to the file. Error [0x0000001C]");
    EXPECT_EQ(CountDescriptors(), m_descriptors);
    stream.Write(u"more");
    EXPECT_EQ(MessageOf([&] { stream.Close(); }), u"Failed to write data to the file. Error [0x00000009]");
  }
}

TEST_F(FileStreams, LeaveThePartThatWasWritten) {
  const auto path = m_folder / "part";
  for (const XmlEncoding encoding : kEncodings) {
    for (const WChar half : {WChar{0xDC00}, WChar{0xD800}}) {
      CFileTextStream stream(path, encoding);
      stream.Open();
      stream.Write(u"one ");
      stream.Flush();
      stream.Write(u"two ");
      stream.Write(half);
      EXPECT_TRUE(MessageOf<COvInvalidValueException>([&] { stream.Close(); }).ends_with(u"at position 8."));
      EXPECT_EQ(CountDescriptors(), m_descriptors);
      EXPECT_EQ(ReadFile(path), Content(half == 0xDC00 ? "one " : "one two ", encoding));
    }
    {
      CFileTextStream abandoned(path, encoding);
      abandoned.Open();
      abandoned.Write(u"lost");
    }
    EXPECT_EQ(ReadFile(path), Content("", encoding)) << "the destructor writes nothing";
  }
  CFileTextStream unknown(path, XmlEncoding_None);
  unknown.Open();
  unknown.Write(u"text");
  EXPECT_EQ(MessageOf([&] { unknown.Flush(); }), u"Unknown Encoding, select UTF-8 (contact our support team)");
  EXPECT_EQ(CountDescriptors(), m_descriptors);
}

}  // namespace
}  // namespace OvXmlLib16
