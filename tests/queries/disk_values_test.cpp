// The texts of a disk's row, column by column: sizes, used share, trends, names.
#include "queries/disk_fixture.h"
#include "queries/figure_cases.h"

namespace quillon {
namespace {

class DiskValuesTest : public DiskTest {
 protected:
  // The row of a single disk of these figures.
  const DiskTableRow& Row(const Columns& figures) {
    ClearDisks();
    AddDisk(figures);
    return Top10().rows[1];
  }

  // Expects the texts that figures give in each of these columns.
  void ExpectTexts(const Lines& columns, const std::vector<FigureText>& cases) {
    for (const DiskColumn& column : DiskColumnsInOrder()) {
      if (std::find(columns.begin(), columns.end(), column.name) == columns.end()) continue;
      for (const FigureText& row : cases) {
        EXPECT_EQ(Row({{column.name, row.stored}}).*column.text, row.text)
            << column.name << " " << row.stored;
      }
    }
  }

  const Lines kSizes = {"TotalM", "FreeM", "UsedM"};
  const Lines kTrends = {"Trend14d", "Trend30d"};
};

TEST_F(DiskValuesTest, EachColumnHasItsText) {
  const Columns figures = {{"RecNo", "2147483647"}, {"DevName", "'Web'"}, {"StorDescr", "'/var'"},
                           {"TotalM", "1"},         {"FreeM", "2"},       {"UsedM", "3"},
                           {"UsedProc", "4"},       {"Trend14d", "5"},    {"Trend30d", "6"}};
  AddDisk(figures);
  for (const Query query : kBoth) {
    FillRecord();
    const DiskTableRow& row = Run(query).rows[1];
    EXPECT_EQ(row.recNo, 2147483647) << Procedure(query);
    EXPECT_EQ(Texts(row), (Lines{"Web", "/var", "1 M", "2 M", "3 M", "4 %", "+5 %", "+6 %"}))
        << Procedure(query);
  }
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, SizeIsInItsLongForm) {
  ExpectTexts(kSizes, {
                          {"-1", "-"},
                          {"0", "0"},
                          {"1", "1 M"},
                          {"999", "999 M"},
                          {"1000", "1 000 M"},
                          {"1234", "1 234 M"},
                          {"9999", "9 999 M"},
                          {"10000", "10 G"},
                          {"12499", "12 G"},
                          {"12500", "13 G"},
                          {"99499", "99 G"},
                          {"99500", "100 G"},
                          {"123499", "123 G"},
                          {"123500", "124 G"},
                          {"999499", "999 G"},
                          {"999500", "1 000 G"},
                          {"1234499", "1 234 G"},
                          {"1234500", "1 235 G"},
                          {"9999499", "9 999 G"},
                          {"9999500", "10 000 G"},
                      });
  ExpectNoEvent();
}

// A single shows seven digits and zeros behind them, and the third digit from the end decides.
TEST_F(DiskValuesTest, SizeOfMoreThanSevenDigitsIsRoundedAsTheSingleShowsIt) {
  ExpectTexts(kSizes, {
                          {"12344678", "13 T"},            // 12344680
                          {"12344400", "12 T"},            // 12344400
                          {"12999400", "12 T"},            // 12999400
                          {"12345499", "13 T"},            // 12345500
                          {"99000500", "100 T"},           // 99000500
                          {"123456400", "123 T"},          // 123456400
                          {"123456500", "124 T"},          // 123456500
                          {"1234567890", "1 234 T"},       // 1234568000
                          {"99999990000", "99 P"},         // 99999990000
                          {"123456789012", "123 P"},       // 123456800000
                          {"1234567890123", "1 234 P"},    // 1234568000000
                          {"12345678901234", "12 345 P"},  // 12345680000000
                          {"1e15", "1000 000 P"},
                      });
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, SizeWithAFractionIsFirstTheNearestWholeNumber) {
  ExpectTexts(kSizes, {
                          {"0.4", "0"},          {"0.5", "1 M"},         {"1.5", "2 M"},
                          {"2.5", "3 M"},        {"2.49", "2 M"},        {"999.4", "999 M"},
                          {"999.5", "1 000 M"},  {"9999.4", "9 999 M"},  {"9999.5", "10 G"},
                          {"12499.4", "12 G"},   {"12499.5", "13 G"},    {"123499.4", "123 G"},
                          {"123499.5", "124 G"}, {"123456.75", "123 G"}, {"-0.4", "0"},
                          {"-0.5", "-"},         {"-1.4", "-"},          {"-1.5", "0"},
                          {"-2", "0"},           {"-99", "0"},
                      });
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, SizeThatIsAShortTextIsZero) {
  ExpectTexts(kSizes, {{"''", "0"}, {"'-'", "0"}, {"'n/a'", "0"}});
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, SizeThatIsALongTextStandsAndIsReportedByTheConversion) {
  for (const Query query : kBoth) {
    house.ForgetEvents();
    ClearDisks();
    AddDisk({{"FreeM", "'unknown'"}});
    const DiskTableRow& row = Run(query).rows[1];
    EXPECT_EQ(Texts(row),
              (Lines{"Files", "C:", "100 M", "unknown", "40 M", "40 %", "+77 %", "+88 %"}));
    EXPECT_EQ(Record().TableCriteria, "1 (1)");
    EXPECT_EQ(Failures("modQuillonWeb_ConvHCBytes").size(), 1u) << Procedure(query);
  }
}

TEST_F(DiskValuesTest, UsedShareStandsAsItIsStored) {
  ExpectTexts({"UsedProc"}, {
                                {"0", "0 %"},
                                {"40", "40 %"},
                                {"100", "100 %"},
                                {"1234567", "1234567 %"},
                                {"-1", "-1 %"},
                                {"99.5", "99.5 %"},
                                {"0.25", "0.25 %"},
                                {"33.3333333333333", "33.3333333333333 %"},
                                {"''", " %"},
                                {"'n/a'", "n/a %"},
                                {"'zwölf'", "zw\xF6lf %"},
                            });
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, OnlyATrendAboveZeroHasAPlusSign) {
  ExpectTexts(kTrends, {
                           {"0", "0 %"},
                           {"0.0", "0 %"},
                           {"1", "+1 %"},
                           {"0.4", "+0.4 %"},
                           {"0.001", "+0.001 %"},
                           {"-0.5", "-0.5 %"},
                           {"-1", "-1 %"},
                           {"-12.25", "-12.25 %"},
                           {"12.3456789", "+12.3456789 %"},
                           {"1234", "+1234 %"},
                       });
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, EachTrendHasItsOwnSign) {
  const DiskTableRow& row = Row({{"Trend14d", "3"}, {"Trend30d", "-3"}});
  EXPECT_EQ(row.trend14d, "+3 %");
  EXPECT_EQ(row.trend30d, "-3 %");
  const DiskTableRow& other = Row({{"Trend14d", "-3"}, {"Trend30d", "0.5"}});
  EXPECT_EQ(other.trend14d, "-3 %");
  EXPECT_EQ(other.trend30d, "+0.5 %");
}

TEST_F(DiskValuesTest, AwkwardNamesStandUnchanged) {
  const std::string longName(300, 'x');
  struct Case {
    std::string stored;
    std::string text;
  };
  const Case cases[] = {
      {"'O''Neil''s \"files\"'", "O'Neil's \"files\""},
      {"' <b>&amp;%_*?# '", " <b>&amp;%_*?# "},
      {"'[a-f]\\'", "[a-f]\\"},
      {"''", ""},
      {"'  '", "  "},
      {"7", "7"},
      {"'" + longName + "'", longName},
  };
  for (const Case& row : cases) {
    ClearDisks();
    AddDisk({{"DevName", row.stored}, {"StorDescr", row.stored}});
    for (const Query query : kBoth) {
      FillRecord();
      const DiskTableRow& disk = Run(query).rows[1];
      EXPECT_EQ(disk.device, row.text) << row.stored << " " << Procedure(query);
      EXPECT_EQ(disk.storDescr, row.text) << row.stored << " " << Procedure(query);
    }
  }
  ExpectNoEvent();
}

TEST_F(DiskValuesTest, NamesAreBytesOfThePagesCharset) {
  struct Case {
    std::string charSet;
    std::string device;
    std::string storDescr;
  };
  const Case cases[] = {{"ISO-8859-1", "Z\xFCrich", "/?????? 5 ?"},
                        {"UTF-8", "Zürich", "/Москва 5 €"},
                        {"windows-1251", "Z?rich", "/\xCC\xEE\xF1\xEA\xE2\xE0 5 \x88"}};
  AddDisk({{"DevName", "'Zürich'"}, {"StorDescr", "'/Москва 5 €'"}});
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    for (const Query query : kBoth) {
      const DiskTableRow& disk = Run(query).rows[1];
      EXPECT_EQ(disk.device, row.device) << row.charSet << " " << Procedure(query);
      EXPECT_EQ(disk.storDescr, row.storDescr) << row.charSet << " " << Procedure(query);
    }
  }
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
