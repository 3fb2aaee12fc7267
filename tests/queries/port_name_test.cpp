// The look-up of the names of one port.
#include "queries/port_name.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {
namespace {

class PortNameTest : public testing::Test {
 protected:
  using Names = std::vector<std::string>;  // device and port

  void Sql(const std::string& statements) const {
    house.installation.Sql("Reports.mdb", statements);
  }

  // What the caller's two texts hold after the look-up.
  Names LookUp(std::int32_t recNo, std::int32_t ifIndex) {
    std::string devName = "device before";
    std::string portName = "port before";
    SqlPortNameLookup(house.queries, recNo, ifIndex, devName, portName);
    return {devName, portName};
  }

  // Expects that the only event is one of the look-up, whose text holds these words.
  void ExpectFailure(const std::string& words) const {
    const std::vector<std::string> events = house.Events();
    ASSERT_EQ(events.size(), 1u) << words;
    EXPECT_EQ(events[0].rfind("1\tmodSelectSql_SqlPortNameLookup\t", 0), 0u) << events[0];
    EXPECT_NE(events[0].find(words), std::string::npos) << events[0];
  }
  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), std::vector<std::string>{}); }

  const Names kUnknown = {"n/a", "n/a"};
  const Names kAsBefore = {"device before", "port before"};
  House house;
};

TEST_F(PortNameTest, NamesAreThoseOfTheDeviceAndTheInterface) {
  Sql(InsertPort({{"RecNo", "7"}, {"IfIndex", "4"}, {"IfDescr", "'Gi0/4'"}}));
  EXPECT_EQ(LookUp(7, 4), (Names{"Core", "Gi0/4"}));
  ExpectNoEvent();
}

TEST_F(PortNameTest, BothKeysOfThePortHaveToMatch) {
  Sql(InsertPort({{"RecNo", "7"}, {"IfIndex", "5"}, {"DevName", "'A'"}, {"IfDescr", "'7.5'"}}) +
      InsertPort({{"RecNo", "8"}, {"IfIndex", "4"}, {"DevName", "'B'"}, {"IfDescr", "'8.4'"}}) +
      InsertPort({{"RecNo", "7"}, {"IfIndex", "4"}, {"DevName", "'C'"}, {"IfDescr", "'7.4'"}}));
  EXPECT_EQ(LookUp(7, 4), (Names{"C", "7.4"}));
  EXPECT_EQ(LookUp(8, 4), (Names{"B", "8.4"}));
  EXPECT_EQ(LookUp(8, 5), kUnknown);
}

TEST_F(PortNameTest, UnknownPortHasNoNames) {
  EXPECT_EQ(LookUp(7, 4), kUnknown);
  Sql(InsertPort({{"RecNo", "7"}, {"IfIndex", "4"}}));
  EXPECT_EQ(LookUp(7, 5), kUnknown);
  EXPECT_EQ(LookUp(70, 4), kUnknown);
  EXPECT_EQ(LookUp(-7, 4), kUnknown);
  ExpectNoEvent();
}

TEST_F(PortNameTest, KeysMayBeAnyLong) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  Sql(InsertPort({{"RecNo", "-2147483648"}, {"IfIndex", "2147483647"}}) +
      InsertPort({{"RecNo", "0"}, {"IfIndex", "-1"}, {"DevName", "'Zero'"}}));
  EXPECT_EQ(LookUp(kLowest, kHighest), (Names{"Core", "Gi0/1"}));
  EXPECT_EQ(LookUp(0, -1), (Names{"Zero", "Gi0/1"}));
  EXPECT_EQ(LookUp(kHighest, kLowest), kUnknown);
  ExpectNoEvent();
}

TEST_F(PortNameTest, FirstStoredRowOfAPortCounts) {
  Sql(InsertPort({{"DevName", "'First'"}}) + InsertPort({{"DevName", "'Second'"}}));
  EXPECT_EQ(LookUp(7, 1), (Names{"First", "Gi0/1"}));
}

TEST_F(PortNameTest, PortOfAnotherDayOrKindHasItsNamesToo) {
  Sql(InsertPort(
      {{"IsTrunk", "TRUE"}, {"InOctetsDate", "'2020-01-01 03:10:00'"}, {"LastUpdate", "NULL"}}));
  EXPECT_EQ(LookUp(7, 1), (Names{"Core", "Gi0/1"}));
}

TEST_F(PortNameTest, NamesStandAsTheDatabaseHoldsThem) {
  house.settings.CharSet = "ISO-8859-1";
  Sql(InsertPort({{"DevName", "'Zürich <Москва> O''Neil '"}, {"IfDescr", "''"}}));
  EXPECT_EQ(LookUp(7, 1), (Names{"Zürich <Москва> O'Neil ", ""}));
  ExpectNoEvent();
}

TEST_F(PortNameTest, NullNameLeavesBothTexts) {
  for (const std::string column : {"DevName", "IfDescr"}) {
    Sql("DELETE FROM VLAN;" + InsertPort({{column, "NULL"}}));
    house.ForgetEvents();
    EXPECT_EQ(LookUp(7, 1), kAsBefore) << column;
    ExpectFailure(column);
  }
}

TEST_F(PortNameTest, MissingDatabaseLeavesBothTexts) {
  house.installation.Remove("Reports.mdb");
  EXPECT_EQ(LookUp(7, 1), kAsBefore);
  ExpectFailure("Reports.mdb");
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_F(PortNameTest, MissingTableLeavesBothTexts) {
  Sql("DROP TABLE VLAN");
  EXPECT_EQ(LookUp(7, 1), kAsBefore);
  ExpectFailure("Reports.mdb: no such table: VLAN");
}

TEST_F(PortNameTest, RunsNoEventInside) {
  Sql(InsertPort());
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  LookUp(7, 1);
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
}

}  // namespace
}  // namespace quillon
