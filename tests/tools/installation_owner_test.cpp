// Whose an installation is, and root acting as that user.
#include "installation_owner.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "import/schema/sqlite_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

// A directory of nobody's with a folder of root's in it.
class InstallationOwner : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can act as somebody else";
    std::filesystem::create_directories(Path("Debug"));
    Give(home_.path());
  }

  std::string Path(const std::string& name) const { return home_.path() + "/" + name; }

  void Give(const std::string& path) const { ASSERT_EQ(lchown(path.c_str(), kNobody, kNobody), 0); }

  static bool CanWrite(const std::string& path) { return std::ofstream(path).is_open(); }

  static uid_t UserOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_uid;
  }

  const std::string& directory() const { return home_.path(); }

 private:
  TemporaryFolder home_;
};

TEST_F(InstallationOwner, IsThatOfTheDirectoryWhoeverHasPutFilesIntoIt) {
  EXPECT_EQ(OwnerOf(directory()).user, kNobody);
  EXPECT_EQ(OwnerOf(directory()).group, kNobody);
}

TEST_F(InstallationOwner, OfADirectoryOfRootsIsThatOfWhatTheServiceWrites) {
  ASSERT_EQ(chown(directory().c_str(), 0, 0), 0);
  EXPECT_EQ(OwnerOf(directory()).user, 0U);
  Give(Path("Debug"));
  EXPECT_EQ(OwnerOf(directory()).user, kNobody);
}

TEST_F(InstallationOwner, OfNoDirectoryIsAFailureThatNamesIt) {
  EXPECT_THROW(OwnerOf(Path("none")), FileFailure);
  EXPECT_NO_THROW(BecomeOwner(Path("none")));
  ASSERT_TRUE(CanWrite(Path("file")));
  EXPECT_NO_THROW(BecomeOwner(Path("file")));
}

TEST_F(InstallationOwner, HasHisOwnRightsAloneForTheScope) {
  const gid_t caller = getegid();
  {
    const OwnerRights rights(directory());
    EXPECT_TRUE(CanWrite(Path("his")));
    EXPECT_FALSE(CanWrite(Path("Debug/roots")));
    EXPECT_EQ(static_cast<std::size_t>(getgroups(0, nullptr)), GroupsOf(kNobody).size());
  }
  EXPECT_EQ(UserOf(Path("his")), kNobody);
  EXPECT_TRUE(CanWrite(Path("Debug/roots")));
  EXPECT_EQ(getegid(), caller);
}

TEST_F(InstallationOwner, StepsBackForWhatTheCallerNames) {
  const OwnerRights rights(directory());
  {
    const CallersRights caller(rights);
    EXPECT_TRUE(CanWrite(Path("Debug/roots")));
  }
  EXPECT_FALSE(CanWrite(Path("Debug/more")));
}

TEST_F(InstallationOwner, GivesTheCallersGroupsBack) {
  const gid_t groups[] = {4, 20};
  ASSERT_EQ(setgroups(2, groups), 0);
  { const OwnerRights rights(directory()); }
  gid_t found[3] = {};
  EXPECT_EQ(getgroups(3, found), 2);
  EXPECT_EQ(found[1], 20U);
  ASSERT_EQ(setgroups(0, nullptr), 0);
}

// A sort of many rows goes into a file, for which root's own folder would be taken.
TEST_F(InstallationOwner, SortsInAFolderThatHeMayUse) {
  const TemporaryFolder roots;
  const Environment environment({"SQLITE_TMPDIR", "TMPDIR"});
  environment.Set("TMPDIR", roots.path());
  environment.Set("SQLITE_TMPDIR", roots.path());
  std::filesystem::permissions(roots.path(), std::filesystem::perms::owner_all);
  const OwnerRights rights(directory());
  const SqliteFile file = SqliteFile::InMemory();
  file.RunScript("PRAGMA temp_store = FILE; PRAGMA cache_size = 10");
  EXPECT_NO_THROW(file.Count(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000)"
      " SELECT COUNT(*) FROM (SELECT i FROM n ORDER BY hex(randomblob(50)) LIMIT -1 OFFSET 1)"));
}

TEST_F(InstallationOwner, WhoIsRootChangesNothing) {
  ASSERT_EQ(chown(directory().c_str(), 0, 0), 0);
  const OwnerRights rights(directory());
  EXPECT_EQ(geteuid(), 0U);
}

// /.../above/home is an installation, with a folder "in" and links there and beside it.
class LeadsInsideTest : public testing::Test {
 protected:
  LeadsInsideTest() {
    fs::create_directories(home_ + "/in");
    fs::create_directories(above_ + "/beside");
    fs::create_symlink("/etc", home_ + "/out");
    fs::create_symlink(home_, above_ + "/link");
    fs::create_symlink("../home/in", above_ + "/beside/back");
    fs::create_symlink("link/out/passwd", above_ + "/through");
    fs::create_symlink("loop", above_ + "/loop");
  }

  TemporaryFolder folder_;
  std::string above_ = fs::canonical(folder_.path()).string() + "/above";
  std::string home_ = above_ + "/home";
};

TEST_F(LeadsInsideTest, AnyPathThatPassesAPlaceBelowTheDirectory) {
  for (const char* path :
       {"/home/x.csv", "/home/in/missing/x.csv", "/home/./in", "/link/x.csv", "/beside/back/x.csv",
        "/beside/../home/in", "/home/out", "/home/out/passwd", "/link/out/passwd", "/through",
        "/home/in/../../x", "/home/../home/x"}) {
    EXPECT_TRUE(LeadsInside(above_ + path, home_)) << path;
    EXPECT_TRUE(LeadsInside(above_ + path, above_ + "/link/")) << path;
  }
}

TEST_F(LeadsInsideTest, NoPathThatOnlyComesNearIt) {
  for (const char* path : {"/home", "/home/", "/home/../x", "/home-beside/x", "/beside/x", "/link",
                           "/missing/home/x", "/loop/x"}) {
    EXPECT_FALSE(LeadsInside(above_ + path, home_)) << path;
  }
  EXPECT_FALSE(LeadsInside(above_ + "/missing/x", above_ + "/missing"));
}

TEST_F(LeadsInsideTest, ARelativePathByTheWorkingDirectory) {
  const fs::path before = fs::current_path();
  fs::current_path(home_);
  EXPECT_TRUE(LeadsInside("x.csv", "."));
  EXPECT_TRUE(LeadsInside("out/passwd", home_));
  EXPECT_FALSE(LeadsInside("../x.csv", home_));
  fs::current_path(before);
}

}  // namespace
}  // namespace quillon
