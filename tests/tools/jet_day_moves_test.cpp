// The days of an old history and their places in the new one.
#include <gtest/gtest.h>

#include "platform/failure.h"
#include "quillondb/jet/day_moves.h"
#include "tools/jet_made_up.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

const DayTableKind& Ports() {
  return kDayTableKinds[0];
}

class JetDayMoves : public testing::Test {
 protected:
  void AddFields(const JetValue& table, const JetValue& date) {
    source_.AddRow("VLAN_HistCtrl", {{"HistTable", table}, {"TrafficDate", date}});
  }
  void AddDay(const std::string& table, const std::string& day) {
    AddFields(table, JetDateOf(day + " 03:00:00"));
  }

  // "old table > new table, date" of each move into these tables.
  Lines Plan(const Lines& newTables) {
    const std::vector<JetTable> tables = source_.Tables();
    const auto control = std::ranges::find(tables, "VLAN_HistCtrl", &JetTable::name);
    Lines lines;
    for (const DayMove& move : PlanDays(source_, *control, Ports(), newTables, losses_)) {
      lines.push_back(move.oldTable + " > " + move.newTable + ", " +
                      std::get<std::string>(move.date).substr(0, 10));
    }
    return lines;
  }

  MadeUpSource source_ = EmptyOld("History.mdb");
  JetLosses losses_;
};

TEST_F(JetDayMoves, DaysTakeTheNewTablesInStoredOrder) {
  AddDay("Tab_9", "2024-05-02");
  AddDay("Tab_1", "2024-05-01");
  EXPECT_EQ(Plan({"VLAN_Day01", "VLAN_Day02", "VLAN_Day03"}),
            (Lines{"Tab_9 > VLAN_Day01, 2024-05-02", "Tab_1 > VLAN_Day02, 2024-05-01"}));
  EXPECT_TRUE(losses_.empty());
}

TEST_F(JetDayMoves, OfTooManyDaysTheYoungestComeOver) {
  AddDay("A", "2024-05-01");
  AddDay("B", "2024-05-04");
  AddDay("C", "2024-05-02");
  AddDay("D", "2024-05-03");
  EXPECT_EQ(Plan({"VLAN_Day01", "VLAN_Day02"}),
            (Lines{"B > VLAN_Day01, 2024-05-04", "D > VLAN_Day02, 2024-05-03"}));
  EXPECT_EQ(losses_.Lines(),
            (Lines{"VLAN_HistCtrl: there is no place for the day of 2024-05-01 03:00:00 (A)",
                   "VLAN_HistCtrl: there is no place for the day of 2024-05-02 03:00:00 (C)"}));
}

TEST_F(JetDayMoves, ARowThatLeadsToNoDayIsLost) {
  AddDay("A", "2024-05-01");
  AddFields(std::string(), JetDateOf("2024-05-02 03:00:00"));
  AddDay("a", "2024-05-03");
  AddFields(std::string("B"), JetNull{});
  AddFields(std::string("C"), JetDate{1e9});
  EXPECT_EQ(Plan({"VLAN_Day01", "VLAN_Day02"}), (Lines{"A > VLAN_Day01, 2024-05-01"}));
  EXPECT_EQ(losses_.Lines(),
            (Lines{"VLAN_HistCtrl, row 2, HistTable: it names no table; its day is left out",
                   "VLAN_HistCtrl, row 3, HistTable: a is named by an earlier row; its day is left"
                   " out",
                   "VLAN_HistCtrl, row 4, HistTable: it has no date; its day is left out",
                   "VLAN_HistCtrl, row 5, HistTable: the date lies outside the years 100 to 9999;"
                   " its day is left out"}));
}

TEST_F(JetDayMoves, WithoutOneOfItsColumnsAControlTableIsUseless) {
  for (const char* column : {"TrafficDate", "HistTable"}) {
    source_ = EmptyOld("History.mdb");
    source_.RemoveColumn("VLAN_HistCtrl", column);
    try {
      Plan({"VLAN_Day01"});
      ADD_FAILURE() << column;
    } catch (const FileFailure& failure) {
      EXPECT_NE(std::string(failure.what()).find("old.mdb lacks the column"), std::string::npos);
      EXPECT_NE(std::string(failure.what()).find(column), std::string::npos) << failure.what();
    }
  }
}

}  // namespace
}  // namespace quillon
