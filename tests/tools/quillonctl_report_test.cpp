// quillonctl report: the lists and searches of the site on the terminal. What a row holds and which
// ones are found is tested with the queries (tests/queries); here is how many come, and how.
#include <nlohmann/json.hpp>

#include "support/report_rows.h"
#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlReport : public Quillonctl {
 protected:
  using Json = nlohmann::ordered_json;

  QuillonctlReport() { CreateWhole(); }

  // A port of today's report.
  void AddPort(const Columns& differing = {}) const {
    Sql("Reports.mdb",
        InsertPort(With({{"InOctetsDate", HoursAgo(0, "'%Y-%m-%d 03:10:00'")}}, differing)));
  }
  // So many, RecNo 1, 2, ..., each with more volume than the one before.
  void AddPorts(int count) const {
    std::string ports = "BEGIN;";
    const std::string today = HoursAgo(0, "'%Y-%m-%d 03:10:00'");
    for (int n = 1; n <= count; ++n) {
      const std::string number = std::to_string(n);
      ports +=
          InsertPort({{"RecNo", number}, {"InHCOctetsMb24H", number}, {"InOctetsDate", today}});
    }
    Sql("Reports.mdb", ports + "COMMIT");
  }
  // As many disks of Windows in the newest day.
  void AddDisks(int count) const {
    AddDiskDay();
    std::string disks = "BEGIN;";
    for (int n = 1; n <= count; ++n) {
      disks += InsertStorageOfDay("Disk_Day01", {{"RecNo", std::to_string(n)}});
    }
    Sql("History.mdb", disks + "COMMIT");
  }
  // An address that was seen on the port of AddPort.
  void AddAddress(const std::string& mac, const std::string& ip) const {
    Sql("Reports.mdb", InsertRow("MAC", {{"RecNo", "7"},
                                         {"IfIndex", "1"},
                                         {"MacAddr", "'" + mac + "'"},
                                         {"IpAddr", "'" + ip + "'"},
                                         {"LastSeen", "'2024-05-02 03:10:00'"}}));
  }

  // The newest day of the history, in which disks are looked for.
  void AddDiskDay() const {
    Sql("History.mdb", "UPDATE Disk_HistCtrl SET StorageDate = " +
                           HoursAgo(23, "'%Y-%m-%d 03:10:00'") + " WHERE HistTable = 'Disk_Day01'");
  }
  void AddDisk(const Columns& differing = {}) const {
    Sql("History.mdb", InsertStorageOfDay("Disk_Day01", differing));
  }

  Json JsonOf(const std::string& report) const {
    const Outcome outcome = Run("report " + report + " --json");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    return Json::parse(outcome.out);
  }
  // The RecNo of the rows, in their order.
  std::vector<int> RecNosOf(const std::string& report) const {
    std::vector<int> numbers;
    for (const Json& row : JsonOf(report)) numbers.push_back(row["recNo"].get<int>());
    return numbers;
  }
};

TEST_F(QuillonctlReport, ListOfPortsIsAlignedUnderALineThatSaysWhatItIs) {
  AddPort({{"InErrorsTot24H", "1234567"}});
  AddPort({{"DevName", "'Z\u00FCrich'"}, {"IfIndex", "2"}, {"InHCOctetsMb24H", "70000"}});
  AddAddress("02 1B 2C 3D 4E 5F", "10.9.9.9");
  EXPECT_EQ(
      Run("report access").out,
      "access ports by involume: 2 of 2\n"
      "Device  Port   Alias     In  Out  Bcast/min  Mcast/min     Err in  Err out  User IP\n"
      "Z\u00FCrich  Gi0/1  Uplink  70 G  4 M          3          2          1        0\n"
      "Core    Gi0/1  Uplink   5 M  4 M          3          2  1 234 567        0  10.9.9.9\n");
}

TEST_F(QuillonctlReport, JsonHasEveryFieldOfTheRecordByItsName) {
  AddPort();
  AddAddress("02 1B 2C 3D 4E 5F", "10.9.9.9");
  EXPECT_EQ(JsonOf("access outvolume"), Json::array({{{"recNo", 7},
                                                      {"device", "Core"},
                                                      {"ipAddr", "10.0.0.7"},
                                                      {"vlanID", "12"},
                                                      {"ifIndex", 1},
                                                      {"ifDescr", "Gi0/1"},
                                                      {"ifSpeed", "1000000000"},
                                                      {"ifAlias", "Uplink"},
                                                      {"ifAdmin", "up"},
                                                      {"ifOper", "down"},
                                                      {"inHCOctetsMb24H", "5 M"},
                                                      {"inHCOctetsMb24HF", "5 M"},
                                                      {"outHCOctetsMb24H", "4 M"},
                                                      {"outHCOctetsMb24HF", "4 M"},
                                                      {"inBroadCastPpm24H", "3"},
                                                      {"inBroadCastPpm24HF", "3 per min"},
                                                      {"inMultiCastPpm24H", "2"},
                                                      {"inMultiCastPpm24HF", "2 per min"},
                                                      {"inErrorsTot24H", "1"},
                                                      {"inErrorsTot24HF", "1 per 24h"},
                                                      {"outErrorsTot24H", "0"},
                                                      {"outErrorsTot24HF", "0 per 24h"},
                                                      {"userMacAddr", "02 1B 2C 3D 4E 5F"},
                                                      {"userIpAddr", "10.9.9.9"},
                                                      {"userLastSeen", "2024-05-02"}}}));
}

TEST_F(QuillonctlReport, CsvHasTheSameFields) {
  AddDiskDay();
  AddDisk({{"DevName", "'Files, old'"}});
  EXPECT_EQ(Run("report disks windows --csv").out,
            "recNo,device,storDescr,totalM,freeM,usedM,usedProc,trend14d,trend30d\n"
            "900,\"Files, old\",C:,100 M,60 M,40 M,40 %,+77 %,+88 %\n");
}

TEST_F(QuillonctlReport, DatesAreInTheFormatOfTheSettings) {
  AddPort();
  AddAddress("02 1B 2C 3D 4E 5F", "10.9.9.9");
  Sql("Quillon.mdb", "UPDATE Settings_General SET DatumFormat = 'DD/MM/YYYY'");
  EXPECT_EQ(JsonOf("access")[0]["userLastSeen"], "02/05/2024");
}

TEST_F(QuillonctlReport, UnitsAreTheWordsOfTheSiteWhateverItsCharset) {
  AddPort();
  std::ofstream(home_ / "WebReports" / "Language.ini") << "39\tunit\tpro Minute \xFC"
                                                          "ber\r\n";
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET CharSet = 'ISO-8859-1'");
  EXPECT_EQ(JsonOf("access")[0]["inBroadCastPpm24HF"], "3 pro Minute \u00FCber");
  fs::remove(home_ / "WebReports" / "Language.ini");
  EXPECT_EQ(JsonOf("access")[0]["inBroadCastPpm24HF"], "3 n/a");
}

TEST_F(QuillonctlReport, RowsAreTenOrAsManyAsAreWanted) {
  AddPorts(120);
  AddDisks(120);
  struct Case {
    std::string option;
    std::size_t rows;
    std::string criteria;
  };
  const Case cases[] = {
      {"", 10, "10 of 120"},
      {" --rows 1", 1, "1 of 120"},
      {" --rows 119", 119, "119 of 120"},
      {" --rows 1000", 120, "120 of 120"},
  };
  for (const Case& row : cases) {
    for (const std::string report :
         {"access", "port-name '*'", "disks windows", "disk-search '*'"}) {
      EXPECT_EQ(RecNosOf(report + row.option).size(), row.rows) << report << row.option;
      const std::string lines = Run("report " + report + row.option).out;
      EXPECT_NE(lines.find(": " + row.criteria + "\n"), std::string::npos) << lines;
    }
  }
}

TEST_F(QuillonctlReport, AddressesAreTheNewestHundredHoweverManyRowsAreWanted) {
  AddPort();
  std::string addresses = "BEGIN;";
  for (int n = 1; n <= 130; ++n) {
    addresses += InsertRow("MAC", {{"RecNo", "7"},
                                   {"IfIndex", "1"},
                                   {"MacAddr", "'02 1B 2C 3D 4E 5F'"},
                                   {"IpAddr", "'10.9.9.9'"},
                                   {"LastSeen", "'2024-05-02 03:10:00'"}});
  }
  Sql("Reports.mdb", addresses + "COMMIT");
  EXPECT_EQ(RecNosOf("mac-ip '*' --rows 1000").size(), 100u);
  EXPECT_EQ(RecNosOf("mac-ip '*'").size(), 10u);
}

TEST_F(QuillonctlReport, ListsAreOfTheirPortsByTheirMetric) {
  AddPort({{"RecNo", "1"}, {"OutErrorsTot24H", "8"}});
  AddPort({{"RecNo", "2"}, {"InMultiCastPpm24H", "9"}});
  AddPort({{"RecNo", "3"}, {"IsTrunk", "TRUE"}});
  EXPECT_EQ(RecNosOf("access outerrors"), (std::vector<int>{1, 2}));
  EXPECT_EQ(RecNosOf("access inmulticast"), (std::vector<int>{2, 1}));
  EXPECT_EQ(RecNosOf("trunk"), (std::vector<int>{3}));
}

TEST_F(QuillonctlReport, DisksAreOfTheirClassInTheirOrder) {
  AddDiskDay();
  AddDisk({{"RecNo", "1"}, {"UsedProc", "50"}, {"FreeM", "1"}});
  AddDisk({{"RecNo", "2"}, {"UsedProc", "90"}, {"FreeM", "3"}});
  AddDisk({{"RecNo", "3"}, {"Type", "10"}, {"StorDescr", "'Physical'"}});
  AddDisk({{"RecNo", "4"}, {"Type", "20"}, {"StorDescr", "'Virtual'"}});
  AddDisk({{"RecNo", "5"}, {"Type", "40"}, {"StorDescr", "'/var'"}});
  struct Case {
    std::string report;
    std::vector<int> recNos;
  };
  const Case cases[] = {
      {"disks windows", {2, 1}},
      {"disks windows --order asc", {1, 2}},
      {"disks windows --by freebytes --order asc", {1, 2}},
      {"disks windows --rows 1", {2}},
      {"disks physical", {3}},
      {"disks virtual", {4}},
      {"disks unix", {5}},
      {"disk-search '*' 'C*'", {2, 1}},
      {"disk-search '*' 'C*' --by freebytes --order asc --rows 1", {1}},
      {"disk-search 'Nobody*'", {}},
  };
  for (const Case& row : cases) EXPECT_EQ(RecNosOf(row.report), row.recNos) << row.report;
  EXPECT_EQ(Run("report disks unix").out,
            "unix storages by usedpercent desc: 1 of 1\n"
            "Device  Disk  Total  Free  Used  Used %  14 days  30 days\n"
            "Files   /var  100 M  60 M  40 M    40 %    +77 %    +88 %\n");
}

TEST_F(QuillonctlReport, PortsAreFoundByNameAliasAndAddress) {
  AddPort();
  AddPort({{"RecNo", "8"}, {"DevName", "'Edge'"}, {"IfDescr", "'Te1'"}, {"IfAlias", "'O''Neil'"}});
  AddAddress("02 1B 2C 3D 4E 5F", "10.9.9.9");
  struct Case {
    std::string report;
    std::vector<int> recNos;
  };
  const Case cases[] = {
      {"port-name 'C*'", {7}},
      {"port-name '*' 'Te*'", {8}},
      {"port-alias '*' 'Up*'", {7}},
      {"port-alias '*' \"O'N*\"", {8}},
      {"port-alias '*' \"x' OR '1'='1\"", {}},
      {"mac-ip 02:1b:2c:3d:4e:5f", {7}},
      {"mac-ip '10.9.*'", {7}},
      {"mac-ip \"'\"", {}},
  };
  for (const Case& row : cases) EXPECT_EQ(RecNosOf(row.report), row.recNos) << row.report;
  EXPECT_EQ(Run("report mac-ip '10.9.*'").out,
            "ports of \"10.9.*\": 1 of 1\n"
            "MAC                IP        Last seen   Device  Port   Alias   VLAN   In  Out\n"
            "02 1B 2C 3D 4E 5F  10.9.9.9  2024-05-02  Core    Gi0/1  Uplink    12  5 M  4 M\n");
}

TEST_F(QuillonctlReport, ReportThatFindsNothingIsEmptyAndNoFailure) {
  EXPECT_TRUE(JsonOf("access").empty());
  const Outcome outcome = Run("report port-name 'Nobody*'");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "ports \"*\" of \"Nobody*\": 0 of 0\n");
  EXPECT_EQ(outcome.error, "");
}

TEST_F(QuillonctlReport, NamesOfTheNetworkCannotSteerTheTerminal) {
  AddPort({{"DevName", "'\x1B[2J'"}});
  EXPECT_EQ(Run("report access").out.find('\x1B'), std::string::npos);
  EXPECT_EQ(JsonOf("access")[0]["device"], "\x1B[2J");
}

TEST_F(QuillonctlReport, SaysThatTheHistoryHasNoSuchDay) {
  for (const std::string report : {"disks windows", "disk-search '*'"}) {
    const Outcome outcome = Run("report " + report);
    EXPECT_EQ(outcome.status, 1) << report;
    EXPECT_EQ(outcome.out, "") << report;
    EXPECT_EQ(outcome.error, "quillonctl: the history has no disks of " + HoursAgo(23, "%Y-%m-%d") +
                                 ": no import has stored them yet\n");
  }
}

TEST_F(QuillonctlReport, FailureIsToldAndNothingElse) {
  AddPort({{"IfSpeed", "NULL"}});
  AddDiskDay();
  AddDisk({{"FreeM", "NULL"}});
  for (const std::string report : {"access", "port-name '*'", "disks windows", "disk-search '*'"}) {
    for (const std::string form : {"", " --json", " --csv"}) {
      const Outcome outcome = Run("report " + report + form);
      EXPECT_EQ(outcome.status, 1) << report;
      EXPECT_EQ(outcome.out, "") << report;
      EXPECT_TRUE(outcome.error.starts_with("quillonctl: ")) << outcome.error;
      EXPECT_NE(outcome.error.find("null"), std::string::npos) << outcome.error;
    }
  }
}

TEST_F(QuillonctlReport, SpoiledListOfWordsIsToldWithItsFile) {
  std::ofstream(home_ / "WebReports" / "Language.ini") << "101\tunit\tper min\r\n";
  const Outcome outcome = Run("report access");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.error, "quillonctl: " + (home_ / "WebReports" / "Language.ini").string() +
                               ": position 101 is outside 1 to 100\n");
}

TEST_F(QuillonctlReport, LeavesNoTraceInTheInstallation) {
  AddPort();
  Sql("Quillon.mdb", "UPDATE Settings_General SET DebugMode = TRUE");
  EXPECT_EQ(RecNosOf("access").size(), 1u);
  AddPort({{"DevName", "NULL"}});
  EXPECT_EQ(Run("report access").status, 1);
  EXPECT_TRUE(fs::is_empty(home_ / "Debug"));
}

TEST_F(QuillonctlReport, FullDiskBehindTheOutputIsAFailure) {
  AddPort();
  for (const std::string form : {"", "--json", "--csv"}) {
    const std::string error = (root_ / "error").string();
    const int status = std::system(fmt::format("'{}' -C '{}' report access {} >/dev/full 2>'{}'",
                                               QUILLONCTL_PATH, home_.string(), form, error)
                                       .c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1) << form;
    EXPECT_EQ(Content(error),
              "quillonctl: cannot write to standard output: No space left on device\n");
  }
}

}  // namespace
}  // namespace quillon
