// Days of device reports.
#include "queries/device_days.h"

#include <fmt/format.h>

#include "queries/days_back.h"

namespace quillon {
namespace {

constexpr int kBackgroundPauseMs = 20;  // of a report that nobody waits for

}  // namespace

void FindDayTables(const QueryContext& context, ReusedConnection& history,
                   const ControlTable& control, Days<DateTime>& dates, Days<std::string>& tables) {
  auto connection = history.Take();
  Recordset rows = connection->Execute(
      fmt::format("SELECT * FROM {} ORDER BY {} DESC", control.name, control.dateField));
  DaysBack days(context);
  while (!rows.Eof() && days.Next()) {
    const bool isOfDay = rows.Field(control.dateField).IsOfDay(days.Wanted());
    dates[days.Position()] = days.Wanted();
    tables[days.Position()] = isOfDay ? rows.Field("HistTable").AsText() : "";
    if (isOfDay) rows.MoveNext();
  }
  rows.Close();
  history.Keep(std::move(connection));
}

void FetchDays(const QueryContext& context, const Days<std::string>& tables, Panels panels,
               bool background, const std::function<void(int position)>& fetch) {
  for (int position = 1; position <= tables.kSize; ++position) {
    if (tables[position].empty()) {
      for (Panel* panel : panels) SetMissing(*panel, position);
    } else {
      fetch(position);
      if (background) context.loop.DelayMs(kBackgroundPauseMs);
    }
    RaiseAxisTopsAndWait(context, panels, position);
  }
}

}  // namespace quillon
