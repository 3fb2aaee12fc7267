// Which search a device is sent to.
#include "queries/device_stats.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "support/house.h"
#include "support/report_rows.h"

namespace quillon {
namespace {

class DeviceStatsTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  void Sql(const std::string& statements) const {
    house.installation.Sql("Reports.mdb", statements);
  }

  // The caller's text behind the look-up of a device.
  std::string RequestFor(std::int32_t recNo, std::string request = "") {
    CheckForStats(house.queries, recNo, request);
    return request;
  }

  // Expects that the only event is one of the look-up, whose text holds these words.
  void ExpectFailure(const std::string& words) const {
    const Lines events = house.Events();
    ASSERT_EQ(events.size(), 1u) << words;
    EXPECT_EQ(events[0].rfind("1\tmodSelectSql_CheckForStats\t", 0), 0u) << events[0];
    EXPECT_NE(events[0].find(words), std::string::npos) << events[0];
  }
  void ExpectNoEvent() const { EXPECT_EQ(house.Events(), Lines{}); }

  House house;
};

TEST_F(DeviceStatsTest, SwitchIsSentToThePortSearch) {
  Sql(InsertPort({{"RecNo", "7"}, {"DevName", "'Core 1'"}}));
  EXPECT_EQ(RequestFor(7),
            "POST /search-device-port-name\r\n"
            "DeviceName=Core 1\r\n"
            "PortName=*");
  ExpectNoEvent();
}

TEST_F(DeviceStatsTest, ServerIsSentToTheDiskSearch) {
  Sql(InsertStorage({{"RecNo", "900"}, {"DevName", "'Files'"}}));
  EXPECT_EQ(RequestFor(900),
            "POST /search-device-disk\r\n"
            "DeviceName=Files\r\n"
            "DiskName=*\r\n"
            "OrderBy=usedpercent-desc");
  ExpectNoEvent();
}

TEST_F(DeviceStatsTest, DeviceOfBothKindsIsASwitch) {
  Sql(InsertStorage({{"RecNo", "7"}, {"DevName", "'As server'"}}) +
      InsertPort({{"RecNo", "7"}, {"DevName", "'As switch'"}}));
  EXPECT_EQ(RequestFor(7), "POST /search-device-port-name\r\nDeviceName=As switch\r\nPortName=*");
}

TEST_F(DeviceStatsTest, UnknownDeviceLeavesTheTextAsItWas) {
  Sql(InsertPort({{"RecNo", "7"}}) + InsertStorage({{"RecNo", "900"}}));
  for (const int recNo : {0, 8, 70, -7, 901}) {
    EXPECT_EQ(RequestFor(recNo), "") << recNo;
    EXPECT_EQ(RequestFor(recNo, "GET /before HTTP/1.1\r\n"), "GET /before HTTP/1.1\r\n") << recNo;
  }
  ExpectNoEvent();
}

TEST_F(DeviceStatsTest, KnownDeviceReplacesTheTextAltogether) {
  Sql(InsertPort());
  EXPECT_EQ(RequestFor(7, "GET /before HTTP/1.1\r\n"),
            "POST /search-device-port-name\r\nDeviceName=Core\r\nPortName=*");
}

TEST_F(DeviceStatsTest, NumberMayBeAnyLong) {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  Sql(InsertPort({{"RecNo", "-2147483648"}, {"DevName", "'low'"}}) +
      InsertStorage({{"RecNo", "2147483647"}, {"DevName", "'high'"}}) +
      InsertPort({{"RecNo", "0"}, {"DevName", "'zero'"}}));
  EXPECT_EQ(RequestFor(kLowest), "POST /search-device-port-name\r\nDeviceName=low\r\nPortName=*");
  EXPECT_EQ(RequestFor(kHighest),
            "POST /search-device-disk\r\nDeviceName=high\r\nDiskName=*\r\n"
            "OrderBy=usedpercent-desc");
  EXPECT_EQ(RequestFor(0), "POST /search-device-port-name\r\nDeviceName=zero\r\nPortName=*");
  ExpectNoEvent();
}

TEST_F(DeviceStatsTest, FirstStoredRowNamesTheDevice) {
  Sql(InsertPort({{"DevName", "'First'"}, {"IfIndex", "9"}}) +
      InsertPort({{"DevName", "'Second'"}, {"IfIndex", "1"}}) +
      InsertStorage({{"DevName", "'One'"}, {"StorDescr", "'D:'"}}) +
      InsertStorage({{"DevName", "'Two'"}, {"StorDescr", "'C:'"}}));
  EXPECT_EQ(RequestFor(7), "POST /search-device-port-name\r\nDeviceName=First\r\nPortName=*");
  EXPECT_EQ(RequestFor(900),
            "POST /search-device-disk\r\nDeviceName=One\r\nDiskName=*\r\n"
            "OrderBy=usedpercent-desc");
}

TEST_F(DeviceStatsTest, DaysOfTheRowsDoNotCount) {
  Sql(InsertPort({{"InOctetsDate", "NULL"}, {"LastUpdate", "'2001-01-01 00:00:00'"}}) +
      InsertStorage({{"LastUpdate", "NULL"}}));
  EXPECT_EQ(RequestFor(7), "POST /search-device-port-name\r\nDeviceName=Core\r\nPortName=*");
  EXPECT_EQ(RequestFor(900),
            "POST /search-device-disk\r\nDeviceName=Files\r\nDiskName=*\r\n"
            "OrderBy=usedpercent-desc");
}

TEST_F(DeviceStatsTest, NameStandsInBytesOfThePagesCharsetAndAsItIs) {
  struct Case {
    std::string charSet;
    std::string stored;
    std::string shown;
  };
  const std::string longName(5'000, 'n');
  const Case cases[] = {
      {"ISO-8859-1", "Zürich", "Z\xFCrich"},
      {"ISO-8859-1", "Москва €", "?????? ?"},
      {"UTF-8", "Москва €", "Москва €"},
      {"windows-1251", "Москва ü", "\xCC\xEE\xF1\xEA\xE2\xE0 ?"},
      {"ISO-8859-1", "O''Neil''s \"core\" <b> & [1] *%+", "O'Neil's \"core\" <b> & [1] *%+"},
      {"ISO-8859-1", " blanks ", " blanks "},
      {"ISO-8859-1", "", ""},
      {"ISO-8859-1", longName, longName},
  };
  for (const Case& row : cases) {
    const std::string name = "'" + row.stored + "'";
    house.settings.CharSet = row.charSet;
    Sql("DELETE FROM VLAN; DELETE FROM HostDiskInfo;" + InsertPort({{"DevName", name}}) +
        InsertStorage({{"DevName", name}}));
    EXPECT_EQ(RequestFor(7),
              "POST /search-device-port-name\r\nDeviceName=" + row.shown + "\r\nPortName=*");
    EXPECT_EQ(RequestFor(900), "POST /search-device-disk\r\nDeviceName=" + row.shown +
                                   "\r\nDiskName=*\r\nOrderBy=usedpercent-desc");
  }
  ExpectNoEvent();
}

TEST_F(DeviceStatsTest, NullNameLeavesTheText) {
  Sql(InsertPort({{"DevName", "NULL"}}) + InsertStorage({{"DevName", "NULL"}}));
  for (const int recNo : {7, 900}) {
    house.ForgetEvents();
    EXPECT_EQ(RequestFor(recNo, "before"), "before") << recNo;
    ExpectFailure("DevName");
  }
}

TEST_F(DeviceStatsTest, NullNameOfASwitchDoesNotMakeItAServer) {
  Sql(InsertPort({{"RecNo", "7"}, {"DevName", "NULL"}}) +
      InsertStorage({{"RecNo", "7"}, {"DevName", "'Files'"}}));
  EXPECT_EQ(RequestFor(7, "before"), "before");
  ExpectFailure("DevName");
}

TEST_F(DeviceStatsTest, MissingDatabaseLeavesTheText) {
  house.installation.Remove("Reports.mdb");
  EXPECT_EQ(RequestFor(7, "before"), "before");
  ExpectFailure("Reports.mdb");
  EXPECT_FALSE(house.installation.Exists("Reports.mdb"));
}

TEST_F(DeviceStatsTest, MissingTableIsAFailureOnlyWhereItIsAsked) {
  Sql(InsertPort() + "DROP TABLE HostDiskInfo");
  EXPECT_EQ(RequestFor(7), "POST /search-device-port-name\r\nDeviceName=Core\r\nPortName=*");
  ExpectNoEvent();
  EXPECT_EQ(RequestFor(8, "before"), "before");
  ExpectFailure("Reports.mdb: no such table: HostDiskInfo");
}

TEST_F(DeviceStatsTest, MissingTableOfPortsIsAFailureForServersToo) {
  Sql(InsertStorage() + "DROP TABLE VLAN");
  EXPECT_EQ(RequestFor(900, "before"), "before");
  ExpectFailure("Reports.mdb: no such table: VLAN");
}

TEST_F(DeviceStatsTest, WritesNoDumpAndRunsNoEventInside) {
  house.settings.DebugMode = true;
  Sql(InsertPort());
  bool ran = false;
  house.loop.Post([&] { ran = true; });
  RequestFor(7);
  EXPECT_FALSE(ran);
  EXPECT_EQ(house.clock.slept().count(), 0);
  EXPECT_EQ(house.installation.List("Debug"), Lines{});
}

}  // namespace
}  // namespace quillon
