// Looking a device up among ports and storages.
#include "queries/device_stats.h"

#include <fmt/format.h>

#include <optional>
#include <string_view>

#include "platform/database.h"
#include "queries/page_field.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

std::optional<std::string> DeviceName(const QueryContext& context, Connection& reports,
                                      std::string_view table, std::int32_t recNo) {
  const Recordset device =
      reports.Execute(fmt::format("SELECT DevName FROM {} WHERE RecNo={}", table, recNo));
  if (device.Eof()) return std::nullopt;
  return PageField(context, device, "DevName");
}

}  // namespace

void CheckForStats(const QueryContext& context, std::int32_t recNo, std::string& request) {
  ErrorExit(context.diagnostics, kQueryModule, "CheckForStats", [&] {
    Connection reports;
    reports.Open(context.settings.ConnReports);
    if (const auto device = DeviceName(context, reports, "VLAN", recNo)) {
      request = "POST /search-device-port-name\r\nDeviceName=" + *device + "\r\nPortName=*";
    } else if (const auto server = DeviceName(context, reports, "HostDiskInfo", recNo)) {
      request = "POST /search-device-disk\r\nDeviceName=" + *server +
                "\r\nDiskName=*\r\nOrderBy=usedpercent-desc";
    }
  });
}

}  // namespace quillon
