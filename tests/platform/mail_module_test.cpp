// Loading the part of the program that sends mails, where it is not what it should be. That it
// sends them is watched in the real program.
#include "platform/mail_module.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/failure.h"
#include "support/temporary_folder.h"
#include "support/test_clock.h"

namespace quillon {
namespace {

class MailModuleTest : public testing::Test {
 protected:
  std::string Failure() {
    try {
      NewSmtp(folder.path(), loop);
      return "";
    } catch (const FileFailure& failure) {
      return failure.what();
    }
  }

  TemporaryFolder folder;
  TestClock clock;
  EventLoop loop{clock};
};

TEST_F(MailModuleTest, MissingModuleIsAFailureWithItsPath) {
  const std::string failure = Failure();
  EXPECT_EQ(failure.rfind("cannot load " + folder.path() + "/quillonmail.so: ", 0), 0u) << failure;
}

TEST_F(MailModuleTest, FileThatIsNoModuleIsAFailure) {
  std::ofstream(folder.path() + "/quillonmail.so") << "no module";
  EXPECT_EQ(Failure().rfind("cannot load " + folder.path() + "/quillonmail.so: ", 0), 0u);
}

}  // namespace
}  // namespace quillon
