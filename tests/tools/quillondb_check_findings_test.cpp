// The words of findings.
#include <gtest/gtest.h>

#include "quillondb/check/findings.h"

namespace quillon {
namespace {

using Findings = std::vector<std::string>;

TEST(CheckFindings, TellFiveOfARuleAndHowManyThereAreBeside) {
  Findings findings;
  AppendFirst("x: ", Findings(5, "a"), findings);
  EXPECT_EQ(findings, Findings(5, "a"));
  AppendFirst("x: ", Findings(7, "b"), findings);
  ASSERT_EQ(findings.size(), 11U);
  EXPECT_EQ(findings.back(), "x: and 2 more of this kind");
}

TEST(CheckFindings, SayWhatToDoAboutAFailureOfTheEngine) {
  const std::pair<const char*, const char*> kCases[] = {
      {"H: database is locked", "end that one, and check again"},
      {"H: unable to open database file", "see whose they are"},
      {"H: attempt to write a readonly database", "see whose they are"},
      {"H: database or disk is full", "make room"},
      {"H: disk I/O error", "dmesg"},
      {"H: database disk image is malformed", "restore a backup"},
      {"H: file is not a database", "restore a backup"}};
  for (const auto& [failure, remedy] : kCases) {
    const std::string finding = FailureFinding(failure);
    EXPECT_TRUE(finding.starts_with(std::string(failure) + "; ")) << finding;
    EXPECT_NE(finding.find(remedy), std::string::npos) << finding;
  }
}

TEST(CheckFindings, QuoteForAShellOnlyWhatNeedsIt) {
  EXPECT_EQ(ShellWord("/opt/quillon-web"), "/opt/quillon-web");
  EXPECT_EQ(ShellWord("/opt/my site"), "\"/opt/my site\"");
  EXPECT_EQ(ShellWord("/a$b`\"\\"), "\"/a\\$b\\`\\\"\\\\\"");
}

}  // namespace
}  // namespace quillon
