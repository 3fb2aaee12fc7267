// A database file as the tools open it.
#include "import/schema/sqlite_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/failure.h"
#include "support/sql_rows.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

// What a step tells that fails; "" of one that does not.
template <typename Step>
std::string FailureOf(Step&& step) {
  try {
    step();
  } catch (const DatabaseFailure& failure) {
    return failure.what();
  }
  return "";
}

class SqliteFileTest : public testing::Test {
 protected:
  SqliteFileTest() {
    std::ofstream{path};
    SqlRows(path, "CREATE TABLE Samples (Id INTEGER)");
  }

  TemporaryFolder folder;
  const std::string path = folder.path() + "/Samples.mdb";
};

TEST_F(SqliteFileTest, FileThatIsNotThereIsAFailureAndIsNotMade) {
  const std::string missing = folder.path() + "/Missing.mdb";
  EXPECT_EQ(FailureOf([&] { SqliteFile::Open(missing); }),
            "Missing.mdb: unable to open database file");
  EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(SqliteFileTest, CountOfASelectWithoutARowIsZero) {
  const SqliteFile file = SqliteFile::Open(path);
  EXPECT_EQ(file.Count("SELECT Id FROM Samples"), 0);
  file.RunScript("INSERT INTO Samples VALUES (7); INSERT INTO Samples VALUES (8);");
  EXPECT_EQ(file.Count("SELECT Id FROM Samples"), 7);
  EXPECT_EQ(file.Count("SELECT Count(*) FROM Samples"), 2);
}

TEST_F(SqliteFileTest, TransactionIsUndoneUnlessItIsCommitted) {
  const SqliteFile file = SqliteFile::Open(path);
  {
    const SqliteTransaction transaction(file);
    file.RunScript("INSERT INTO Samples VALUES (7)");
  }
  EXPECT_EQ(file.Count("SELECT Count(*) FROM Samples"), 0);
  {
    SqliteTransaction transaction(file);
    file.RunScript("INSERT INTO Samples VALUES (8)");
    transaction.Commit();
  }
  EXPECT_EQ(SqlRows(path, "SELECT Id FROM Samples"), std::vector<SqlRow>{{"8"}});
}

// The engine may have undone it already, on a full disk say.
TEST_F(SqliteFileTest, TransactionThatIsGoneIsLeftWithoutAFailure) {
  const SqliteFile file = SqliteFile::Open(path);
  EXPECT_NO_THROW({
    const SqliteTransaction transaction(file);
    file.RunScript("INSERT INTO Samples VALUES (7); ROLLBACK");
  });
  EXPECT_EQ(file.Count("SELECT Count(*) FROM Samples"), 0);
}

}  // namespace
}  // namespace quillon
