// The site of the searches' tests with all its statistics, for what is no test.
#pragma once

#include <string>

#include "web/search_site.h"

namespace quillon::fuzz {

class NetworkSite : public SearchSite {
 protected:
  // The engine reads the whole schema whenever a chart is built: with the tables of days that were
  // never filled, which nobody looks into, that is a quarter of all the time.
  NetworkSite() {
    for (const std::string kind : {"VLAN", "Disk"}) {
      const std::string date = kind == "VLAN" ? "TrafficDate" : "StorageDate";
      for (const std::string& table : site.installation.Select(
               "History.mdb", "SELECT HistTable FROM " + kind + "_HistCtrl WHERE " + date +
                                  " = '2000-01-01 00:00:00'")) {
        History("DROP TABLE " + table);
      }
    }
  }

 private:
  void TestBody() override {}
};

}  // namespace quillon::fuzz
