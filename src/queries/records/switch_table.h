// SwitchTableRep: the texts of one table of switch ports, ten at most on a page, one record for
// each connection. Queries fill it, the switch tables print it. All texts are finished
// for display, as bytes of the pages' charset.
#pragma once

#include <cstdint>
#include <string>

#include "platform/one_based.h"

namespace quillon {

// One port. A row whose recNo is 0 is empty: its texts may be those of an earlier report.
struct SwitchTableRow {
  std::int32_t recNo = 0;  // the device
  std::string device;
  std::string ipAddr;
  std::string vlanID;  // "-" where the port has none
  std::int32_t ifIndex = 0;
  std::string ifDescr;
  std::string ifSpeed;
  std::string ifAlias;
  std::string ifAdmin;
  std::string ifOper;
  // The six metrics: the short form of the cell, and with F the full form of the popup.
  std::string inHCOctetsMb24H;
  std::string inHCOctetsMb24HF;
  std::string outHCOctetsMb24H;
  std::string outHCOctetsMb24HF;
  std::string inBroadCastPpm24H;
  std::string inBroadCastPpm24HF;
  std::string inMultiCastPpm24H;
  std::string inMultiCastPpm24HF;
  std::string inErrorsTot24H;
  std::string inErrorsTot24HF;
  std::string outErrorsTot24H;
  std::string outErrorsTot24HF;
  // The first address seen on the port; userLastSeen is "-" where there is none.
  std::string userMacAddr;
  std::string userIpAddr;
  std::string userLastSeen;
};

struct SwitchTableRecord {
  std::string TableHead;      // the word naming the metric
  std::string TableReport;    // the word naming the report
  std::string TableCriteria;  // shown rows and all rows: "10 (214)"
  TableRows<SwitchTableRow> rows;
};

}  // namespace quillon
