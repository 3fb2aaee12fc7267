// Rotation, copy and sums of the switch ports.
#include "import/switch_history.h"

#include <fmt/format.h>

#include <array>

#include "import/day_copy.h"
#include "import/day_sums.h"
#include "import/rotation.h"
#include "import/row_pauses.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr std::string_view kDayFields[] = {
    "RecNo",           "IfIndex",           "InErrorsTot24H",
    "OutErrorsTot24H", "InBroadCastPpm24H", "InMultiCastPpm24H",
    "InHCOctetsMb24H", "OutHCOctetsMb24H",  "IsTrunk"};

constexpr std::array<std::string_view, 6> kSumFields = {"InErrorsTot24H",    "OutErrorsTot24H",
                                                        "InBroadCastPpm24H", "InMultiCastPpm24H",
                                                        "InHCOctetsMb24H",   "OutHCOctetsMb24H"};

struct PortSums {
  std::array<std::int32_t, kSumFields.size()> figures{};  // in the order of kSumFields
  std::int32_t ports = 0;
  std::int32_t portsInTraffic = 0;
};

void AddPort(const Recordset& port, PortSums& sums) {
  if (port.Field("InHCOctetsMb24H").AsNumber() > 0) ++sums.portsInTraffic;
  for (std::size_t i = 0; i < kSumFields.size(); ++i) {
    const std::string_view field = kSumFields[i];
    sums.figures[i] = PlusLong(sums.figures[i], port.Field(field).AsNumber(), field);
  }
}

PortSums SumPorts(ImportContext& context, bool isTrunk) {
  Connection reports;
  reports.Open(context.settings.ConnReports);
  Recordset ports = reports.Execute(
      fmt::format("SELECT * FROM VLAN WHERE IsTrunk={}", isTrunk ? "True" : "False"),
      SelectTime::kUnlimited);
  PortSums sums;
  RowPauses pauses(context.loop);
  DateTime today = ReportDay(context.settings, context.clock);
  for (; !ports.Eof(); ports.MoveNext()) {
    ++sums.ports;
    if (ports.Field("LastUpdate").IsOfDay(today)) AddPort(ports, sums);
    if (pauses.RowDone()) today = ReportDay(context.settings, context.clock);
  }
  return sums;
}

}  // namespace

void SwitchStatsToHist(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "SwitchStatsToHist", [&] {
    FillFreeTable(context, {"VLAN_HistCtrl", "TrafficDate", SwitchStatsCopyToHist_});
  });
}

void SwitchStatsCopyToHist_(ImportContext& context, const std::string& table) {
  const std::string name = NameWithTable(context, "SwitchStatsCopyToHist_", table);
  ErrorExit(context.diagnostics, "modImport", name, [&] {
    CopyToday(context, {"VLAN", "InOctetsDate"}, table, [](const Recordset& port, Recordset& day) {
      day.AddNew();
      for (const std::string_view field : kDayFields) day.SetField(field, port.Field(field));
      day.Update();
    });
  });
}

void ClearSwitchHistSum(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "ClearSwitchHistSum",
            [&] { TrimSums(context, "VLAN_HistSum", "TrafficDate"); });
}

void SwitchStatsSum(ImportContext& context, bool isTrunk) {
  ErrorExit(context.diagnostics, "modImport", "SwitchStatsSum", [&] {
    const PortSums sums = SumPorts(context, isTrunk);
    SumFields fields;
    for (std::size_t i = 0; i < kSumFields.size(); ++i) {
      fields.emplace_back(kSumFields[i], Value::Integer(sums.figures[i]));
    }
    fields.emplace_back("IsTrunk", Value::Boolean(isTrunk));
    fields.emplace_back("Ports", Value::Integer(sums.ports));
    fields.emplace_back("PortsInTraffic", Value::Integer(sums.portsInTraffic));
    AppendSums(context, "VLAN_HistSum", "TrafficDate", fields);
  });
}

}  // namespace quillon
