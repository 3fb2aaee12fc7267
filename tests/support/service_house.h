// The life of the service around a test installation: settings rows, a listener on a free
// port, an agent that keeps its traps, jobs that only note their call, and a clock that is
// set by hand.
#pragma once

#include <string>
#include <vector>

#include "service/console_operations.h"
#include "service/lifecycle.h"
#include "service/timer.h"
#include "support/house.h"

namespace quillon {

class ServiceHouse : public House {
 public:
  ServiceHouse() {
    installation.Write("Morvane.ini", "ServerIpAddr=127.0.0.1\r\nServerTrapPort=162\r\n");
    SetGeneral("SnmpcDir", installation.path());
    SetWebServer("TcpPort", "0");  // the system chooses
  }

  void SetGeneral(const std::string& field, const std::string& value) const {
    Set("Settings_General", field, value);
  }
  void SetWebServer(const std::string& field, const std::string& value) const {
    Set("Settings_WebServer", field, value);
  }
  void SetSnmpAgent(const std::string& field, const std::string& value) const {
    Set("Settings_SnmpAgent", field, value);
  }
  std::string WebServer(const std::string& field) const {
    return Setting("Settings_WebServer", field);
  }
  std::string SnmpAgent(const std::string& field) const {
    return Setting("Settings_SnmpAgent", field);
  }

  std::string favIconData;
  bool importIsDue = false;           // what Import answers
  std::vector<std::string> jobCalls;  // the names of the jobs, in the order of their calls
  DailyJobs jobs{[this](bool& done) {
                   jobCalls.emplace_back("Import");
                   if (importIsDue) done = true;
                 },
                 [this] { jobCalls.emplace_back("AutoCreate"); },
                 [this] { jobCalls.emplace_back("MailReports"); },
                 [this](std::int16_t hour) {
                   jobCalls.push_back("UpdateHistory_Db " + std::to_string(hour));
                 }};
  LocalServer consoleSocket{loop};
  ServiceHost dartSvc{loop, clock};
  ServiceRegistry registry{installation.path()};  // units of a test go nowhere else
  ServiceContext service{diagnostics, settings, trapTarget,   clock,     loop,
                         dartSvc,     registry, tcpServer,    snmpAgent, words,
                         favIconData, jobs,     consoleSocket};
  OperatorContext operators{settings, clock, period, jobs};

 private:
  void Set(const std::string& table, const std::string& field, const std::string& value) const {
    installation.Sql("Quillon.mdb", "UPDATE " + table + " SET " + field + " = '" + value + "'");
  }
  std::string Setting(const std::string& table, const std::string& field) const {
    return installation.Select("Quillon.mdb", "SELECT " + field + " FROM " + table)[0];
  }
};

}  // namespace quillon
