// Locks of other programs on the history: each step that writes it waits them out, fails at one
// that stays, and leaves no lock of its own behind a failure.
#include <ostream>

#include "import/disk_history.h"
#include "import/history_fixture.h"
#include "import/rotation.h"
#include "import/switch_history.h"

namespace quillon {
namespace {

using std::chrono::seconds;

// A step that writes the history, in a state in which it has one row to write.
struct Step {
  std::string name;
  std::string procedure;  // as its failures name it
  std::string history;    // statements that lead to the state
  std::string reports;
  void (*run)(ImportContext&);
  std::string isDone;   // a select that then gives 1, and 0 before
  std::string refusal;  // statements that make the row fail
};

std::ostream& operator<<(std::ostream& out, const Step& step) {
  return out << step.name;
}

std::string HasRow(const std::string& table) {
  return "SELECT EXISTS (SELECT * FROM " + table + ")";
}
std::string HasNoRow(const std::string& table) {
  return "SELECT NOT EXISTS (SELECT * FROM " + table + ")";
}

const Step kSteps[] = {
    {"ClearTable", "ClearTable_VLAN_Day01", InsertDayRows("VLAN_Day01", 1), "",
     [](ImportContext& context) { ClearTable_(context, "VLAN_Day01"); }, HasNoRow("VLAN_Day01"),
     Refusal("DELETE", "VLAN_Day01")},
    {"SwitchRotation", "SwitchStatsToHist", "", "", SwitchStatsToHist,
     "SELECT TrafficDate > '2024-05-01' FROM VLAN_HistCtrl LIMIT 1",
     Refusal("UPDATE", "VLAN_HistCtrl")},
    {"SwitchCopy", "SwitchStatsCopyToHist_VLAN_Day01", "", InsertPort(),
     [](ImportContext& context) { SwitchStatsCopyToHist_(context, "VLAN_Day01"); },
     HasRow("VLAN_Day01"), Refusal("INSERT", "VLAN_Day01")},
    {"SwitchSumsClearing", "ClearSwitchHistSum",
     "INSERT INTO VLAN_HistSum (TrafficDate) VALUES ('2000-01-01 00:00:00');", "",
     ClearSwitchHistSum, HasNoRow("VLAN_HistSum"), Refusal("DELETE", "VLAN_HistSum")},
    {"SwitchSums", "SwitchStatsSum", "", "",
     [](ImportContext& context) { SwitchStatsSum(context, true); }, HasRow("VLAN_HistSum"),
     Refusal("INSERT", "VLAN_HistSum")},
    {"DiskRotation", "DiskStatsToHist", "", "", DiskStatsToHist,
     "SELECT StorageDate > '2024-05-01' FROM Disk_HistCtrl LIMIT 1",
     Refusal("UPDATE", "Disk_HistCtrl")},
    {"DiskCopy", "DiskStatsCopyToHist_Disk_Day01", "", InsertStorage(),
     [](ImportContext& context) { DiskStatsCopyToHist_(context, "Disk_Day01"); },
     HasRow("Disk_Day01"), Refusal("INSERT", "Disk_Day01")},
    {"DiskSumsClearing", "ClearDiskHistSum",
     "INSERT INTO Disk_HistSum (StorageDate) VALUES ('2000-01-01 00:00:00');", "", ClearDiskHistSum,
     HasNoRow("Disk_HistSum"), Refusal("DELETE", "Disk_HistSum")},
    {"DiskSums", "DiskStatsSum",
     "UPDATE Disk_HistCtrl SET StorageDate = '2024-05-01 13:00:00' WHERE rowid = 1;", "",
     DiskStatsSum, HasRow("Disk_HistSum"), Refusal("INSERT", "Disk_HistSum")},
};

class HistoryWriterTest : public HistoryTest, public testing::WithParamInterface<Step> {
 protected:
  HistoryWriterTest() {
    HistorySql(GetParam().history);
    ReportsSql(GetParam().reports);
  }

  void Run() { GetParam().run(house.imports); }
  std::string IsDone() const { return History(GetParam().isDone)[0]; }
};

INSTANTIATE_TEST_SUITE_P(Steps, HistoryWriterTest, testing::ValuesIn(kSteps),
                         [](const auto& step) { return step.param.name; });

TEST_P(HistoryWriterTest, LockOfAnotherProgramIsWaitedOutWhileEventsRun) {
  ASSERT_EQ(IsDone(), "0");
  OtherWriter other = OtherProgram();
  ASSERT_TRUE(other.Begin());
  EndAfter(seconds(4), other);
  Run();
  EXPECT_FALSE(other.isWriting());
  EXPECT_EQ(IsDone(), "1");
  EXPECT_GE(SleptMs(), 4000);
  ExpectNoEvent();
}

TEST_P(HistoryWriterTest, LockThatStaysForFiveSecondsIsAFailure) {
  OtherWriter other = OtherProgram();
  ASSERT_TRUE(other.Begin());
  Run();
  ExpectFailure("modImport_" + GetParam().procedure, "History.mdb");
  EXPECT_EQ(IsDone(), "0");
  EXPECT_GE(SleptMs(), 5000 + 500);
  EXPECT_LE(SleptMs(), 5000 + 500 + 1000);
  other.End();
  Run();
  EXPECT_EQ(IsDone(), "1");
  EXPECT_EQ(house.Events().size(), 1u);
}

// A long event in the wait is not the other program's doing.
TEST_P(HistoryWriterTest, OnlyTheWaitingItselfCountsAgainstTheFiveSeconds) {
  OtherWriter other = OtherProgram();
  ASSERT_TRUE(other.Begin());
  house.loop.Post([this] { house.clock.Advance(seconds(30)); });
  EndAfter(seconds(1), other);
  Run();
  EXPECT_EQ(IsDone(), "1");
  ExpectNoEvent();
}

TEST_P(HistoryWriterTest, OthersCanWriteInTheHalfSecondOfItsFailure) {
  HistorySql(GetParam().refusal);
  OtherWriter other = OtherProgram();
  WriteInWaits(other);
  Run();
  ExpectFailure("modImport_" + GetParam().procedure, "refused");
  EXPECT_EQ(IsDone(), "0");
  EXPECT_GE(slices, 50);
  EXPECT_EQ(refusedWrites, 0);
}

}  // namespace
}  // namespace quillon
