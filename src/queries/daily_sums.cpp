// The walk over daily sums.
#include "queries/daily_sums.h"

#include "queries/days_back.h"

namespace quillon {

void ReadDailySums(const QueryContext& context, const std::string& select,
                   std::string_view dateField, Days<DateTime>& dates,
                   const std::function<void(int position, const Recordset* sums)>& fill) {
  Connection history;
  history.Open(context.settings.ConnHistory);
  Recordset sums = history.Execute(select);
  DaysBack days(context);
  while (!sums.Eof() && days.Next()) {
    dates[days.Position()] = days.Wanted();
    if (sums.Field(dateField).IsOfDay(days.Wanted())) {
      fill(days.Position(), &sums);
      sums.MoveNext();
    } else {
      fill(days.Position(), nullptr);
    }
  }
  sums.Close();
  history.Close();
  // Unlike in a device report nothing of an earlier one stays.
  while (days.Next()) {
    dates[days.Position()] = days.Wanted();
    fill(days.Position(), nullptr);
  }
}

}  // namespace quillon
