// The two searches of switch ports, by names and by address, in a house of a test's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "queries/mac_search.h"
#include "queries/port_search.h"
#include "queries/switch_table_fixture.h"

namespace quillon {

inline constexpr const char* kPortSearch = "SqlSearchDevicePort";
inline constexpr const char* kMacSearch = "SqlSearchMacIp";

class SearchTest : public SwitchTableTest {
 protected:
  // An address on port 1 of device 7 that differs from an ordinary one in these columns.
  void AddMac(const Columns& differing = {}) const {
    Sql(InsertRow("MAC", With({{"RecNo", "7"},
                               {"IfIndex", "1"},
                               {"MacAddr", "'02 00 00 00 00 01'"},
                               {"IpAddr", "'192.0.2.1'"},
                               {"LastSeen", "'2024-05-01 10:00:00'"}},
                              differing)));
  }

  // Searches ports as the routes do: with the ten rows of the slot empty. Returns the two patterns
  // as the caller's variables hold them afterwards.
  Lines SearchPorts(std::string device = "*", std::string port = "*",
                    std::string_view column = "IfDescr", ConnectionId slot = kSlot) {
    EmptyRecord(slot);
    SqlSearchDevicePort(house.queries, slot, device, port, column);
    return {device, port};
  }

  // The same for addresses; the value as the caller's variable holds it afterwards.
  std::string SearchMac(std::string value = "*", ConnectionId slot = kSlot) {
    EmptyRecord(slot);
    SqlSearchMacIp(house.queries, slot, value);
    return value;
  }

  // The devices that a search of ports finds.
  std::vector<int> PortsOf(const std::string& device, const std::string& port = "*",
                           std::string_view column = "IfDescr") {
    SearchPorts(device, port, column);
    return RecNos();
  }

  // The devices on whose ports a search of addresses finds one.
  std::vector<int> PortsWithMac(const std::string& value) {
    SearchMac(value);
    return RecNos();
  }

  // The twelve metric texts of a row in record order.
  static Lines Metrics(const SwitchTableRow& row) {
    return {row.inHCOctetsMb24H,   row.inHCOctetsMb24HF,   row.outHCOctetsMb24H,
            row.outHCOctetsMb24HF, row.inBroadCastPpm24H,  row.inBroadCastPpm24HF,
            row.inMultiCastPpm24H, row.inMultiCastPpm24HF, row.inErrorsTot24H,
            row.inErrorsTot24HF,   row.outErrorsTot24H,    row.outErrorsTot24HF};
  }

  // Those of an ordinary port of today, and those of a port without statistics of today. The
  // nought stands behind the blanks of the two groups that it does not have.
  static inline const Lines kMetricsOfToday = {"5 M", "5 M",   "4 M", "4 M",   "3", "3 W39",
                                               "2",   "2 W39", "1",   "1 W38", "0", "0 W38"};
  static inline const Lines kNoMetrics = {"0",   "0",       "0",   "0",       "  0", "  0 W39",
                                          "  0", "  0 W39", "  0", "  0 W38", "  0", "  0 W38"};
};

}  // namespace quillon
