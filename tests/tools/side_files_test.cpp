// With what beside it a database may be opened.
#include "quillondb/side_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "import/schema/databases.h"
#include "platform/failure.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

class SideFiles : public testing::Test {
 protected:
  SideFiles() { std::ofstream{database_}; }

  // What is told of the file, or "".
  std::string Refusal() const {
    try {
      RequireOrdinarySideFiles(database_);
      return "";
    } catch (const DatabaseFailure& failure) {
      return failure.what();
    }
  }

  TemporaryFolder folder_;
  std::string database_ = folder_.path() + "/Quillon.mdb";
};

TEST_F(SideFiles, MayBeThoseOfTheWriteAheadLogOrMissing) {
  EXPECT_EQ(Refusal(), "");
  std::ofstream{database_ + "-wal"};
  std::ofstream{database_ + "-shm"};
  EXPECT_EQ(Refusal(), "");
  fs::remove(database_);
  EXPECT_EQ(Refusal(), "");
}

TEST_F(SideFiles, AreNoPipesLinksOrFolders) {
  std::ofstream{folder_.path() + "/elsewhere"};
  for (const std::string& path : WithSideFiles(database_)) {
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_TRUE(Refusal().starts_with(path + " is no ordinary file")) << Refusal();
    fs::remove(path);
    fs::create_symlink(folder_.path() + "/elsewhere", path);
    EXPECT_TRUE(Refusal().starts_with(path + " is no ordinary file")) << Refusal();
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(Refusal().starts_with(path + " is no ordinary file")) << Refusal();
    fs::remove(path);
  }
}

TEST_F(SideFiles, AreNoJournalThatWouldBePlayedBack) {
  std::ofstream{database_ + "-journal"};
  EXPECT_TRUE(Refusal().starts_with(database_ + "-journal is no file of the service's"))
      << Refusal();
}

}  // namespace
}  // namespace quillon
