// The two summaries of 45 days behind one set of verbs: days of sums in History.mdb, and what the
// record of a slot then holds of each day. PortSums and StorageSums tell where they differ.
#pragma once

#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "queries/chart_fixture.h"
#include "queries/disk_summary.h"
#include "queries/switch_summary.h"

namespace quillon {

// A column of the sums and what it fills.
template <typename Record>
struct SumColumn {
  std::string name;
  Panel Record::*panel;
  Days<std::string> Panel::*values;
  Days<std::string> Panel::*bars;  // null where the column has none
};

// Sums over the ports of a kind: access ports, where nothing else is asked for.
struct PortSums {
  using Record = Hist45dSwitchRecord;
  static constexpr auto kRecords = &ReportRecords::Hist45dSwitchRep;
  static constexpr auto kDates = &Record::TrafficDate;
  static constexpr const char* kTable = "VLAN_HistSum";
  static constexpr const char* kDate = "TrafficDate";
  static constexpr const char* kMark = "Ports";  // shows a small figure as it is stored
  static constexpr const char* kProcedure = "modSelectSql_SqHist45dSwitchSum";

  static void Run(QueryContext& context, ConnectionId slot) {
    SqHist45dSwitchSum(context, slot, false);
  }

  // Columns in the order in which a day is filled.
  static const std::vector<SumColumn<Record>>& InOrder() {
    static const std::vector<SumColumn<Record>> columns = {
        {"InHCOctetsMb24H", &Record::Volume, &Panel::Left, &Panel::LeftBar},
        {"OutHCOctetsMb24H", &Record::Volume, &Panel::Right, &Panel::RightBar},
        {"InBroadCastPpm24H", &Record::Broadcast, &Panel::Left, &Panel::LeftBar},
        {"InMultiCastPpm24H", &Record::Broadcast, &Panel::Right, &Panel::RightBar},
        {"InErrorsTot24H", &Record::Errors, &Panel::Left, &Panel::LeftBar},
        {"OutErrorsTot24H", &Record::Errors, &Panel::Right, &Panel::RightBar},
        {"Ports", &Record::Ports, &Panel::Left, &Panel::LeftBar},
        {"PortsInTraffic", &Record::Ports, &Panel::Right, &Panel::RightBar},
    };
    return columns;
  }

  static const Columns& Ordinary() {
    static const Columns columns = {{"IsTrunk", "FALSE"},       {"InHCOctetsMb24H", "6"},
                                    {"OutHCOctetsMb24H", "5"},  {"InBroadCastPpm24H", "4"},
                                    {"InMultiCastPpm24H", "3"}, {"InErrorsTot24H", "2"},
                                    {"OutErrorsTot24H", "1"},   {"Ports", "20"},
                                    {"PortsInTraffic", "10"}};
    return columns;
  }
};

// Sums over the storages, by their kind.
struct StorageSums {
  using Record = Hist45dDiskRecord;
  static constexpr auto kRecords = &ReportRecords::Hist45dDiskRep;
  static constexpr auto kDates = &Record::StorageDate;
  static constexpr const char* kTable = "Disk_HistSum";
  static constexpr const char* kDate = "StorageDate";
  static constexpr const char* kMark = "NumUnix";
  static constexpr const char* kProcedure = "modSelectSql_SqlHist45dDiskSum";

  static void Run(QueryContext& context, ConnectionId slot) { SqlHist45dDiskSum(context, slot); }

  static const std::vector<SumColumn<Record>>& InOrder() {
    static const std::vector<SumColumn<Record>> columns = {
        {"TotalMPhysical", &Record::Physical, &Panel::Left, &Panel::LeftBar},
        {"UsedMPhysical", &Record::Physical, &Panel::Right, &Panel::RightBar},
        {"NumPhysical", &Record::Physical, &Panel::Num, nullptr},
        {"TotalMVirtual", &Record::Virtual, &Panel::Left, &Panel::LeftBar},
        {"UsedMVirtual", &Record::Virtual, &Panel::Right, &Panel::RightBar},
        {"NumVirtual", &Record::Virtual, &Panel::Num, nullptr},
        {"TotalMWindows", &Record::Windows, &Panel::Left, &Panel::LeftBar},
        {"UsedMWindows", &Record::Windows, &Panel::Right, &Panel::RightBar},
        {"NumWindows", &Record::Windows, &Panel::Num, nullptr},
        {"TotalMUnix", &Record::Unix, &Panel::Left, &Panel::LeftBar},
        {"UsedMUnix", &Record::Unix, &Panel::Right, &Panel::RightBar},
        {"NumUnix", &Record::Unix, &Panel::Num, nullptr},
    };
    return columns;
  }

  static const Columns& Ordinary() {
    static const Columns columns = {
        {"TotalMPhysical", "100"}, {"UsedMPhysical", "40"},  {"NumPhysical", "3"},
        {"TotalMVirtual", "200"},  {"UsedMVirtual", "50"},   {"NumVirtual", "4"},
        {"TotalMWindows", "3000"}, {"UsedMWindows", "1500"}, {"NumWindows", "5"},
        {"TotalMUnix", "40000"},   {"UsedMUnix", "10000"},   {"NumUnix", "6"}};
    return columns;
  }
};

// A row of the sums, ordinary but for these columns. The moment and the values are SQL literals.
template <typename Sums>
std::string InsertSums(const std::string& moment, const Columns& differing = {}) {
  Columns columns = Sums::Ordinary();
  columns[Sums::kDate] = moment;
  for (const auto& [column, value] : differing) columns[column] = value;
  return InsertRow(Sums::kTable, columns);
}

// A stored figure as SQL literal, and the text that it gives.
struct SumText {
  std::string stored;
  std::string text;
};

// A stored figure that is the only one of its panel, its bar, and the labels of the axis.
struct SumAxis {
  std::string stored;
  std::string bar;
  std::string max;
  std::string half;
};

template <typename Sums>
class SummaryTest : public ChartTest {
 protected:
  using SumRecord = typename Sums::Record;
  using Column = SumColumn<SumRecord>;
  static constexpr const char* kBefore = "of an earlier report";

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
  Lines Values(int position) {
    Lines values;
    for (const Column& column : Sums::InOrder()) values.push_back(Value(column.name, position));
    return values;
  }
  Lines Bars(int position) {
    Lines bars;
    for (const Column& column : Sums::InOrder()) {
      if (column.bars != nullptr) bars.push_back(Bar(column.name, position));
    }
    return bars;
  }
  static Lines RawValues() {
    Lines values;
    for (const Column& column : Sums::InOrder()) {
      values.push_back(Sums::Ordinary().at(column.name));
    }
    return values;
  }

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
  void ExpectTexts(const std::string& column, const std::vector<SumText>& cases) {
    ASSERT_LE(cases.size(), static_cast<std::size_t>(kNewest));
    std::string statements = std::string("DELETE FROM ") + Sums::kTable + ";";
    int age = 0;
    for (const SumText& row : cases) {
      statements += InsertSums<Sums>(MomentBefore(++age), {{column, row.stored}});
    }
    History("BEGIN;" + statements + "COMMIT;");
    Query();
    age = 0;
    for (const SumText& row : cases) {
      EXPECT_EQ(Value(column, PositionOf(++age)), row.text) << column << " " << row.stored;
    }
  }
  // Expects the bars and labels that figures in this column give, its twin in the panel being 0.
  void ExpectAxes(const std::string& column, const std::vector<SumAxis>& cases) {
    Columns figures;
    const Column& found = Find(column);
    for (const Column& each : Sums::InOrder()) {
      if (each.panel == found.panel && each.bars != nullptr) figures[each.name] = "0";
    }
    for (const SumAxis& row : cases) {
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
  }
  // Expects words and axes, and the days up to this position, of the earlier report.
  void ExpectOfBefore(int lastPosition) {
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

  // Expects that a null in the column ends the walk at the field that it was to fill.
  void ExpectNullEndsTheWalkAt(const Column& broken) {
    ClearDays();
    house.ForgetEvents();
    FillRecord();
    AddDay(1);
    AddDay(2, {{broken.name, "NULL"}});
    AddDay(3);
    Query();
    ExpectFailure(broken.name);
    EXPECT_EQ(Values(kNewest), RawValues());
    EXPECT_EQ(Bars(kNewest), Lines(kBars, "1"));
    bool filled = true;
    for (const Column& column : Sums::InOrder()) {
      if (column.name == broken.name) filled = false;
      EXPECT_EQ(Value(column.name, kNewest - 1),
                filled ? Sums::Ordinary().at(column.name) : kBefore)
          << column.name;
    }
    EXPECT_EQ(Bars(kNewest - 1), Lines(kBars, kBefore));
    EXPECT_EQ((Record().*Sums::kDates)[kNewest - 1], MakeDateTime({2024, 4, 30}));
    ExpectOfBefore(kNewest - 2);
  }

  // Expects one event, of the report, whose text holds these words.
  void ExpectFailure(const std::string& words) const {
    const Lines failures = Failures(Sums::kProcedure);
    ASSERT_EQ(failures.size(), 1u) << words;
    EXPECT_NE(failures[0].find(words), std::string::npos) << words << ": " << failures[0];
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

  // Expects that no slot holds anything.
  void ExpectFreshRecords() const {
    const ReportRecords& records = house.records;
    for (int slot = 1; slot <= 20; ++slot) {
      const SumRecord& record = (records.*Sums::kRecords)[slot];
      EXPECT_EQ((record.*Sums::kDates)[kNewest], ZeroDate()) << slot;
      for (const auto panel : Panels()) {
        EXPECT_EQ((record.*panel).Head, "") << slot;
        EXPECT_EQ((record.*panel).Left[kNewest], "") << slot;
      }
    }
  }

  static constexpr std::size_t kBars = 8;

 private:
  static constexpr std::string Panel::*kWords[] = {&Panel::Report,   &Panel::Head,
                                                   &Panel::NameLeft, &Panel::NameRight,
                                                   &Panel::YaxisMax, &Panel::YaxisHalf};
  static DateTime DateBefore() { return MakeDateTime({2001, 2, 3}); }

  std::string MomentBefore(int age) const { return "'" + DayBefore(age) + " 03:10:00'"; }

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
