// An installation of which nothing is missing, on a port that is free, and what the check says of
// it.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/listener.h"
#include "quillondb/check/check.h"
#include "tools/quillondb_fixture.h"

namespace quillon {

class CheckedInstallation : public Quillondb {
 protected:
  using Findings = std::vector<std::string>;

  void SetUp() override { CreateForCheck(); }

  // Another program begins to listen on the site's port.
  void TakePort() {
    taken_.SetLocalHost("127.0.0.1");
    taken_.SetLocalPort(port_.number());
    taken_.SetListening(true);
  }

  Findings Check() const { return Check(home_); }
  static Findings Check(const fs::path& home) {
    Findings findings;
    const bool isWhole = CheckInstallation(
        home.string(), [&](const std::string& finding) { findings.push_back(finding); });
    EXPECT_EQ(isWhole, findings.empty());
    return findings;
  }

  // This is found, and it alone.
  void ExpectOnly(const std::string& finding) const { EXPECT_EQ(Check(), Findings{finding}); }
  void ExpectNothing() const { EXPECT_EQ(Check(), Findings{}); }

  // One of the findings holds the words.
  void ExpectAmong(const std::string& words) const {
    const Findings findings = Check();
    EXPECT_TRUE(std::ranges::any_of(
        findings,
        [&](const std::string& finding) { return finding.find(words) != std::string::npos; }))
        << words << " is not in " << testing::PrintToString(findings);
  }

  SystemClock clock_;
  EventLoop loop_{clock_};
  Listener taken_{loop_};
};

}  // namespace quillon
