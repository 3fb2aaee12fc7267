// Where CSV comes from.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

#include "platform/failure.h"
#include "quillondb/csv/input.h"
#include "support/temporary_folder.h"
#include "tools/standard_descriptor.h"

namespace quillon {
namespace {

// All that comes, or why it cannot be read.
std::string ReadAll(const std::string& path) {
  try {
    CsvInput input(path);
    input.stream().exceptions(std::ios_base::badbit);
    return {std::istreambuf_iterator<char>(input.stream()), {}};
  } catch (const FileFailure& failure) {
    return failure.what();
  }
}

TEST(CsvInput, AFileIsReadToItsEnd) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/ports.csv";
  for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 300000u}) {
    const std::string text(size, 'x');
    std::ofstream(path) << text;
    EXPECT_TRUE(ReadAll(path) == text) << size;
  }
}

TEST(CsvInput, WhatCannotBeOpenedIsNamed) {
  EXPECT_EQ(ReadAll("/missing/ports.csv"),
            "cannot open /missing/ports.csv: No such file or directory");
}

TEST(CsvInput, WhereAFileIsWantedNobodyWaitsForAPipe) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/ports.csv";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  try {
    const CsvInput input(path, CsvSource::kFile);
    ADD_FAILURE() << "no failure";
  } catch (const FileFailure& failure) {
    EXPECT_EQ(failure.what(),
              path + " is no ordinary file; name another one, or - for standard input");
  }
}

TEST(CsvInput, AHyphenIsStandardInput) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/ports.csv";
  std::ofstream(path) << "a,b\n";
  const StandardDescriptor input(STDIN_FILENO, open(path.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(ReadAll("-"), "a,b\n");
}

TEST(CsvInput, StandardInputThatCannotBeReadIsNotTakenForItsEnd) {
  const StandardDescriptor input(STDIN_FILENO, open("/", O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(ReadAll("-"), "cannot be read: Is a directory");
}

TEST(CsvInput, StandardInputThatIsClosedIsNoEmptyFile) {
  const StandardDescriptor input(STDIN_FILENO);
  EXPECT_EQ(ReadAll("-"), "cannot open standard input: Bad file descriptor");
}

TEST(CsvInput, MessagesTellTheNameOrThatItIsStandardInput) {
  EXPECT_EQ(CsvInput("-").name(), "standard input");
  EXPECT_EQ(CsvInput("/dev/null").name(), "/dev/null");
}

}  // namespace
}  // namespace quillon
