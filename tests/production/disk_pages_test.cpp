// The pages of disks and memories, each by itself: 48 lists without charts, and the summary.
#include "production/disk_pages.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "production/auto_create_fixture.h"

namespace quillon {
namespace {

class DiskPages : public AutoCreateTest {
 protected:
  void List(const DiskClass& diskClass, const ListOrder& column, const SortDirection& direction) {
    AutoCreateTop10_Disk(production, diskClass.diskType, column.field, direction.order,
                         Expected::DiskListFile(diskClass.name, column.name, direction.name));
  }
  // The list of Windows disks by their size, the smallest first.
  void ListOfSizes() { List(kDiskClasses[2], kDiskColumns[0], kDirections[0]); }
  static ExpectedProduction& AddListOfSizes(ExpectedProduction& expected) {
    expected.DiskList(kDiskClasses[2], kDiskColumns[0], kDirections[0]);
    return expected;
  }
  const std::string kFile = "disk-windows-top10-totalbytes-asc.htm";

  // For each class ten storages, with figures by which every column sorts them in another way.
  void AddStoragesOfAllClasses() const {
    AddStorageDays();
    for (const DiskClass& diskClass : kDiskClasses) {
      for (int n = 0; n < 10; ++n) {
        Columns storage = {{"RecNo", std::to_string(diskClass.diskType * 10 + n)},
                           {"DevName", "'" + diskClass.name + std::to_string(n) + "'"},
                           {"Type", std::to_string(diskClass.diskType)}};
        int factor = 3;
        for (const ListOrder& column : kDiskColumns) {
          storage[column.field] = std::to_string((n * factor + 1) % 11);
          ++factor;
        }
        AddStorages({storage});
      }
    }
  }
};

TEST_F(DiskPages, EachListIsStoredUnderItsName) {
  AddStoragesOfAllClasses();
  std::set<std::string> tables;
  for (const DiskClass& diskClass : kDiskClasses) {
    for (const ListOrder& column : kDiskColumns) {
      for (const SortDirection& direction : kDirections) {
        List(diskClass, column, direction);
        ExpectedProduction expected(site);
        expected.DiskList(diskClass, column, direction);
        const StoredFile& file = expected.Files()[0];
        ExpectBytes(file.name, file.bytes);
        tables.insert(Cached(file.name));
      }
    }
  }
  EXPECT_EQ(CacheFiles().size(), 48u);
  EXPECT_EQ(tables.size(), 48u);
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(DiskPages, ListOfANumberThatIsNoClassHasNoRows) {
  AddStoragesOfAllClasses();
  AutoCreateTop10_Disk(production, 25, "TotalM", "ASC", "disk-none.htm");
  EXPECT_EQ(CacheFiles(), Lines{"disk-none.htm"});
  EXPECT_TRUE(Holds(Cached("disk-none.htm"), "<table"));
  const std::string linkOfARow = "histdisk45";
  EXPECT_FALSE(Holds(Cached("disk-none.htm"), linkOfARow));
  ListOfSizes();
  EXPECT_TRUE(Holds(Cached(kFile), linkOfARow));
  EXPECT_EQ(Failures(), Lines{});
}

// Which device stands first tells class, column and direction.
TEST_F(DiskPages, AListIsThatOfItsClassColumnAndDirection) {
  AddStorageDays();
  AddStorages({{{"RecNo", "1"}, {"DevName", "'small'"}, {"TotalM", "10"}, {"FreeM", "9"}},
               {{"RecNo", "2"}, {"DevName", "'large'"}, {"TotalM", "20"}, {"FreeM", "8"}},
               {{"RecNo", "3"}, {"DevName", "'unix'"}, {"TotalM", "5"}, {"Type", "40"}}});
  const DiskClass& windows = kDiskClasses[2];
  const struct {
    std::size_t column;
    std::size_t direction;
    bool smallFirst;
  } kCases[] = {{0, 0, true}, {0, 1, false}, {1, 0, false}, {1, 1, true}};
  for (const auto& row : kCases) {
    List(windows, kDiskColumns[row.column], kDirections[row.direction]);
    const std::string page = Cached(Expected::DiskListFile(
        windows.name, kDiskColumns[row.column].name, kDirections[row.direction].name));
    ASSERT_TRUE(Holds(page, "small") && Holds(page, "large")) << row.column;
    EXPECT_EQ(page.find("small") < page.find("large"), row.smallFirst) << row.column;
    EXPECT_FALSE(Holds(page, ">unix<"));
  }
}

TEST_F(DiskPages, AListHasNoChartsAndNoWaits) {
  AddStoragesOfAllClasses();
  EXPECT_EQ(WaitOf([this] { ListOfSizes(); }), kNoWait);
  EXPECT_EQ(CacheFiles(), Lines{kFile});
}

TEST_F(DiskPages, TheRowsOfAnEarlierListAreForgotten) {
  AddStoragesOfAllClasses();
  ListOfSizes();
  History("DELETE FROM Disk_Day01 WHERE RecNo <> 301");
  ListOfSizes();
  ExpectedProduction expected(site);
  ExpectCache(AddListOfSizes(expected).Last());
  EXPECT_TRUE(Holds(Cached(kFile), "windows1"));
  EXPECT_FALSE(Holds(Cached(kFile), "windows2"));
}

TEST_F(DiskPages, RowsThatARequestLeftInTheSlotAreNotShown) {
  for (DiskTableRow& row : site.records.DiskTableRep[BackgroundSlot].rows) {
    row.recNo = 4711;
    row.device = "other";
  }
  ListOfSizes();
  EXPECT_FALSE(Holds(Cached(kFile), "other"));
  ExpectedProduction expected(site);
  ExpectCache(AddListOfSizes(expected).Last());
}

TEST_F(DiskPages, WithoutATableOfTheDayTheHeadsOfAnEarlierListStand) {
  AddStoragesOfAllClasses();
  List(kDiskClasses[3], kDiskColumns[5], kDirections[1]);
  ExpectedProduction expected(site);
  expected.DiskList(kDiskClasses[3], kDiskColumns[5], kDirections[1]);
  History("UPDATE Disk_HistCtrl SET StorageDate = '2024-04-01 03:10:00'");
  ListOfSizes();
  ExpectCache(AddListOfSizes(expected).Last());
  EXPECT_TRUE(Holds(Cached(kFile), "W67")) << "the head of the list before";
  EXPECT_FALSE(Holds(Cached(kFile), "windows1"));
}

TEST_F(DiskPages, AListThatFailsIsStoredWithAnEmptyTable) {
  AddStorageDays();
  History("DROP TABLE Disk_Day01");
  ListOfSizes();
  ExpectedProduction expected(site);
  ExpectCache(AddListOfSizes(expected).Last());
  EXPECT_EQ(Failures(), Lines{"modSelectSql_SqlTop10DiskStats"});
}

TEST_F(DiskPages, AListThatCannotBeStoredIsReported) {
  Block(kFile);
  ListOfSizes();
  EXPECT_EQ(NotStored(), Lines{kFile});
}

TEST_F(DiskPages, TheSummaryIsStoredUnderTheNameThatItIsGiven) {
  AddNetwork();
  for (const std::string file : {"disk-mem-summary.htm", "other.htm"}) {
    EXPECT_EQ(WaitOf([&] { AutoCreateSum_Disk(production, file); }), kSummaryWait);
    ExpectedProduction expected(site);
    expected.DiskSummary(file);
    ExpectBytes(file, expected.Last()[file]);
  }
  EXPECT_EQ(CacheFiles(), (Lines{"disk-mem-summary.htm", "other.htm"}));
  EXPECT_EQ(Cached("other.htm"), Cached("disk-mem-summary.htm"));
  for (const char* word : {"W76", "W77", "W78", "W79", "W82", "W83", "W84", "W85"}) {
    EXPECT_TRUE(Holds(Cached("other.htm"), word)) << word;
  }
  EXPECT_EQ(Failures(), Lines{});
}

TEST_F(DiskPages, TheSummaryWithoutSumsHasEmptyCharts) {
  AutoCreateSum_Disk(production, "disk-mem-summary.htm");
  ExpectedProduction expected(site);
  expected.DiskSummary();
  ExpectCache(expected.Last());
  const std::string empty = Cached("disk-mem-summary.htm");
  AddNetwork();
  AutoCreateSum_Disk(production, "disk-mem-summary.htm");
  EXPECT_NE(Cached("disk-mem-summary.htm"), empty);
}

}  // namespace
}  // namespace quillon
