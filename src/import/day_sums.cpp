// Adding up, trimming, appending.
#include "import/day_sums.h"

#include <fmt/format.h>

#include "import/age.h"
#include "import/history_table.h"
#include "import/row_pauses.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr int kDaysKept = 1200;
// The sums cover the 24 hours before their import. The day tables are stamped an hour later.
constexpr std::chrono::hours kDayOffset{24};

template <typename Number>
Number Converted(Number (*convert)(double), double sum, std::string_view name) {
  try {
    return convert(sum);
  } catch (const OverflowFailure& failure) {
    throw OverflowFailure(fmt::format("sum of {}: {}", name, failure.what()));
  }
}

}  // namespace

std::int32_t PlusLong(std::int32_t sum, double figure, std::string_view name) {
  return Converted(NumberToLong, sum + figure, name);
}

float PlusSingle(float sum, float figure, std::string_view name) {
  // The way over a double rounds as one addition of singles does.
  return Converted(NumberToSingle, static_cast<double>(sum) + static_cast<double>(figure), name);
}

std::int16_t PlusOne(std::int16_t count, std::string_view name) {
  return Converted(NumberToInteger16, count + 1, name);
}

void TrimSums(ImportContext& context, const std::string& table, std::string_view dateField) {
  HistoryTable history(context, table);
  Recordset& sums = history.rows;
  WriteGroup writes(context, history.connection);
  RowPauses pauses(context.loop, writes);
  for (; !sums.Eof(); sums.MoveNext()) {
    // Not the report day: a day that is replayed must not take years of sums with it.
    if (IsOlderThan(sums.Field(dateField), kDaysKept, context.clock.Now())) {
      writes.Begin();
      sums.Delete();
    }
    pauses.RowDone();
  }
  writes.Commit();
}

void AppendSums(ImportContext& context, const std::string& table, std::string_view dateField,
                const SumFields& fields) {
  HistoryTable history(context, table);
  Recordset& sums = history.rows;
  WriteGroup writes(context, history.connection);
  writes.Begin();
  sums.AddNew();
  const DateTime now = ReportDay(context.settings, context.clock);
  sums.SetField(dateField, Value::Date(now - kDayOffset));
  for (const auto& [field, value] : fields) sums.SetField(field, value);
  sums.Update();
  writes.Commit();
}

}  // namespace quillon
