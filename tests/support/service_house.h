// The life of the service around a test installation: settings rows, a listener on a free
// port, and a clock that is set by hand.
#pragma once

#include <string>

#include "platform/listener.h"
#include "service/lifecycle.h"
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
  std::string WebServer(const std::string& field) const {
    return installation.Select("Quillon.mdb", "SELECT " + field + " FROM Settings_WebServer")[0];
  }

  std::string favIconData;
  Listener tcpServer{loop};
  ServiceContext service{diagnostics, settings, clock, loop, tcpServer, words, favIconData};

 private:
  void Set(const std::string& table, const std::string& field, const std::string& value) const {
    installation.Sql("Quillon.mdb", "UPDATE " + table + " SET " + field + " = '" + value + "'");
  }
};

}  // namespace quillon
