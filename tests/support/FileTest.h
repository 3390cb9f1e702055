// The fixture of tests that read and write files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "ovxmllib/document/ReadChunk.h"
#include "ovxmllib/document/XmlDocument.h"
#include "tests/support/TemporaryFolder.h"

namespace OvXmlLib16::test {

/// Has a folder, and ends with the library's switches off and as many open files as it began with.
class FileTest : public testing::Test {
 protected:
  void TearDown() override {
    SetReadChunkForTest(0);
    AsyncFromXmlFile(false);
    AsyncToXmlFile(false);
    EXPECT_TRUE(AllFilesAreClosed());
  }
  bool AllFilesAreClosed() const { return CountDescriptors() == m_descriptors; }

  const TemporaryFolder m_folder;

 private:
  static std::ptrdiff_t CountDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  }

  const std::ptrdiff_t m_descriptors = CountDescriptors();
};

}  // namespace OvXmlLib16::test
