// Other programs, run to their end.
#include "platform/child_process.h"

#include <gtest/gtest.h>

#include <csignal>

#include "platform/failure.h"
#include "support/installation.h"

namespace quillon {
namespace {

class ChildProcessTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return installation.path() + "/" + name; }
  // What is told of a run of these words; "" where it ended well.
  static std::string FailureOf(const std::vector<std::string>& words) {
    try {
      RunProgram(words);
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "";
  }

  Installation installation;
};

TEST_F(ChildProcessTest, ProgramHasEndedWhenTheCallReturns) {
  RunProgram({"sh", "-c", "sleep 0.05; echo done >\"$0\"", Path("mark")});
  EXPECT_EQ(installation.Read("mark"), "done\n");
}

TEST_F(ChildProcessTest, ArgumentsArriveAsTheyAre) {
  const std::vector<std::string> words = {"a b", "", "$HOME", "*", "'\"\\", "line\nend"};
  std::vector<std::string> call = {"sh", "-c", "printf '<%s>' \"$@\" >\"$0\"", Path("mark")};
  call.insert(call.end(), words.begin(), words.end());
  RunProgram(call);
  std::string expected;
  for (const std::string& word : words) expected += "<" + word + ">";
  EXPECT_EQ(installation.Read("mark"), expected);
}

TEST_F(ChildProcessTest, StandardOutputGoesNowhere) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(FailureOf({"echo", "loud"}), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(ChildProcessTest, ProgramThatIsNotThereIsAFailureWithItsName) {
  EXPECT_EQ(FailureOf({"no-such-program", "word"}),
            "cannot run no-such-program word: No such file or directory");
}

TEST_F(ChildProcessTest, StatusOfAProgramThatFailedIsTold) {
  EXPECT_EQ(FailureOf({"sh", "-c", "exit 3"}), "sh -c exit 3 ended with the status 3");
}

TEST_F(ChildProcessTest, ProgramThatWasKilledIsAFailure) {
  EXPECT_EQ(FailureOf({"sh", "-c", "kill -9 $$"}), "sh -c kill -9 $$ was killed");
}

// The system keeps no status for a process that ignores the ends of its children.
TEST_F(ChildProcessTest, ProgramWhoseEndIsNotToldIsAFailure) {
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(FailureOf({"true"}), "cannot wait for true: No child processes");
  std::signal(SIGCHLD, before);
}

}  // namespace
}  // namespace quillon
