#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "ovxmllib/binding/FormatString.h"
#include "tests/support/Documents.h"
#include "tests/support/FileTest.h"

namespace OvXmlLib16 {
namespace {

using std::filesystem::path;
using test::Outcome;
using test::WriteFile;

class ChunkedRead : public test::FileTest {
 protected:
  static WString Read(bool inChunks, const path& file, const CSerializationContext& context = {}) {
    AsyncFromXmlFile(inChunks);
    return Outcome([&](CXmlDocument& document) { document.Load(file); }, context);
  }
  void ExpectBothWays(const path& file, WStringView outcome) {
    for (const bool inChunks : {false, true}) {
      EXPECT_TRUE(Read(inChunks, file) == outcome) << file << ToUtf8(Read(inChunks, file).substr(0, 200));
      EXPECT_TRUE(AllFilesAreClosed());
    }
  }
};

TEST_F(ChunkedRead, TakesFilesOfAnySize) {
  const path file = m_folder / "f";
  WriteFile(file, "");
  ExpectBothWays(file, u"no element found at line 1 @1:1");
  WriteFile(file, "<");
  ExpectBothWays(file, u"unclosed token at line 1 @1:1");
  for (const std::size_t size : {131071u, 131072u, 131073u, 262144u}) {
    const std::size_t euros = (size - 7) / 3, rest = (size - 7) % 3;
    WriteFile(file, "<a>" + std::string(rest, 'x') + test::Repeated("\xE2\x82\xAC", euros) + "</a>");
    ASSERT_EQ(file_size(file), size);
    ExpectBothWays(file, u"a'" + WString(rest, u'x') + WString(euros, u'\u20AC') + u"'");
  }
}

TEST_F(ChunkedRead, RefusesALongTagBeforeItsEnd) {
  std::string document = "<a>\n<b";
  for (int i = 0; i < 20'000; ++i) document += " c" + std::to_string(i) + "=''";
  WriteFile(m_folder / "f", document);
  ExpectBothWays(m_folder / "f",
                 u"An element has more than 10000 attributes. "
                 u"CSerializationContext::SetMaxAttributesPerElement sets this limit. @2:1");
}

TEST_F(ChunkedRead, HasABorderAtEveryPosition) {
  CSerializationContext keepingSections;
  keepingSections.SetStripCDATA(false);
  const std::string sample = ToUtf8(test::kSample);
  const path file = m_folder / "f";
  for (const std::string& bytes :
       {sample, test::Utf16(test::kSample), test::Utf16(test::kSample, /*bigEndian=*/true), "\xEF\xBB\xBF" + sample,
        sample.substr(0, sample.find("\xBC</s:i>")), sample + "<b/>", std::string("\xEF\xBB\xBF<a></b>"),
        sample.substr(0, sample.size() - 9) + "\xFF"}) {
    WriteFile(file, bytes);
    const WString whole = Read(/*inChunks=*/false, file, keepingSections);
    for (std::size_t chunk = 1; chunk <= 40; ++chunk) {
      SetReadChunkForTest(chunk);
      EXPECT_EQ(Read(/*inChunks=*/true, file, keepingSections), whole) << chunk;
    }
  }
  WriteFile(file, sample);
  ExpectBothWays(file, test::kSampleTree);
}

TEST_F(ChunkedRead, TakesNoCompressedFilesAsSpecified) {
  WriteFile(m_folder / "f", test::Packed("<a>" + std::string(100, 'x') + "</a>", CompressionType_GZip));
  EXPECT_EQ(Read(/*inChunks=*/false, m_folder / "f"), u"a'" + WString(100, u'x') + u"'");
  EXPECT_EQ(Read(/*inChunks=*/true, m_folder / "f"), u"not well-formed (invalid token) at line 1 @1:1");
}

TEST_F(ChunkedRead, NamesTheFileThatCannotBeRead) {
  const path closed = m_folder / "closed";
  WriteFile(closed, "<a/>");
  ASSERT_EQ(chmod(closed.c_str(), 0), 0);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may read everything
  ExpectBothWays(closed, FormatString(u"Failed to open the file [%s] Error [0x0000000d] @0:0", closed.u16string()));
  ASSERT_EQ(seteuid(user), 0);
}

int g_descriptor;

// Puts a folder, which cannot be read, in the place of the open file while it is being read.
bool BreakFile(CXmlElement*) {
  const int folder = open("/", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(dup2(folder, g_descriptor), g_descriptor);
  close(folder);
  return false;
}

TEST_F(ChunkedRead, ReportsAFailureOnTheWayAndAnExceptionOfTheCallback) {
  WriteFile(m_folder / "f", "<a><b/>" + std::string(100, ' ') + "</a>");
  AsyncFromXmlFile(true);
  SetReadChunkForTest(10);
  g_descriptor = dup(0);  // the one that the file will get
  close(g_descriptor);
  const auto load = [&](CXmlDocument& document) { document.Load(m_folder / "f"); };
  EXPECT_EQ(Outcome(load, {}, &BreakFile), u"Failed to read the contents of the file. Error [0x00000015] @0:0");
  EXPECT_TRUE(AllFilesAreClosed());
  EXPECT_THROW(Outcome(load, {}, [](CXmlElement*) -> bool { throw 1; }), int);
}

TEST_F(ChunkedRead, TakesPipesAndFilesWithoutASize) {
  const std::string document = "<a>" + std::string(300'000, 'x') + "</a>";
  const path pipe = m_folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  CSerializationContext limited;
  limited.SetMaxInputBytes(document.size() - 1);
  for (const bool inChunks : {false, true}) {
    for (const auto& [context, outcome] :
         {std::pair(CSerializationContext(), u"a'" + WString(300'000, u'x') + u"'"),
          std::pair(limited, WString(u"The document is longer than 300006 bytes. "
                                     u"CSerializationContext::SetMaxInputBytes sets this limit. @0:0"))}) {
      std::thread writer([&] { WriteFile(pipe, document); });
      EXPECT_TRUE(Read(inChunks, pipe, context) == outcome);
      writer.join();
    }
  }
  ExpectBothWays("/proc/self/status", u"syntax error at line 1 @1:1");
}

}  // namespace
}  // namespace OvXmlLib16
