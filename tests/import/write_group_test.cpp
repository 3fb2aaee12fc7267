// Groups of written rows that end in another way than by their commit.
#include "import/write_group.h"

#include "import/history_fixture.h"
#include "import/history_table.h"
#include "platform/failure.h"
#include "support/file_size_limit.h"

namespace quillon {
namespace {

class WriteGroupTest : public HistoryTest {
 protected:
  // Adds rows of a thousand characters each.
  static void AddRows(Recordset& days, int count) {
    for (int row = 0; row < count; ++row) {
      days.AddNew();
      days.SetField("DevName", Value::Text(std::string(1000, 'x')));
      days.Update();
    }
  }
  // Writes into a group, and fails in the midst of it; what reaches the caller.
  std::string FailInAGroup(int rows, const std::function<void()>& beforeTheFailure) {
    try {
      HistoryTable history(house.imports, "Disk_Day01");
      WriteGroup writes(house.imports, history.connection);
      writes.Begin();
      AddRows(history.rows, rows);
      beforeTheFailure();
      throw ConversionFailure("a figure is none");
    } catch (const Failure& failure) {
      return failure.what();
    }
  }
  std::string RowsOfTheDay() const { return History("SELECT Count(*) FROM Disk_Day01")[0]; }
};

TEST_F(WriteGroupTest, RowsBeforeAFailureStay) {
  EXPECT_EQ(FailInAGroup(3, [] {}), "a figure is none");
  EXPECT_EQ(RowsOfTheDay(), "3");
  EXPECT_TRUE(OthersCanWrite());
}

TEST_F(WriteGroupTest, FailureIsTheFirstOneWhereTheDiskHasNoRoomForTheRowsEither) {
  std::optional<FileSizeLimit> limit;
  EXPECT_EQ(FailInAGroup(1000, [&] { limit.emplace(10000); }), "a figure is none");
  limit.reset();
  EXPECT_EQ(RowsOfTheDay(), "0");
  EXPECT_TRUE(OthersCanWrite());
  EXPECT_EQ(History("PRAGMA integrity_check"), Lines{"ok"});
}

}  // namespace
}  // namespace quillon
