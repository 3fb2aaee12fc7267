// A table of statistics as CSV, and back again.
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "import/schema/creation.h"
#include "import/schema/sqlite_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/csv/columns.h"
#include "quillondb/export_table.h"
#include "quillondb/load_table.h"
#include "support/sql_rows.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

class QuillondbExport : public testing::Test {
 protected:
  QuillondbExport() { CreateDatabases(home_.path()); }

  std::int64_t Export(const std::string& table) const {
    return ExportTable(home_.path(), table, csvPath_);
  }

  std::string Exported(const std::string& table) const {
    Export(table);
    return ReadFileBytes(csvPath_);
  }

  std::string Refused(const std::string& table) const {
    try {
      Export(table);
    } catch (const ConversionFailure& failure) {
      return failure.what();
    }
    return "nothing was refused";
  }

  std::vector<SqlRow> Sql(const std::string& sql) const { return SqlRows(reports_, sql); }

  // All that is stored, in all digits and with its types.
  std::vector<SqlRow> Stored(const std::string& table) const {
    std::vector<std::string> values;
    for (const InputColumn& column : FindInputTable(table).columns) {
      values.push_back(fmt::format("typeof({0}) || ' ' || quote({0})", column.name));
    }
    return Sql(fmt::format("SELECT {} FROM {} ORDER BY rowid", fmt::join(values, ", "), table));
  }

  TemporaryFolder home_;
  std::string reports_ = home_.path() + "/Reports.mdb";
  std::string csvPath_ = home_.path() + "/rows.csv";
};

TEST_F(QuillondbExport, TheFileHoldsTheColumnsAndTheRowsInStoredOrder) {
  Sql("INSERT INTO MAC VALUES (9, 4, '02 1B 2C 3D 4E 5F', '', '2024-05-01 03:00:00'),"
      " (7, -1, '', 'a,\"b\"', '2024-05-01')");
  EXPECT_EQ(Exported("mac"),
            "RecNo,IfIndex,MacAddr,IpAddr,LastSeen\n"
            "9,4,02 1B 2C 3D 4E 5F,,2024-05-01 03:00:00\n"
            "7,-1,,\"a,\"\"b\"\"\",2024-05-01 00:00:00\n");
}

TEST_F(QuillondbExport, AnEmptyTableIsAHeader) {
  EXPECT_EQ(Export("MAC"), 0);
  EXPECT_EQ(ReadFileBytes(csvPath_), "RecNo,IfIndex,MacAddr,IpAddr,LastSeen\n");
}

TEST_F(QuillondbExport, AHyphenIsStandardOutput) {
  Sql("INSERT INTO MAC VALUES (9, 4, '02 1B 2C 3D 4E 5F', '', '2024-05-01 03:00:00')");
  testing::internal::CaptureStdout();
  EXPECT_EQ(ExportTable(home_.path(), "MAC", "-"), 1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "RecNo,IfIndex,MacAddr,IpAddr,LastSeen\n9,4,02 1B 2C 3D 4E 5F,,2024-05-01 03:00:00\n");
}

TEST_F(QuillondbExport, WhatALoadCouldNotBringBackIsRefused) {
  const std::pair<const char*, const char*> kCases[] = {
      {"RecNo = NULL", "RecNo: the field is empty; it has to hold a value"},
      {"RecNo = 0", "RecNo: '0' is no whole number from 1 to 2147483647"},
      {"IfIndex = 5000000000",
       "IfIndex: '5000000000' is no whole number from -2147483648 to 2147483647"},
      {"VlanID = NULL", "VlanID: null would come back as -1; write the one that is meant"},
      {"IfAlias = NULL", "IfAlias: null would come back as ''; write the one that is meant"},
      {"IfAlias = x'00ff'", "IfAlias: bytes that are no text; write a text"},
      {"IfAlias = CAST(x'e9' AS TEXT)", "IfAlias: '?' is no UTF-8; write it in that charset"},
      {"IsTrunk = NULL", "IsTrunk: the field is empty; it has to hold a value"},
      {"IsTrunk = -1", "IsTrunk: -1 would come back as 1; write the one that is meant"},
      {"IsTrunk = 'true'", "IsTrunk: 'true' would come back as 1; write the one that is meant"},
      {"InOctetsDate = '1.5.2024'",
       "InOctetsDate: '1.5.2024' is no date; write YYYY-MM-DD HH:MM:SS"},
      {"InOctetsDate = ''",
       "InOctetsDate: '' would come back as null; write the one that is meant"},
      {"InErrorsTot24H = 9e999",
       "InErrorsTot24H: 'inf' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H = 'many'",
       "InErrorsTot24H: 'many' is no number; write one with a point, as 12.5"},
  };
  for (const auto& [change, refusal] : kCases) {
    Sql("DELETE FROM VLAN; INSERT INTO VLAN VALUES (7, 'a', '10.1.0.1', 1, 4, 'Gi0/4', '1000', '',"
        " 'up', 'up', 0, NULL, NULL, 1, 2, 3, 4, 5, 6)");
    EXPECT_EQ(Refused("VLAN"), "nothing was refused");
    Sql(fmt::format("UPDATE VLAN SET {}", change));
    EXPECT_EQ(Refused("VLAN"),
              "VLAN is not exported; these fields have to be put right before:\n"
              "Reports.mdb, VLAN, rowid 1, " +
                  std::string(refusal));
  }
}

TEST_F(QuillondbExport, AnAddressThatNoSearchFindsIsRefused) {
  Sql("INSERT INTO MAC VALUES (9, 4, '02:1B:2C:3D:4E:5F', '', '2024-05-01 03:00:00')");
  EXPECT_NE(Refused("MAC").find("rowid 1, MacAddr: '02:1B:2C:3D:4E:5F' is no hardware address"),
            std::string::npos);
}

TEST_F(QuillondbExport, NeedsCreatedDatabases) {
  const TemporaryFolder empty;
  try {
    ExportTable(empty.path(), "MAC", csvPath_);
    ADD_FAILURE() << "a database was found";
  } catch (const FileFailure& failure) {
    EXPECT_NE(std::string(failure.what()).find("quillondb create"), std::string::npos);
  }
}

TEST_F(QuillondbExport, ARefusalLeavesTheOldFile) {
  const std::string old = Exported("MAC");
  Sql("INSERT INTO MAC (RecNo) VALUES (9)");
  EXPECT_NE(Refused("MAC"), "nothing was refused");
  EXPECT_EQ(ReadFileBytes(csvPath_), old);
}

TEST_F(QuillondbExport, TheFirstTwentyFieldsThatAreWrongAreTold) {
  Sql("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 100)"
      " INSERT INTO MAC SELECT 0, 4, '', '', '2024-05-01' FROM n");
  const std::string refusal = Refused("MAC");
  EXPECT_NE(refusal.find("rowid 20, RecNo"), std::string::npos) << refusal;
  EXPECT_EQ(refusal.find("rowid 21, RecNo"), std::string::npos) << refusal;
  EXPECT_TRUE(refusal.ends_with("\n... and more")) << refusal;
}

// Values that columns take, drawn from those that are the hardest on the way.
class AwkwardValues {
 public:
  void Fill(const std::string& reports, const InputTable& table, int rows) {
    const SqliteFile file = SqliteFile::Open(reports);
    const std::vector<std::string> places(table.columns.size(), "?");
    SqliteTransaction transaction(file);
    SqliteStatement insert = file.Prepare(
        fmt::format("INSERT INTO {} VALUES ({})", table.name, fmt::join(places, ", ")));
    for (int row = 0; row < rows; ++row) {
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        Bind(insert, static_cast<int>(i) + 1, table.columns[i]);
      }
      insert.Finish();
    }
    transaction.Commit();
  }

 private:
  template <typename Values>
  auto OneOf(const Values& values) {
    return values[random_() % std::size(values)];
  }

  std::string Text() {
    constexpr const char* kPieces[] = {
        ",", "\"",           "\"\"", "\r",     "\n", "\r\n", " ",  ";",          "a",      "NULL",
        "0", "\xEF\xBB\xBF", "\x01", "\u00E9", "'",  "\\",   "\t", "\U0001F600", "\uFFFE", "-"};
    std::string text;
    for (std::size_t pieces = random_() % 6; pieces > 0; --pieces) text += OneOf(kPieces);
    return text;
  }

  double NumberWithin(const NumberRange& range) {
    constexpr double kNumbers[] = {0.1,    1.0 / 3,    -12.5, 5e-324,
                                   1.7e38, 2147483647, 1e20,  0.30000000000000004};
    double number = OneOf(kNumbers);
    while (number > range.most) number = OneOf(kNumbers);
    return number;
  }

  void Bind(SqliteStatement& insert, int position, const InputColumn& column) {
    constexpr const char* kDates[] = {"2024-02-29 23:59:59", "1899-12-30 00:00:00",
                                      "9999-12-31 00:00:01"};
    constexpr const char* kAddresses[] = {"", "02 1B 2C 3D 4E 5F", "aa bb cc dd ee ff"};
    constexpr std::int64_t kWholes[] = {1, 2, 7, 4096, 2147483647};
    const bool isNull = column.ifEmpty == FieldValue() && random_() % 3 == 0;
    if (isNull) return insert.BindNull(position);
    switch (column.kind) {
      case InputColumn::Kind::kText:
        return insert.Bind(position, Text());
      case InputColumn::Kind::kDate:
        return insert.Bind(position, std::string_view(OneOf(kDates)));
      case InputColumn::Kind::kTruth:
        return insert.Bind(position, static_cast<std::int64_t>(random_() % 2));
      case InputColumn::Kind::kWhole:
        return insert.Bind(position, OneOf(kWholes));
      case InputColumn::Kind::kNumber:
        return insert.Bind(position, NumberWithin(column.range));
      case InputColumn::Kind::kMacAddress:
        return insert.Bind(position, std::string_view(OneOf(kAddresses)));
    }
  }

  std::mt19937 random_{20240501};  // NOLINT(cert-msc51-cpp): the same rows each time
};

TEST_F(QuillondbExport, ALoadBringsBackExactlyWhatWasExported) {
  constexpr int kRows = 2000;
  AwkwardValues values;
  for (const std::string& table : InputTableNames()) {
    values.Fill(reports_, FindInputTable(table), kRows);
    const std::vector<SqlRow> before = Stored(table);
    ASSERT_EQ(before.size(), std::size_t{kRows});
    EXPECT_EQ(Export(table), kRows);
    Sql("DELETE FROM " + table);
    EXPECT_EQ(LoadTable(home_.path(), table, csvPath_), kRows);
    EXPECT_TRUE(Stored(table) == before) << table;
  }
}

}  // namespace
}  // namespace quillon
