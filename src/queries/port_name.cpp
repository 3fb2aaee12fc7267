// The look-up of a port's names.
#include "queries/port_name.h"

#include <fmt/format.h>

#include "platform/database.h"
#include "service/error_exit.h"

namespace quillon {

void SqlPortNameLookup(const QueryContext& context, std::int32_t recNo, std::int32_t ifIndex,
                       std::string& devName, std::string& portName) {
  ErrorExit(context.diagnostics, kQueryModule, "SqlPortNameLookup", [&] {
    Connection reports;
    reports.Open(context.settings.ConnReports);
    const Recordset port = reports.Execute(fmt::format(
        "SELECT DevName, IfDescr FROM VLAN WHERE RecNo={} AND IfIndex={}", recNo, ifIndex));
    std::string device = "n/a";
    std::string name = "n/a";
    if (!port.Eof()) {
      device = port.Field("DevName").AsText();
      name = port.Field("IfDescr").AsText();
    }
    devName = std::move(device);
    portName = std::move(name);
  });
}

}  // namespace quillon
