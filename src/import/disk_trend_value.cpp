// One select a value.
#include "import/disk_trend_value.h"

#include <fmt/format.h>

#include "service/error_exit.h"

namespace quillon {

void DiskReadTrendValue(TrendReading& reading, const std::string& table, std::int32_t recNo,
                        const std::string& storDescr, std::int16_t& value) {
  const auto read = [&] {
    const Recordset row = reading.history.Execute(
        fmt::format("SELECT UsedProc FROM {} WHERE RecNo = {} AND StorDescr = '{}'", table, recNo,
                    storDescr),
        SelectTime::kOfItsOwn);
    value = row.Eof() ? std::int16_t{0} : row.Field("UsedProc").AsInteger16();
  };
  const auto beforeEvent = [&](const std::exception& failure) {
    reading.writes.Commit();
    return FailureText(reading.context.settings, failure);
  };
  ErrorExit(reading.context.diagnostics, "modImport", "DiskReadTrendValue", read, beforeEvent);
}

}  // namespace quillon
