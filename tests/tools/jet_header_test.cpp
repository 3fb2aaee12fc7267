// The first look at a file.
#include "quillondb/jet/jet_header.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/failure.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

using std::string_literals::operator""s;

constexpr int kJet3 = 0;
constexpr int kJet4 = 1;

std::string Head(const std::string& engine, int version) {
  return "\0\1\0\0"s + engine + "\0"s + static_cast<char>(version) + "\0\0\0"s;
}

class JetHeader : public testing::Test {
 protected:
  // A file of that head and size; what is behind the head does not count.
  std::string Make(std::string head, std::size_t size) const {
    head.resize(size, '\0');
    std::ofstream(path(), std::ios::binary) << head;
    return path();
  }

  std::string path() const { return folder_.path() + "/old.mdb"; }

  std::string FailureOf(const std::string& file) const {
    try {
      RequireJetFile(file);
    } catch (const FileFailure& failure) {
      return failure.what();
    }
    return "";
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(JetHeader, BothKindsOfTheOldVersionsPass) {
  EXPECT_EQ(FailureOf(Make(Head("Standard Jet DB", kJet4), 10 * 4096)), "");
  EXPECT_EQ(FailureOf(Make(Head("Standard Jet DB", kJet3), 5 * 2048)), "");
}

TEST_F(JetHeader, EverythingElseIsRefusedByNameWithTheReason) {
  struct Case {
    std::string head;
    std::size_t size;
    const char* reason;
  };
  const Case kCases[] = {
      {"", 0, "no Jet database"},
      {"SQLite format 3", 4096, "no Jet database"},
      {Head("Standard ACE DB", 2), 10 * 4096, ".accdb"},
      {Head("Standard ACE DB", 2), 30, ".accdb"},
      {Head("Standard Jet DB", 5), 10 * 4096, "newer version"},
      {Head("Standard Jet DB", kJet4), 10 * 4096 + 2048, "cut off"},
      {Head("Standard Jet DB", kJet4), 2 * 4096, "cut off"},
      {Head("Standard Jet DB", kJet4), 21, "cut off"},
      {Head("Standard Jet DB", kJet3), 10 * 2048 + 512, "cut off"},
  };
  for (const Case& each : kCases) {
    const std::string failure = FailureOf(Make(each.head, each.size));
    EXPECT_NE(failure.find(each.reason), std::string::npos) << each.reason << ": " << failure;
    EXPECT_EQ(failure.find(path()), 0u) << failure;
  }
}

TEST_F(JetHeader, AFileThatIsNotThereAndAFolderAreNoFiles) {
  EXPECT_NE(FailureOf(path()).find("is no file"), std::string::npos);
  EXPECT_NE(FailureOf(path().substr(0, path().rfind('/'))).find("is no file"), std::string::npos);
}

}  // namespace
}  // namespace quillon
