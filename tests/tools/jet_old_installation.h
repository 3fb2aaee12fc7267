// A whole old installation, made up: three sources with all their tables.
#pragma once

#include <string>

#include "tools/jet_made_up.h"

namespace quillon {

// One row in each table of settings and marks, a port, an address and a storage of `now`'s day, two
// days of each rotation under names of their own, and a sum.
struct OldInstallation {
  explicit OldInstallation(const std::string& now = "2024-05-02 03:00:00") {
    FillSettings();
    FillReports(now);
    FillHistory();
  }

  MadeUpSource settings = EmptyOld("Quillon.mdb");
  MadeUpSource reports = EmptyOld("Reports.mdb");
  MadeUpSource history = EmptyOld("History.mdb");

 private:
  void FillSettings() {
    settings.AddRow("Settings_General", {{"DatumFormat", std::string("DD/MM/YYYY")},
                                         {"SnmpcDir", std::string("/opt/old")}});
    settings.AddRow("Settings_WebServer", {{"TcpPort", std::int64_t{80}}});
    settings.AddRow("Settings_SnmpAgent", {{"TrapComm", std::string("secret")}});
    settings.AddRow("Settings_SmtpServer", {{"MailServer", std::string("10.1.0.25")}});
    settings.AddRow("Settings_RepReceiver", {{"Name", std::string("Anna")}});
    settings.AddRow("Settings_RepReceiver", {{"Name", std::string("Bert")}});
  }

  void FillReports(const std::string& now) {
    const JetDate date = JetDateOf(now);
    reports.AddRow("VLAN", {{"RecNo", std::int64_t{7}}, {"InOctetsDate", date}});
    reports.AddRow("MAC", {{"RecNo", std::int64_t{7}}});
    reports.AddRow("HostDiskInfo", {{"RecNo", std::int64_t{900}}, {"LastUpdate", date}});
  }

  void FillHistory() {
    history.AddRow("General_Info", {{"LastImport", JetDateOf("2024-05-01 04:00:00")}});
    history.AddRow("VLAN_HistSum", {{"Ports", std::int64_t{400}}});
    AddOldDay(history, kDayTableKinds[0], "VLAN_T2", "2024-04-30 05:00:00");
    AddOldDay(history, kDayTableKinds[0], "VLAN_T1", "2024-04-29 05:00:00");
    AddOldDay(history, kDayTableKinds[1], "Disk_T1", "2024-04-30 05:00:00");
    history.AddRow("VLAN_T2", {{"RecNo", std::int64_t{2}}});
    history.AddRow("VLAN_T1", {{"RecNo", std::int64_t{1}}});
    history.AddRow("Disk_T1", {{"RecNo", std::int64_t{900}}});
  }
};

}  // namespace quillon
