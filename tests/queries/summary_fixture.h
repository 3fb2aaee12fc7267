// The two summaries of 45 days behind one set of verbs: days of sums in History.mdb, and what the
// record of a slot then holds of each day.
#pragma once

#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "queries/chart_fixture.h"
#include "queries/figure_cases.h"
#include "queries/sums.h"

namespace quillon {

template <typename Sums>
class SummaryTest : public ChartTest {
 protected:
  using SumRecord = typename Sums::Record;
  using Column = ChartColumn<SumRecord>;

  void AddMoment(const std::string& moment, const Columns& differing = {}) const {
    History(InsertSums<Sums>(moment, differing));
  }
  // A row of the day so many days ago, at ten past three.
  void AddDay(int age, const Columns& differing = {}) const {
    AddMoment(MomentBefore(age), differing);
  }
  // Yesterday, with the same in each column that the report shows.
  void AddDayOf(const std::string& stored) const {
    Columns columns;
    for (const Column& column : Sums::InOrder()) columns[column.name] = stored;
    AddDay(1, columns);
  }
  // Rows of these days, whose mark is their age.
  void AddMarkedDays(const std::vector<int>& ages, const Columns& differing = {}) const {
    std::string statements;
    for (const int age : ages) {
      Columns columns = differing;
      columns.emplace(Sums::kMark, std::to_string(age));
      statements += InsertSums<Sums>(MomentBefore(age), columns);
    }
    History("BEGIN;" + statements + "COMMIT;");
  }
  void AddMarkedDaysUpTo(int count) const {
    std::vector<int> ages;
    for (int age = 1; age <= count; ++age) ages.push_back(age);
    AddMarkedDays(ages);
  }
  void ClearDays() const { History(std::string("DELETE FROM ") + Sums::kTable); }

  SumRecord& Record(ConnectionId slot = kSlot) { return (house.records.*Sums::kRecords)[slot]; }
  SumRecord& Query(ConnectionId slot = kSlot) {
    Sums::Run(house.queries, slot);
    return Record(slot);
  }

  const std::string& Value(const std::string& column, int position) {
    const Column& found = Find(column);
    return (Record().*found.panel.*found.values)[position];
  }
  const std::string& Bar(const std::string& column, int position) {
    const Column& found = Find(column);
    return (Record().*found.panel.*found.bars)[position];
  }
  // All that a day holds, in the order in which it is filled.
  Lines Values(int position) { return ValuesOf(Record(), Sums::InOrder(), position); }
  Lines Bars(int position) { return BarsOf(Record(), Sums::InOrder(), position); }

  // Expects rows with these marks at these positions, and dashes at all others.
  void ExpectDays(const std::map<int, std::string>& marks) {
    for (int position = 1; position <= kNewest; ++position) {
      const auto mark = marks.find(position);
      if (mark == marks.end()) {
        EXPECT_EQ(Values(position), Lines(Sums::InOrder().size(), "-")) << position;
        EXPECT_EQ(Bars(position), Lines(kBars, "1")) << position;
        continue;
      }
      EXPECT_EQ(Value(Sums::kMark, position), mark->second) << position;
      for (const Column& column : Sums::InOrder()) {
        EXPECT_NE(Value(column.name, position), "-") << column.name << " " << position;
      }
    }
  }
  // The same of the days of these ages, each marked by its age.
  void ExpectMarkedDays(const std::vector<int>& ages) {
    std::map<int, std::string> marks;
    for (const int age : ages) marks[PositionOf(age)] = std::to_string(age);
    ExpectDays(marks);
  }
  // Expects 45 days in a row, without times, up to this one.
  void ExpectDaysUpTo(DateTime newest) {
    for (int position = 1; position <= kNewest; ++position) {
      EXPECT_EQ((Record().*Sums::kDates)[position], newest - std::chrono::days(kNewest - position))
          << position;
    }
  }

  // Expects the texts that figures in this column give, each on a day of its own.
  void ExpectTexts(const std::string& column, const std::vector<FigureText>& cases) {
    ASSERT_LE(cases.size(), static_cast<std::size_t>(kNewest));
    std::string statements = std::string("DELETE FROM ") + Sums::kTable + ";";
    int age = 0;
    for (const FigureText& row : cases) {
      statements += InsertSums<Sums>(MomentBefore(++age), {{column, row.stored}});
    }
    History("BEGIN;" + statements + "COMMIT;");
    Query();
    age = 0;
    for (const FigureText& row : cases) {
      EXPECT_EQ(Value(column, PositionOf(++age)), row.text) << column << " " << row.stored;
    }
  }
  // Expects the bars and labels that figures in this column give, its twin in the panel being 0.
  void ExpectAxes(const std::string& column, const std::vector<FigureAxis>& cases) {
    Columns figures;
    const Column& found = Find(column);
    for (const Column& each : Sums::InOrder()) {
      if (each.panel == found.panel && each.bars != nullptr) figures[each.name] = "0";
    }
    for (const FigureAxis& row : cases) {
      figures[column] = row.stored;
      History(std::string("DELETE FROM ") + Sums::kTable + ";" +
              InsertSums<Sums>(MomentBefore(1), figures));
      const Panel& panel = Query().*found.panel;
      EXPECT_EQ(Bar(column, kNewest), row.bar) << column << " " << row.stored;
      EXPECT_EQ(panel.YaxisMax, row.max) << column << " " << row.stored;
      EXPECT_EQ(panel.YaxisHalf, row.half) << column << " " << row.stored;
    }
  }

  static Panel SumRecord::*PanelOf(const std::string& column) { return Find(column).panel; }
  // The panels in the order in which they are worked on.
  static std::vector<Panel SumRecord::*> Panels() {
    std::vector<Panel SumRecord::*> panels;
    for (const Column& column : Sums::InOrder()) {
      if (column.values == &Panel::Left) panels.push_back(column.panel);
    }
    return panels;
  }
  Lines AxisTops() {
    Lines tops;
    for (const auto panel : Panels()) tops.push_back((Record().*panel).YaxisMax);
    return tops;
  }
  Lines AxisHalves() {
    Lines halves;
    for (const auto panel : Panels()) halves.push_back((Record().*panel).YaxisHalf);
    return halves;
  }

  // The record as an earlier report left it.
  void FillRecord() {
    for (const auto panel : Panels()) {
      Panel& filled = Record().*panel;
      for (const auto text : kWords) filled.*text = kBefore;
      for (const auto days : {&Panel::Left, &Panel::LeftBar, &Panel::Right, &Panel::RightBar,
                              &Panel::Proc, &Panel::Num}) {
        (filled.*days).Fill(kBefore);
      }
    }
    (Record().*Sums::kDates).Fill(DateBefore());
    if constexpr (kHasReport) Record().Report = kBefore;
  }
  // Expects words and axes, and the days up to this position, of the earlier report.
  void ExpectOfBefore(int lastPosition) {
    if constexpr (kHasReport) {
      EXPECT_EQ(Record().Report, kBefore);
    }
    for (const auto panel : Panels()) {
      for (const auto text : kWords) EXPECT_EQ(Record().*panel.*text, kBefore);
      EXPECT_EQ((Record().*panel).Proc[kNewest], kBefore);
    }
    for (int position = 1; position <= lastPosition; ++position) {
      EXPECT_EQ(Values(position), Lines(Sums::InOrder().size(), kBefore)) << position;
      EXPECT_EQ(Bars(position), Lines(kBars, kBefore)) << position;
      EXPECT_EQ((Record().*Sums::kDates)[position], DateBefore()) << position;
    }
  }

  // Expects one event, of the report, whose text holds these words.
  void ExpectFailure(const std::string& words) const {
    ChartTest::ExpectFailure(Sums::kProcedure, words);
  }
  // The module and procedure of each event, oldest first.
  Lines FailedProcedures() const {
    Lines procedures;
    for (const std::string& event : house.Events()) {
      EXPECT_EQ(event.rfind("1\t", 0), 0u) << event;
      procedures.push_back(event.substr(2, event.find('\t', 2) - 2));
    }
    return procedures;
  }

  static constexpr std::size_t kBars = 8;
  // Whether the record has one name for all its panels.
  static constexpr bool kHasReport = requires(SumRecord record) { record.Report; };

 private:
  static constexpr std::string Panel::*kWords[] = {&Panel::Report,   &Panel::Head,
                                                   &Panel::NameLeft, &Panel::NameRight,
                                                   &Panel::YaxisMax, &Panel::YaxisHalf};
  static DateTime DateBefore() { return MakeDateTime({2001, 2, 3}); }

  static const Column& Find(const std::string& name) {
    for (const Column& column : Sums::InOrder()) {
      if (column.name == name) return column;
    }
    throw std::invalid_argument("no column " + name);
  }
};

class SwitchSummaryTest : public SummaryTest<PortSums> {
 protected:
  SumRecord& QueryTrunk(ConnectionId slot = kSlot) {
    SqHist45dSwitchSum(house.queries, slot, true);
    return Record(slot);
  }
};

using DiskSummaryTest = SummaryTest<StorageSums>;

}  // namespace quillon
