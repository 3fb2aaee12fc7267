// Whether somebody works with a database.
#include "quillondb/database_use.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/installation.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

class DatabaseUse : public testing::Test {
 protected:
  Installation home_;
  std::string database_ = home_.path() + "/Reports.mdb";
};

TEST_F(DatabaseUse, IsToldOfOneThatReadsOrWrites) {
  OtherWriter product = OtherWriter::Idle(database_);
  EXPECT_FALSE(IsDatabaseInUse(database_));
  ASSERT_TRUE(product.Run("SELECT COUNT(*) FROM MAC"));
  EXPECT_TRUE(IsDatabaseInUse(database_));
}

TEST_F(DatabaseUse, IsNoneOfAFileThatIsMissingOrAPipe) {
  home_.Remove("Reports.mdb");
  EXPECT_FALSE(IsDatabaseInUse(database_));
  ASSERT_EQ(mkfifo(database_.c_str(), 0600), 0);
  EXPECT_FALSE(IsDatabaseInUse(database_));
}

TEST_F(DatabaseUse, LeavesWhatLiesBesideTheDatabase) {
  home_.Write("Reports.mdb-journal", "to be played back");
  EXPECT_FALSE(IsDatabaseInUse(database_));
  EXPECT_EQ(home_.Read("Reports.mdb-journal"), "to be played back");
}

}  // namespace
}  // namespace quillon
