#include "ovxmllib/platform/File.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

namespace OvXmlLib16::platform {
namespace {

using test::MessageOf;
using test::TemporaryFolder;

int Write(File& file, std::string_view text, std::uint64_t offset) {
  return file.WriteAt(test::Bytes(text), text.size(), offset);
}

std::string Read(File& file, std::size_t length, std::uint64_t offset) {
  std::string text(length, '?');
  const ReadResult result = file.ReadAt(reinterpret_cast<unsigned char*>(text.data()), length, offset);
  EXPECT_EQ(result.error, 0);
  return text.substr(0, result.bytes);
}

std::string DescriptorPath(int descriptor) { return "/dev/fd/" + std::to_string(descriptor); }

TEST(File, ReadsAndWritesByPositionAndMovesWithItsFile) {
  const TemporaryFolder folder;
  test::WriteFile(folder / "f", "an older and longer content");
  File file;
  ASSERT_EQ(file.Create(folder / "f"), 0);
  EXPECT_EQ(Write(file, "world", 6), 0);
  EXPECT_EQ(Write(file, "hello ", 0), 0);
  EXPECT_EQ(file.Close(), 0);
  EXPECT_EQ(Write(file, "x", 0), EBADF);
  {
    File from;
    ASSERT_EQ(from.OpenForReading(folder / "f"), 0);
    file = std::move(from);
    EXPECT_FALSE(from.IsOpen());
  }
  file = File(std::move(file));
  std::uint64_t size = 0;
  EXPECT_EQ(file.GetSize(size), 0);
  EXPECT_EQ(size, 11u);
  EXPECT_EQ(Read(file, 100, 6), "world");
  EXPECT_EQ(Read(file, 5, 0), "hello");
  EXPECT_EQ(file.Create(folder / std::string("cut\0short", 9)), EINVAL);
  EXPECT_FALSE(std::filesystem::exists(folder / "cut"));
}

// In packet mode each read of a pipe ends with a packet, so that one call to ReadAt needs two.
TEST(File, ReadsAndWritesPipesInOrder) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_DIRECT), 0);
  File reader, writer;
  ASSERT_EQ(reader.OpenForReading(DescriptorPath(ends[0])), 0);
  EXPECT_FALSE(reader.IsRegular());
  ASSERT_EQ(write(ends[1], "abc", 3), 3);
  ASSERT_EQ(write(ends[1], "defgh", 5), 5);
  EXPECT_EQ(Read(reader, 7, 0), "abcdefg");

  ASSERT_EQ(close(ends[0]), 0);
  ASSERT_EQ(writer.Create(DescriptorPath(ends[1])), 0);
  ASSERT_EQ(close(ends[1]), 0);
  EXPECT_EQ(Write(writer, "ijk", 8), 0);
  EXPECT_EQ(Write(writer, "lm", 11), 0);
  EXPECT_EQ(writer.Close(), 0);
  EXPECT_EQ(Read(reader, 100, 7), "ijklm");

  const TemporaryFolder folder;
  test::WriteFile(folder / "f", "by position again");
  ASSERT_EQ(reader.OpenForReading(folder / "f"), 0);
  EXPECT_EQ(Read(reader, 8, 3), "position");
}

int g_signalledPipe;
volatile sig_atomic_t g_signals;

void WriteFromThirdSignalOn(int) {
  g_signals = g_signals + 1;
  if (g_signals >= 3 && write(g_signalledPipe, "late", 4) != 4) g_signals = -1000;
}

TEST(File, ReadsOnAfterSignals) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  File reader;
  ASSERT_EQ(reader.OpenForReading(DescriptorPath(ends[0])), 0);
  g_signalledPipe = ends[1];
  g_signals = 0;
  struct sigaction action {};
  struct sigaction before;
  action.sa_handler = &WriteFromThirdSignalOn;
  ASSERT_EQ(sigaction(SIGALRM, &action, &before), 0);
  const itimerval often{{0, 2000}, {0, 2000}}, never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_EQ(Read(reader, 4, 0), "late");
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_GE(g_signals, 3);
  close(ends[0]);
  close(ends[1]);
}

TEST(File, ConvertsPaths) {
  const std::string name = "d\xC3\xA4/\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(PathFromWide(u"d\u00E4/\u20AC\U0001F600").native(), name);
  EXPECT_EQ(WideFromPath(name), u"d\u00E4/\u20AC\U0001F600");
  EXPECT_EQ(WideFromPath("a\xFF"), u"a\uFFFD");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { PathFromWide(WStringView(u"a\0b", 3)); }),
            u"The path holds the character U+0000 at position 1.");
  EXPECT_THROW(PathFromWide(WStringView(u"\xD800")), COvInvalidValueException);
}

}  // namespace
}  // namespace OvXmlLib16::platform
