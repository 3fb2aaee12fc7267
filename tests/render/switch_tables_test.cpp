// The switch port tables, compared whole with stored pieces of page. Row 3 of them holds
// "Device-3-", "Descr-3-" and so on, so that no field can stand in another's place.
#include "render/switch_tables.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "support/house.h"
#include "support/stored_text.h"

namespace quillon {
namespace {

constexpr ConnectionId kSlot = 20;
constexpr std::string_view kPageName = "stored-page.htm";  // in the links of the stored rows
constexpr std::string_view kTableEnd = "</table>\r\n<br>\r\n";

// One of the ten stored rows.
std::string StoredPort(int number) {
  return StoredRow("switch_rows.html", number);
}

SwitchTableRow NumberedRow(int number) {
  const std::string mark = "-" + std::to_string(number) + "-";
  SwitchTableRow row;
  row.recNo = 1000 + number;
  row.device = "Device" + mark;
  row.ipAddr = "DeviceIp" + mark;
  row.vlanID = "Vlan" + mark;
  row.ifIndex = 500 + number;
  row.ifDescr = "Descr" + mark;
  row.ifSpeed = "Speed" + mark;
  row.ifAlias = "Alias" + mark;
  row.ifAdmin = "Admin" + mark;
  row.ifOper = "Oper" + mark;
  row.inHCOctetsMb24H = "InVolume" + mark;
  row.inHCOctetsMb24HF = "FullInVolume" + mark;
  row.outHCOctetsMb24H = "OutVolume" + mark;
  row.outHCOctetsMb24HF = "FullOutVolume" + mark;
  row.inBroadCastPpm24H = "Broadcast" + mark;
  row.inBroadCastPpm24HF = "FullBroadcast" + mark;
  row.inMultiCastPpm24H = "Multicast" + mark;
  row.inMultiCastPpm24HF = "FullMulticast" + mark;
  row.inErrorsTot24H = "InErrors" + mark;
  row.inErrorsTot24HF = "FullInErrors" + mark;
  row.outErrorsTot24H = "OutErrors" + mark;
  row.outErrorsTot24HF = "FullOutErrors" + mark;
  row.userMacAddr = "UserMac" + mark;
  row.userIpAddr = "UserIp" + mark;
  row.userLastSeen = "Seen" + mark;
  return row;
}

class SwitchTables : public testing::Test {
 protected:
  SwitchTables() {
    house_.NumberWords("Word");
    house_.period.ReportStart = "2024-05-01 23:00";
    house_.period.ReportEnd = "2024-05-02 22:59";
    Table().TableReport = "Access ports";
    Table().TableCriteria = "10 (214)";
    Table().TableHead = "Volume in";
    for (int number = 1; number <= 10; ++number) Row(number) = NumberedRow(number);
  }

  SwitchTableRecord& Table() { return house_.records.SwitchTableRep[kSlot]; }
  SwitchTableRow& Row(int number) { return Table().rows[number]; }

  std::string Band() {
    std::string page;
    TableHeader_Switch(house_.render, kSlot, page);
    return page;
  }

  std::string Top10(std::string_view portKind = "access") {
    std::string page;
    TableData_Switch(house_.render, kSlot, portKind, kPageName, page);
    return page;
  }

  std::string Search() {
    std::string page;
    TableDataSwitch_Search(house_.render, kSlot, kPageName, page);
    return page;
  }

  // Expects both tables to hold these rows and nothing else.
  void ExpectRows(const std::string& rows) {
    EXPECT_EQ(StoredPiece("switch_top10_head.html") + rows + std::string(kTableEnd), Top10());
    EXPECT_EQ(StoredPiece("switch_search_head.html") + rows + std::string(kTableEnd), Search());
  }

  House house_;
};

TEST_F(SwitchTables, BandTellsReportCriteriaHeadAndPeriod) {
  EXPECT_EQ(StoredPiece("switch_band.html"), Band());
}

TEST_F(SwitchTables, BandPrintsItsTextsAsTheyAre) {
  for (const std::string text : {"", "n/a", "O'Neil & \"<b>K\xFC", "\r\n"}) {
    Table().TableHead = text;
    EXPECT_EQ(Replaced(StoredPiece("switch_band.html"), "Volume in", text), Band());
  }
}

TEST_F(SwitchTables, TenRowsAreAWholeTable) {
  ExpectRows(StoredPiece("switch_rows.html"));
}

TEST_F(SwitchTables, HeadsOfTrunkPortsLinkToTheListsOfTrunkPorts) {
  const std::string head = Replaced(StoredPiece("switch_top10_head.html"), "'switch-access-port-",
                                    "'switch-trunk-port-");
  EXPECT_EQ(head + StoredPiece("switch_rows.html") + std::string(kTableEnd), Top10("trunk"));
}

TEST_F(SwitchTables, TableWithoutRowsHasItsHeadAlone) {
  for (int number = 1; number <= 10; ++number) Row(number).recNo = 0;
  ExpectRows("");
}

TEST_F(SwitchTables, RowWithRecNo0PrintsNothing) {
  for (const int number : {3, 5, 6, 7, 8, 9, 10}) Row(number).recNo = 0;
  ExpectRows(StoredPort(1) + StoredPort(2) + StoredPort(4));
}

TEST_F(SwitchTables, LastRowAloneKeepsItsClassItsIdAndItsPlace) {
  for (int number = 1; number <= 9; ++number) Row(number).recNo = 0;
  ExpectRows(StoredPort(10));
}

TEST_F(SwitchTables, AddressWithoutLastSeenStandsAlone) {
  Row(4).userLastSeen = "-";
  ExpectRows(Replaced(StoredPiece("switch_rows.html"), "&nbsp;&nbsp(LastSeen: Seen-4-)", ""));
}

TEST_F(SwitchTables, AnyOtherLastSeenStandsInBrackets) {
  for (const std::string text : {"", "--", " -", "- ", "n/a"}) {
    Row(4).userLastSeen = text;
    ExpectRows(Replaced(StoredPiece("switch_rows.html"), "Seen-4-", text));
  }
}

TEST_F(SwitchTables, AwkwardNamesArePrintedAsTheyAre) {
  for (const std::string text : {"O'Neil", "<b>R&D</b>", "\"x\"",
                                 "K\xFC"
                                 "che \xE9\xFF",
                                 "a b", "&nbsp;", "", "\r\n"}) {
    Row(2).device = text;
    Row(2).ifDescr = text + "/1";
    Row(2).ifAlias = text + "/2";
    Row(2).userMacAddr = text + "/3";
    std::string rows = Replaced(StoredPiece("switch_rows.html"), "Device-2-", text);
    rows = Replaced(rows, "Descr-2-", text + "/1");
    rows = Replaced(rows, "Alias-2-", text + "/2");
    ExpectRows(Replaced(rows, "UserMac-2-", text + "/3"));
  }
}

TEST_F(SwitchTables, EmptyTextsGiveEmptyCells) {
  Row(1) = SwitchTableRow();
  Row(1).recNo = -1;
  Row(1).ifIndex = std::numeric_limits<std::int32_t>::max();
  const std::string page = Search();
  for (const std::string piece : {
           "<a href=hist45--1-2147483647-stored-page.htm></a></td>\r\n",
           "    <div class='div-table-col'>&nbsp;&nbsp(RecNo: -1)</div></div>\r\n",
           "    <td width='85px'></td>\r\n    <td width='85px' style='border-right:0px'></td>\r\n",
       }) {
    EXPECT_NE(std::string::npos, page.find(piece)) << piece;
  }
}

TEST_F(SwitchTables, PageNameRidesInTheLinksAsItIs) {
  const std::string pageName = "search-device-port-name-17.htm?a='b'&c=\xFC";
  std::string page;
  TableDataSwitch_Search(house_.render, kSlot, pageName, page);
  EXPECT_EQ(Replaced(Search(), kPageName, pageName), page);
}

TEST_F(SwitchTables, SlotsDoNotMix) {
  house_.records.SwitchTableRep[1].rows[1] = NumberedRow(1);
  std::string page;
  TableDataSwitch_Search(house_.render, 1, kPageName, page);
  EXPECT_EQ(StoredPiece("switch_search_head.html") + StoredPort(1) + std::string(kTableEnd), page);
}

TEST_F(SwitchTables, PiecesAreAppendedBehindWhatIsThere) {
  std::string page = "<!-- before -->";
  TableHeader_Switch(house_.render, kSlot, page);
  TableData_Switch(house_.render, kSlot, "access", kPageName, page);
  TableDataSwitch_Search(house_.render, kSlot, kPageName, page);
  EXPECT_EQ("<!-- before -->" + Band() + Top10() + Search(), page);
  EXPECT_TRUE(house_.Events().empty());
}

// The procedures that print a slot, under the names that their failures carry.
const struct {
  std::string name;
  void (*print)(const RenderContext& context, ConnectionId slot, std::string& page);
} kProcedures[] = {
    {"TableHeader_Switch", TableHeader_Switch},
    {"TableData_Switch",
     [](const RenderContext& context, ConnectionId slot, std::string& page) {
       TableData_Switch(context, slot, "access", kPageName, page);
     }},
    {"TableDataSwitch_Search",
     [](const RenderContext& context, ConnectionId slot, std::string& page) {
       TableDataSwitch_Search(context, slot, kPageName, page);
     }},
};

TEST_F(SwitchTables, SlotOutsideTheRecordsIsReportedAndThePageStays) {
  for (const auto& procedure : kProcedures) {
    const std::string start = "1\tmodHtml_" + procedure.name + "\t";
    for (const int slot : {0, 21, -1}) {
      SCOPED_TRACE(procedure.name + " of slot " + std::to_string(slot));
      house_.installation.Write("Debug/AppEventWeb.txt", "");
      std::string page = "<!-- before -->";
      procedure.print(house_.render, static_cast<ConnectionId>(slot), page);
      EXPECT_EQ("<!-- before -->", page.substr(0, 15));
      ASSERT_EQ(1u, house_.Events().size());
      EXPECT_EQ(start, house_.Events()[0].substr(0, start.size()));
    }
  }
}

}  // namespace
}  // namespace quillon
