// The disk tables and their band, compared whole with stored pieces of page. The links in the heads
// are in disk_table_heads_test.
#include <limits>

#include "render/disk_tables_fixture.h"

namespace quillon {
namespace {

class DiskRows : public DiskTables {
 protected:
  // Expects both tables to hold the stored rows of these numbers and nothing else.
  void ExpectRows(std::initializer_list<int> numbers) {
    std::string listed;
    std::string found;
    for (const int number : numbers) {
      listed += StoredRow("disk_rows.html", number);
      found += StoredRow("disk_search_rows.html", number);
    }
    EXPECT_EQ(StoredTop10(listed), Top10());
    EXPECT_EQ(StoredSearch(found), Search());
  }

  // The links of the devices to their charts, of a list and of a search.
  Names ListLinks(std::string_view pageName) {
    return Between(Top10("windows", "DESC", pageName), "<a href=histdisk45-", ">");
  }
  Names SearchLinks() { return Between(Search(), "<a href=histdisksearch45-", ">"); }
};

TEST_F(DiskRows, BandIsThatOfTheSwitchesWithTheTextsOfTheDisks) {
  EXPECT_EQ(StoredPiece("switch_band.html"), Band());
}

TEST_F(DiskRows, BandPrintsItsTextsAsTheyAre) {
  for (const std::string text : {"", "n/a", "O'Neil & \"<b>K\xFC", "\r\n"}) {
    Table().TableReport = text + "/1";
    Table().TableCriteria = text + "/2";
    Table().TableHead = text;
    std::string expected = Replaced(StoredPiece("switch_band.html"), "Access ports", text + "/1");
    expected = Replaced(expected, "10 (214)", text + "/2");
    EXPECT_EQ(Replaced(expected, "Volume in", text), Band());
  }
}

TEST_F(DiskRows, TenRowsAreAWholeTable) {
  EXPECT_EQ(StoredTop10(StoredPiece("disk_rows.html")), Top10());
  EXPECT_EQ(StoredSearch(StoredPiece("disk_search_rows.html")), Search());
}

TEST_F(DiskRows, TableWithoutRowsHasItsHeadAlone) {
  EmptyRows({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  ExpectRows({});
}

TEST_F(DiskRows, RowWithRecNo0PrintsNothingAndTheOthersKeepOddAndEven) {
  EmptyRows({3, 6, 7});
  ExpectRows({1, 2, 4, 5, 8, 9, 10});
}

TEST_F(DiskRows, LastRowAloneIsEven) {
  EmptyRows({1, 2, 3, 4, 5, 6, 7, 8, 9});
  ExpectRows({10});
}

TEST_F(DiskRows, RowWithANegativeRecNoIsNotEmpty) {
  EmptyRows({1, 2, 3, 5, 6, 7, 8, 9, 10});
  Row(4).recNo = -1;
  EXPECT_EQ(StoredTop10(Replaced(StoredRow("disk_rows.html", 4), "45-1004-", "45--1-")), Top10());
  Row(4).recNo = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(
      StoredSearch(Replaced(StoredRow("disk_search_rows.html", 4), "45-1004-", "45-2147483647-")),
      Search());
}

TEST_F(DiskRows, SlashesAndColonsOfAStorageAreUnderscoresInItsLinkAlone) {
  const struct {
    std::string storage;
    std::string word;  // in the link
  } rows[] = {
      {"/var/log", "_var_log"},
      {"C:\\", "C_\\"},
      {"/", "_"},
      {"::/:", "____"},
      {"", ""},
      {"D:\\ Label:S\xFC\x64  Serial Number 1a2b", "D_\\ Label_S\xFC\x64  Serial Number 1a2b"},
      {" /mnt/my disk ", " _mnt_my disk "},
      {"\\\\host\\share", "\\\\host\\share"},
      {"O'Neil & \"Co\"", "O'Neil & \"Co\""},
      {"a-b.htm", "a-b.htm"},
      {"physical", "physical"},
      {"mem", "mem"},
  };
  EmptyRows({2, 3, 4, 5, 6, 7, 8, 9, 10});
  for (const auto& row : rows) {
    Row(1).storDescr = row.storage;
    std::string listed =
        Replaced(StoredRow("disk_rows.html", 1), "1001-Storage-1--", "1001-" + row.word + "-");
    EXPECT_EQ(StoredTop10(Replaced(listed, ">Storage-1-<", ">" + row.storage + "<")), Top10());
    std::string found = Replaced(StoredRow("disk_search_rows.html", 1), "1001-Storage-1--",
                                 "1001-" + row.word + "-");
    EXPECT_EQ(StoredSearch(Replaced(found, ">Storage-1-<", ">" + row.storage + "<")), Search());
  }
}

TEST_F(DiskRows, ListIsOfMemoryByTheNameOfItsPage) {
  const struct {
    std::string pageName;
    bool memory;
  } rows[] = {
      {"disk-physical-top10-usedpercent-desc.htm", true},
      {"disk-virtual-top10-trend30d-asc.htm", true},
      {"physical", true},
      {"disk-unix-top10-usedpercent-desc.htm?virtually", true},
      {"disk-windows-top10-usedpercent-desc.htm", false},
      {"disk-unix-top10-freebytes-asc.htm", false},
      {"disk-Physical-top10-usedpercent-desc.htm", false},
      {"disk-VIRTUAL-top10-usedpercent-desc.htm", false},
      {"disk-mem-top10-usedpercent-desc.htm", false},
      {"", false},
  };
  Row(1).storDescr = "Physical";
  Row(2).storDescr = "Virtual";
  Row(3).storDescr = "/var";
  EmptyRows({4, 5, 6, 7, 8, 9, 10});
  for (const auto& row : rows) {
    const Names words =
        row.memory ? Names{"mem", "mem", "mem"} : Names{"Physical", "Virtual", "_var"};
    EXPECT_EQ(
        (Names{"1001-" + words[0] + "-" + row.pageName, "1002-" + words[1] + "-" + row.pageName,
               "1003-" + words[2] + "-" + row.pageName}),
        ListLinks(row.pageName));
  }
}

TEST_F(DiskRows, KindOfTheReportDoesNotMakeItsRowsMemory) {
  for (const std::string kind : {"physical", "virtual"}) {
    EXPECT_EQ(Whole(HeadOf(kind), StoredPiece("disk_rows.html")), Top10(kind)) << kind;
  }
}

TEST_F(DiskRows, RowOfASearchIsMemoryByItsOwnName) {
  const std::string storages[] = {"Physical",  "physical", "Virtual", "VIRTUAL",
                                  "Physical ", " Virtual", "/var",    "Physical Memory",
                                  "Virtual/1", "C:"};
  for (int number = 1; number <= 10; ++number) Row(number).storDescr = storages[number - 1];
  EXPECT_EQ((Names{"1001-mem-disk-search-20.htm", "1002-physical-disk-search-20.htm",
                   "1003-mem-disk-search-20.htm", "1004-VIRTUAL-disk-search-20.htm",
                   "1005-Physical -disk-search-20.htm", "1006- Virtual-disk-search-20.htm",
                   "1007-_var-disk-search-20.htm", "1008-Physical Memory-disk-search-20.htm",
                   "1009-Virtual_1-disk-search-20.htm", "1010-C_-disk-search-20.htm"}),
            SearchLinks());
  Names printed = Between(Search(), "<td width='130px' style='text-align:left'>", "</td>");
  EXPECT_EQ(Names(std::begin(storages), std::end(storages)), printed);
}

TEST_F(DiskRows, PageNameRidesInTheLinksOfAListAsItIs) {
  const std::string pageName = "disk-a/b:c-top10-usedpercent-'d'.htm?e=\xFC&\"f\"";
  EXPECT_EQ(StoredTop10(Replaced(StoredPiece("disk_rows.html"), kPageName, pageName)),
            Top10("windows", "DESC", pageName));
}

TEST_F(DiskRows, AwkwardTextsArePrintedAsTheyAre) {
  for (const std::string text : {"O'Neil", "<b>R&D</b>", "\"x\"", "K\xFC\x63he \xE9\xFF", " a  b ",
                                 "&nbsp;", "", "\r\n", "-", "-5 %", "5", "+"}) {
    SCOPED_TRACE(text);
    Row(2).device = text;
    Row(2).totalM = text + "1";
    Row(2).freeM = text + "2";
    Row(2).usedM = text + "3";
    Row(2).usedProc = text + "4";
    Row(2).trend14d = text + "5";
    Row(2).trend30d = text + "6";
    const auto changed = [&](std::string rows) {
      rows = Replaced(rows, "Device-2-", text);
      rows = Replaced(rows, "Total-2-", text + "1");
      rows = Replaced(rows, "Free-2-", text + "2");
      rows = Replaced(rows, "Used-2-", text + "3");
      rows = Replaced(rows, "Share-2-", text + "4");
      rows = Replaced(rows, "Days14-2-", text + "5");
      return Replaced(rows, "Days30-2-", text + "6");
    };
    EXPECT_EQ(StoredTop10(changed(StoredPiece("disk_rows.html"))), Top10());
    EXPECT_EQ(StoredSearch(changed(StoredPiece("disk_search_rows.html"))), Search());
  }
}

TEST_F(DiskRows, SearchTellsTheNumberOfItsSlotInItsLinks) {
  for (const int slot : {1, 7, 15}) {
    const auto id = static_cast<ConnectionId>(slot);
    house_.records.DiskTableRep[slot].rows[1] = NumberedRow(1);
    EXPECT_EQ(StoredSearch(Replaced(StoredRow("disk_search_rows.html", 1), "-search-20.htm",
                                    "-search-" + std::to_string(slot) + ".htm")),
              Search(id));
    std::string page;
    TableData_Disk(house_.render, id, "windows", "DESC", kPageName, page);
    EXPECT_EQ(StoredTop10(StoredRow("disk_rows.html", 1)), page);
  }
}

TEST_F(DiskRows, PiecesAreAppendedBehindWhatIsThere) {
  std::string page = "<!-- before -->";
  TableHeader_Disk(house_.render, kSlot, page);
  TableData_Disk(house_.render, kSlot, "windows", "DESC", kPageName, page);
  TableData_DiskSearch(house_.render, kSlot, page);
  EXPECT_EQ("<!-- before -->" + Band() + Top10() + Search(), page);
  EXPECT_TRUE(house_.Events().empty());
}

// The tables print their heads before they look into the record.
TEST_F(DiskRows, SlotOutsideTheRecordsIsReportedAndThePageKeepsWhatItHad) {
  const struct {
    std::string name;
    void (*print)(const RenderContext& context, ConnectionId slot, std::string& page);
    std::string head;
  } procedures[] = {
      {"TableHeader_Disk", TableHeader_Disk, ""},
      {"TableData_Disk",
       [](const RenderContext& context, ConnectionId slot, std::string& page) {
         TableData_Disk(context, slot, "windows", "DESC", kPageName, page);
       },
       StoredPiece("disk_top10_head.html")},
      {"TableData_DiskSearch", TableData_DiskSearch, StoredPiece("disk_search_head.html")},
  };
  for (const auto& procedure : procedures) {
    const std::string start = "1\tmodHtml_" + procedure.name + "\t";
    for (const int slot : {0, 21, -1}) {
      SCOPED_TRACE(procedure.name + " of slot " + std::to_string(slot));
      house_.ForgetEvents();
      std::string page = "<!-- before -->";
      procedure.print(house_.render, static_cast<ConnectionId>(slot), page);
      const std::string kept = "<!-- before -->" + procedure.head;
      EXPECT_EQ(kept, page.substr(0, kept.size()));
      EXPECT_EQ(std::string::npos, page.find("  <tr class=", kept.size()));
      ASSERT_EQ(1u, house_.Events().size());
      EXPECT_EQ(start, house_.Events()[0].substr(0, start.size()));
    }
  }
}

}  // namespace
}  // namespace quillon
