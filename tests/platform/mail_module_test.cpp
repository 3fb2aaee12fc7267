// Loading the part of the program that sends mails, where it is not what it should be. That it
// sends them is watched in the real program.
#include "platform/mail_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
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

// As one of another version would be, or another file under the module's name.
TEST_F(MailModuleTest, LibraryWithoutTheProcedureIsAFailure) {
  Dl_info library{};
  ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "sqlite3_libversion"), &library), 0);
  std::filesystem::create_symlink(library.dli_fname, folder.path() + "/quillonmail.so");
  const std::string failure = Failure();
  EXPECT_TRUE(failure.starts_with("cannot load ")) << failure;
  EXPECT_NE(failure.find("QuillonNewSmtp"), std::string::npos) << failure;
}

}  // namespace
}  // namespace quillon
