// What the import tells whoever watches it.
#include "import/night_fixture.h"
#include "support/refusal.h"

namespace quillon {
namespace {

class ImportProgress : public ImportNightTest {
 protected:
  ImportProgress() {
    house.watch.progress = [this](JobUnit unit, int number, int total) {
      EXPECT_EQ(unit, JobUnit::kStep);
      told.push_back(std::to_string(number) + " of " + std::to_string(total));
      rows.push_back(Rows());
    };
    AddPort();
    AddStorage();
  }

  // What the steps have written so far: the ports and storages of the day, and the sums.
  std::string Rows() const {
    return History(
        "SELECT (SELECT COUNT(*) FROM VLAN_Day01), (SELECT COUNT(*) FROM VLAN_HistSum),"
        " (SELECT COUNT(*) FROM Disk_Day01), (SELECT COUNT(*) FROM Disk_HistSum)")[0];
  }

  const Lines kEightSteps = {"1 of 8", "2 of 8", "3 of 8", "4 of 8",
                             "5 of 8", "6 of 8", "7 of 8", "8 of 8"};
  Lines told;
  Lines rows;  // at each of them
};

TEST_F(ImportProgress, EachStepIsToldBeforeItsWork) {
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(told, kEightSteps);
  EXPECT_EQ(rows, (Lines{"0|0|0|0", "1|0|0|0", "1|0|0|0", "1|1|0|0", "1|2|0|0", "1|2|1|0",
                         "1|2|1|0", "1|2|1|0"}));
  EXPECT_EQ(Rows(), "1|2|1|1");
  ExpectNoEvent();
}

TEST_F(ImportProgress, StepThatFailsIsCountedToo) {
  HistorySql(Refusal("INSERT", "VLAN_Day01") + Refusal("INSERT", "Disk_HistSum"));
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(told, kEightSteps);
  EXPECT_EQ(Failures().size(), 2u);
}

TEST_F(ImportProgress, NothingIsToldOfAnImportThatIsNotDue) {
  SetMark("LastImport", "'2024-05-02 04:00:00'");
  EXPECT_FALSE(RunImport());
  EXPECT_EQ(told, Lines{});
}

TEST_F(ImportProgress, CountBeginsAnewWithTheNextImport) {
  RunImport();
  house.clock.Set("2024-05-03 12:00:00");
  Report();
  told.clear();
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(told, kEightSteps);
}

TEST_F(ImportProgress, ImportThatNobodyWatchesRunsAsWell) {
  house.watch.progress = nullptr;
  EXPECT_TRUE(RunImport());
  EXPECT_EQ(Rows(), "1|2|1|1");
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
