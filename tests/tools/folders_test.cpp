// Folders that are made where they are missing, and places that are taken.
#include "quillondb/folders.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/failure.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

class Folders : public testing::Test {
 protected:
  template <typename Step>
  static std::string FailureOf(Step&& step) {
    try {
      step();
      return "";
    } catch (const FileFailure& failure) {
      return failure.what();
    }
  }

  TemporaryFolder folder_;
  const fs::path place_ = fs::path(folder_.path()) / "above" / "home";
};

TEST_F(Folders, OfAnInstallationAreMadeWithThoseAboveThem) {
  MakeHome(place_ / "");
  MakeFolders(place_);
  EXPECT_TRUE(fs::is_directory(place_ / "WebReports/Cache"));
  EXPECT_TRUE(fs::is_directory(place_ / "Debug"));
  EXPECT_EQ(fs::status(place_).permissions() & fs::perms::others_all, fs::perms::none);
}

TEST_F(Folders, ThatAreThereKeepTheirModes) {
  fs::create_directories(place_);
  fs::permissions(place_, fs::perms::all);
  MakeHome(place_);
  MakeFolder(place_, 0700);
  EXPECT_EQ(fs::status(place_).permissions(), fs::perms::all);
}

TEST_F(Folders, AreNotMadeInThePlaceOfAFile) {
  MakeHome(place_);
  std::ofstream{place_ / "file"};
  for (const fs::path& path : {place_ / "file", place_ / "file/below"}) {
    EXPECT_EQ(FailureOf([&] { MakeFolder(path, 0700); }),
              path.string() + ": cannot be made: Not a directory");
    EXPECT_EQ(FailureOf([&] { MakeHome(path); }),
              path.string() + ": cannot be made: Not a directory");
  }
}

TEST_F(Folders, ALinkThatLeadsNowhereTakesAPlace) {
  MakeHome(place_);
  fs::create_symlink("nowhere", place_ / "link");
  EXPECT_EQ(
      FailureOf([&] { RefuseExisting(place_ / "link", "move it away first"); }),
      (place_ / "link").string() + " exists already and is not overwritten; move it away first");
  EXPECT_EQ(FailureOf([&] { RefuseExisting(place_ / "free", "move it away first"); }), "");
}

}  // namespace
}  // namespace quillon
