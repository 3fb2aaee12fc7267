// A site that the four searches find something on: the two ports of the charts with the users seen
// on them, and three storages of two servers as they stood yesterday.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "render/disk_tables.h"
#include "render/page_frame.h"
#include "render/search_forms.h"
#include "render/switch_tables.h"
#include "support/report_rows.h"
#include "web/chart_site.h"

namespace quillon {

class SearchSite : public ChartSite {
 protected:
  struct Hit {
    std::string link;  // up to the name of the stored result
    std::string device;
  };
  // One of the four searches, by the name that its form, its entry of the selector and its post
  // share.
  struct Search {
    std::string name;
    int width;               // of the selector's cell
    std::string stored;      // the stored result, up to the number of its connection
    Names empty;             // what the fields of its empty form show
    std::string body;        // what finds all of the network
    Names shown;             // what the fields show then
    std::vector<Hit> found;  // and what is found, in its order
    std::string miss;        // what finds nothing
  };
  static inline const std::vector<Hit> kPorts = {{"hist45-7-4-", "sw7"}, {"hist45-8-5-", "sw8"}};
  static inline const std::vector<Hit> kPortsSeenLastFirst = {kPorts[1], kPorts[0]};
  static inline const std::vector<Hit> kStoragesUsedMostFirst = {
      {"histdisksearch45-901-_var_log-", "Mail"},
      {"histdisksearch45-900-C_-", "Files"},
      {"histdisksearch45-901-mem-", "Mail"}};
  static inline const Search kMacSearch = {
      "search-mac-ip",     270,     "switch-mac-ip-",    {""},
      "MacIpName=02*\r\n", {"02*"}, kPortsSeenLastFirst, "MacIpName=none\r\n"};
  static inline const Search kNameSearch = {"search-device-port-name",
                                            270,
                                            "switch-device-port-name-",
                                            {"", ""},
                                            "DeviceName=sw*\r\nPortName=Gi0/*\r\n",
                                            {"sw*", "Gi0/*"},
                                            kPorts,
                                            "DeviceName=none\r\nPortName=*\r\n"};
  static inline const Search kAliasSearch = {"search-device-port-alias",
                                             270,
                                             "switch-device-port-alias-",
                                             {"", ""},
                                             "DeviceName=10.0.0.*\r\nPortName=*\r\n",
                                             {"10.0.0.*", "*"},
                                             kPorts,
                                             "DeviceName=none\r\nPortName=*\r\n"};
  static inline const Search kDiskSearch = {
      "search-device-disk",
      250,
      "disk-search-",
      {"", "", "usedpercent-desc"},
      "DeviceName=*\r\nDiskName=*\r\nOrderBy=usedpercent-desc\r\n",
      {"*", "*", "usedpercent-desc"},
      kStoragesUsedMostFirst,
      "DeviceName=none\r\nDiskName=*\r\nOrderBy=usedpercent-desc\r\n"};
  static inline const std::vector<Search> kSearches = {kMacSearch, kNameSearch, kAliasSearch,
                                                       kDiskSearch};

  SearchSite() {
    Reports(
        "UPDATE VLAN SET IpAddr = '10.0.0.8', IfAlias = 'Printer' WHERE RecNo = 8;"
        "INSERT INTO MAC (RecNo, IfIndex, MacAddr, IpAddr, LastSeen) VALUES"
        " (7, 4, '02 00 00 00 00 07', '10.1.0.7', '2024-05-01 10:00:00'),"
        " (8, 5, '02 00 00 00 00 08', '10.1.0.8', '2024-05-02 10:00:00');");
    const auto mail = [](const char* storage, const char* type, const char* usedProc) {
      return InsertStorageOfDay("Disk_Day01", {{"RecNo", "901"},
                                               {"DevName", "'Mail'"},
                                               {"StorDescr", storage},
                                               {"Type", type},
                                               {"UsedProc", usedProc}});
    };
    History(
        "UPDATE Disk_HistCtrl SET StorageDate = '2024-05-01 03:10:00'"
        " WHERE HistTable = 'Disk_Day01';" +
        InsertStorageOfDay("Disk_Day01") + mail("'/var/log'", "40", "80") +
        mail("'Physical'", "10", "20"));
  }

  static std::string StoredName(const Search& search, int id) {
    return search.stored + std::to_string(id) + ".htm";
  }

  // A post as browsers send it, head and body together.
  static std::string PostText(const std::string& action, const std::string& body) {
    return "POST /" + action + " HTTP/1.1\r\nHost: test\r\nContent-Type: text/plain\r\n\r\n" + body;
  }
  std::string Post(RawClient& client, const std::string& action, const std::string& body) {
    return site.Exchange(client, PostText(action, body));
  }
  std::string Post(RawClient& client, const Search& search) {
    return Post(client, search.name, search.body);
  }

  // The page of a search form alone, without its head.
  std::string FormPage(const Search& search, const Names& shown) const {
    std::string page = TopBand(search, shown);
    Page_End(site.render, page);
    return page;
  }
  // What the result of a search is by the records of a connection, without its end.
  std::string Page(const Search& search, ConnectionId id, const Names& shown) const {
    return Page(site.render, search, id, shown);
  }
  std::string Page(const RenderContext& render, const Search& search, ConnectionId id,
                   const Names& shown) const {
    std::string page = TopBand(search, shown);
    if (search.name == kDiskSearch.name) {
      TableHeader_Disk(render, id, page);
      TableData_DiskSearch(render, id, page);
    } else {
      TableHeader_Switch(render, id, page);
      TableDataSwitch_Search(render, id, StoredName(search, id), page);
    }
    return page;
  }

  // The links to the charts on a page, from top to bottom, each with its device:
  // "hist45-7-4-switch-mac-ip-1.htm>sw7".
  static Names Links(const std::string& page) {
    Names links;
    constexpr std::string_view kBegin = "<a href=hist";
    for (std::size_t at = page.find(kBegin); at != std::string::npos; at = page.find(kBegin, at)) {
      at += kBegin.size();
      links.push_back("hist" + page.substr(at, page.find("</a>", at) - at));
    }
    return links;
  }
  // The same as they are to be.
  static Names Links(const Search& search, int id, const std::vector<Hit>& hits) {
    Names links;
    for (const Hit& hit : hits)
      links.push_back(hit.link + StoredName(search, id) + ">" + hit.device);
    return links;
  }

 private:
  std::string TopBand(const Search& search, const Names& shown) const {
    const RenderContext& render = site.render;
    std::string page;
    TopHeader_Begin(render, search.width, search.name, page);
    if (search.name == kMacSearch.name) {
      TopHeader_SearchMacIp(render, shown.at(0), page);
    } else if (search.name == kNameSearch.name) {
      TopHeader_SearchDevicePortName(render, shown.at(0), shown.at(1), page);
    } else if (search.name == kAliasSearch.name) {
      TopHeader_SearchDevicePortAlias(render, shown.at(0), shown.at(1), page);
    } else {
      TopHeader_SearchDeviceStorage(render, shown.at(0), shown.at(1), shown.at(2), page);
    }
    TopHeader_End(render, page);
    return page;
  }
};

}  // namespace quillon
