// A table of statistics out of CSV.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "import/schema/creation.h"
#include "platform/failure.h"
#include "quillondb/load_table.h"
#include "support/other_writer.h"
#include "support/refusal.h"
#include "support/sql_rows.h"
#include "support/temporary_folder.h"
#include "tools/standard_descriptor.h"

namespace quillon {
namespace {

const std::string kMacHead = "RecNo,IfIndex,MacAddr,IpAddr,LastSeen\n";
const std::string kMacRow = "7,4,02 1B 2C 3D 4E 5F,10.1.0.9,2024-05-01 03:00:00\n";

class QuillondbLoad : public testing::Test {
 protected:
  QuillondbLoad() { CreateDatabases(home_.path()); }

  std::int64_t Load(const std::string& table, const std::string& csv) const {
    std::ofstream(csvPath_) << csv;
    return LoadTable(home_.path(), table, csvPath_);
  }

  // What is said of a file that is refused, without the path of its folder.
  std::string Refused(const std::string& table, const std::string& csv) const {
    try {
      Load(table, csv);
    } catch (const std::exception& failure) {
      return WithoutFolder(failure.what());
    }
    return "nothing was refused";
  }

  std::string WithoutFolder(std::string text) const {
    const std::string folder = home_.path() + "/";
    for (std::size_t place = 0; (place = text.find(folder)) != std::string::npos;) {
      text.erase(place, folder.size());
    }
    return text;
  }

  std::vector<SqlRow> Sql(const std::string& sql) const { return SqlRows(reports_, sql); }

  TemporaryFolder home_;
  std::string reports_ = home_.path() + "/Reports.mdb";
  std::string csvPath_ = home_.path() + "/rows.csv";
};

TEST_F(QuillondbLoad, TheRowsOfATableAreReplaced) {
  EXPECT_EQ(Load("MAC", kMacHead + kMacRow + kMacRow), 2);
  EXPECT_EQ(Load("MAC", kMacHead + "8,5,02 00 00 00 00 01,,2024-05-02\n"), 1);
  EXPECT_EQ(Sql("SELECT * FROM MAC"),
            (std::vector<SqlRow>{{"8", "5", "02 00 00 00 00 01", "", "2024-05-02 00:00:00"}}));
}

TEST_F(QuillondbLoad, OtherTablesStayAsTheyAre) {
  Load("MAC", kMacHead + kMacRow);
  Sql("INSERT INTO VLAN (RecNo) VALUES (7)");
  Load("HostDiskInfo",
       "RecNo,DevName,StorDescr,FreeRawM,UsedRawM,UsedProc,UsedProc14Trend,UsedProc30Trend,"
       "LastUpdate\n9,srv,C:,10.5,20,65.6,,,\n");
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM MAC"), (std::vector<SqlRow>{{"1"}}));
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM VLAN"), (std::vector<SqlRow>{{"1"}}));
  EXPECT_EQ(Sql("SELECT * FROM HostDiskInfo"),
            (std::vector<SqlRow>{{"9", "srv", "C:", "10.5", "20", "65.6", "0", "0", "NULL"}}));
}

TEST_F(QuillondbLoad, ValuesAreStoredInTheTypesOfTheirColumns) {
  Load("VLAN",
       "RecNo,DevName,IpAddr,VlanID,IfIndex,IfDescr,IfSpeed,IfAlias,IfAdmin,IfOper,IsTrunk,"
       "InOctetsDate,LastUpdate,InHCOctetsMb24H,OutHCOctetsMb24H,InBroadCastPpm24H,"
       "InMultiCastPpm24H,InErrorsTot24H,OutErrorsTot24H\n"
       "7,core-1,10.1.0.1,,4,Gi0/4,1000,\"to \"\"B\"\", floor 2\",up,up,yes,"
       "2024-05-01 03:00:00,,1200.5,,3,,0,12\n");
  EXPECT_EQ(
      Sql("SELECT RecNo, VlanID, IfSpeed, typeof(IfSpeed), IfAlias, IsTrunk, InOctetsDate,"
          " LastUpdate, InHCOctetsMb24H, OutHCOctetsMb24H, InMultiCastPpm24H,"
          " typeof(InErrorsTot24H) FROM VLAN"),
      (std::vector<SqlRow>{{"7", "-1", "1000", "text", "to \"B\", floor 2", "1",
                            "2024-05-01 03:00:00", "NULL", "1200.5", "-1", "-1", "integer"}}));
}

TEST_F(QuillondbLoad, ColumnsStandInAnyOrderAndCase) {
  Load("mac",
       "\xEF\xBB\xBFLASTSEEN,ipaddr,\"MacAddr\",recno,IfIndex\r\n"
       "2024-05-01 03:00:00,10.1.0.9,02 1B 2C 3D 4E 5F,7,4\r\n");
  EXPECT_EQ(
      Sql("SELECT RecNo, IfIndex, MacAddr, IpAddr, LastSeen FROM MAC"),
      (std::vector<SqlRow>{{"7", "4", "02 1B 2C 3D 4E 5F", "10.1.0.9", "2024-05-01 03:00:00"}}));
}

TEST_F(QuillondbLoad, RowsKeepTheOrderOfTheFile) {
  Load("MAC", kMacHead + "9,1,,b,2024-05-01\n7,1,,a,2024-05-01\n8,1,,c,2024-05-01\n");
  EXPECT_EQ(Sql("SELECT RecNo FROM MAC ORDER BY rowid"),
            (std::vector<SqlRow>{{"9"}, {"7"}, {"8"}}));
}

TEST_F(QuillondbLoad, AHeaderAloneEmptiesTheTable) {
  Load("MAC", kMacHead + kMacRow);
  EXPECT_EQ(Load("MAC", kMacHead), 0);
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM MAC"), (std::vector<SqlRow>{{"0"}}));
}

TEST_F(QuillondbLoad, AWrongHeaderIsToldColumnByColumn) {
  struct Case {
    const char* csv;
    const char* refusal;
  };
  const Case kCases[] = {
      {"",
       "rows.csv, line 1: columns are missing: RecNo, IfIndex, MacAddr, IpAddr, LastSeen; the"
       " names stand with commas between them"},
      {"RecNo,IfIndex,MacAddr,IpAddr\n",
       "rows.csv, line 1: a column is missing: LastSeen; the names stand with commas between them"},
      {"RecNo,IfIndex,MacAddr,IpAddr,LastSeen,Seen\n",
       "rows.csv, line 1: 'Seen' is no column of MAC"},
      {"RecNo,IfIndex,MacAddr,IpAddr,LastSeen,recno\n", "rows.csv, line 1: RecNo is named twice"},
      {"RecNo;IfIndex\n",
       "rows.csv, line 1: 'RecNo;IfIndex' is no column of MAC\n"
       "rows.csv, line 1: columns are missing: RecNo, IfIndex, MacAddr, IpAddr, LastSeen; the"
       " names stand with commas between them"},
  };
  Load("MAC", kMacHead + kMacRow);
  for (const auto& [csv, refusal] : kCases) {
    EXPECT_EQ(Refused("MAC", csv),
              "rows.csv is not loaded, and nothing was written:\n" + std::string(refusal))
        << csv;
  }
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM MAC"), (std::vector<SqlRow>{{"1"}}));
}

TEST_F(QuillondbLoad, WrongFieldsAreToldWithLineAndColumnAndNothingIsWritten) {
  Load("MAC", kMacHead + kMacRow);
  EXPECT_EQ(Refused("MAC", kMacHead + "8,1,,\"a\nb\",2024-05-01\n"
                                      "0,x,,c,1.5.2024\n"
                                      "9,1,d\n"
                                      "9,1,,e,2024-05-01\n"),
            "rows.csv is not loaded, and nothing was written:\n"
            "rows.csv, line 4, RecNo: '0' is no whole number from 1 to 2147483647\n"
            "rows.csv, line 4, IfIndex: 'x' is no whole number from -2147483648 to 2147483647\n"
            "rows.csv, line 4, LastSeen: '1.5.2024' is no date; write YYYY-MM-DD HH:MM:SS\n"
            "rows.csv, line 5: the number of fields is 3, and that of columns 5");
  EXPECT_EQ(Sql("SELECT RecNo FROM MAC"), (std::vector<SqlRow>{{"7"}}));
}

TEST_F(QuillondbLoad, ReadingEndsWhereTheTextBreaksTheRules) {
  EXPECT_EQ(Refused("MAC", kMacHead + "x,1,,a,2024-05-01\n8,1,,5\" disk,2024-05-01\n" + kMacRow),
            "rows.csv is not loaded, and nothing was written:\n"
            "rows.csv, line 2, RecNo: 'x' is no whole number from 1 to 2147483647\n"
            "rows.csv, line 3, IpAddr: a quote stands inside a field; put the field in quotes, and "
            "double those inside");
}

TEST_F(QuillondbLoad, FieldOfTheHeaderThatBreaksTheRulesIsCounted) {
  EXPECT_EQ(
      Refused("MAC", "RecNo,If\"Index\n"),
      "rows.csv is not loaded, and nothing was written:\n"
      "rows.csv, line 1, field 2: a quote stands inside a field; put the field in quotes, and "
      "double those inside");
}

TEST_F(QuillondbLoad, TheFirstTwentyMistakesAreTold) {
  std::string csv = kMacHead;
  for (int row = 0; row < 1000; ++row) csv += "0,1,,a,2024-05-01\n";
  const std::string refusal = Refused("MAC", csv);
  EXPECT_NE(refusal.find("line 21, RecNo"), std::string::npos) << refusal;
  EXPECT_TRUE(refusal.ends_with("\n... and more")) << refusal;
  EXPECT_EQ(refusal.find("line 22, RecNo"), std::string::npos) << refusal;
}

TEST_F(QuillondbLoad, AFailureOfTheDatabaseLeavesTheOldRows) {
  Load("MAC", kMacHead + kMacRow);
  Sql(Refusal("INSERT", "MAC", "NEW.RecNo = 9"));
  EXPECT_EQ(Refused("MAC", kMacHead + "8,1,,a,2024-05-01\n9,1,,b,2024-05-01\n"),
            "Reports.mdb: refused");
  EXPECT_EQ(Sql("SELECT RecNo FROM MAC"), (std::vector<SqlRow>{{"7"}}));
}

TEST_F(QuillondbLoad, WhatCannotBeReadIsNamed) {
  const std::string missing = home_.path() + "/missing.csv";
  const std::pair<std::string, std::string> kCases[] = {
      {missing, "cannot open missing.csv: No such file or directory"},
      {home_.path() + "/.",
       ". is not loaded, and nothing was written:\n"
       "., line 1: cannot be read: Is a directory"}};
  for (const auto& [path, refusal] : kCases) {
    try {
      LoadTable(home_.path(), "MAC", path);
      ADD_FAILURE() << path << " was read";
    } catch (const Failure& failure) {
      EXPECT_EQ(WithoutFolder(failure.what()), refusal);
    }
  }
}

TEST_F(QuillondbLoad, NeedsCreatedDatabases) {
  const TemporaryFolder empty;
  try {
    LoadTable(empty.path(), "MAC", csvPath_);
    ADD_FAILURE() << "a database was found";
  } catch (const FileFailure& failure) {
    EXPECT_NE(std::string(failure.what()).find("quillondb create"), std::string::npos);
  }
}

TEST_F(QuillondbLoad, AHyphenIsStandardInput) {
  std::ofstream(csvPath_) << kMacHead + kMacRow + "x,1,,a,2024-05-01\n";
  const StandardDescriptor input(STDIN_FILENO, open(csvPath_.c_str(), O_RDONLY | O_CLOEXEC));
  try {
    LoadTable(home_.path(), "MAC", "-");
    ADD_FAILURE() << "the wrong row was loaded";
  } catch (const ConversionFailure& failure) {
    EXPECT_STREQ(failure.what(),
                 "standard input is not loaded, and nothing was written:\n"
                 "standard input, line 3, RecNo: 'x' is no whole number from 1 to 2147483647");
  }
}

// A load whose records come as slowly as the test wants.
class SlowLoad {
 public:
  SlowLoad(const std::string& home, const std::string& fifo) {
    mkfifo(fifo.c_str(), 0600);
    rows_ = std::async(std::launch::async, [=] { return LoadTable(home, "MAC", fifo); });
    input_.open(fifo);
    input_ << kMacHead;
  }

  // Returns when nearly all of them are read: a pipe holds fewer.
  void Type(int rows) {
    for (int row = 0; row < rows; ++row) input_ << "8,1,,a,2024-05-01\n";
    input_.flush();
  }

  std::int64_t End() {
    input_.close();
    return rows_.get();
  }

 private:
  std::future<std::int64_t> rows_;
  std::ofstream input_;
};

TEST_F(QuillondbLoad, OthersReadAndWriteUntilAllRecordsAreThere) {
  constexpr int kRows = 100'000;
  Load("MAC", kMacHead + kMacRow);
  const TemporaryFolder elsewhere;
  SlowLoad load(home_.path(), elsewhere.path() + "/fifo");
  load.Type(kRows);
  EXPECT_EQ(Sql("SELECT RecNo FROM MAC"), (std::vector<SqlRow>{{"7"}}));
  EXPECT_TRUE(OtherWriter::Idle(reports_).Begin());
  load.Type(1);
  EXPECT_EQ(load.End(), kRows + 1);
  EXPECT_EQ(Sql("SELECT COUNT(*), MIN(RecNo) FROM MAC"), (std::vector<SqlRow>{{"100001", "8"}}));
}

TEST_F(QuillondbLoad, AnotherProgramThatWritesIsWaitedFor) {
  OtherWriter other(reports_);
  std::thread end([&other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    other.End();
  });
  EXPECT_EQ(Refused("MAC", kMacHead + kMacRow), "nothing was refused");
  end.join();
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM MAC"), (std::vector<SqlRow>{{"1"}}));
}

TEST_F(QuillondbLoad, AnotherProgramThatWritesOnIsToldAsSuch) {
  const OtherWriter other(reports_);
  EXPECT_EQ(
      Refused("MAC", kMacHead + kMacRow),
      "Reports.mdb: another program has kept the database locked for 5 s; nothing was written,"
      " try again");
}

}  // namespace
}  // namespace quillon
