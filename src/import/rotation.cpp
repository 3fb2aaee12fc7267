// Choosing, emptying and stamping a day table.
#include "import/rotation.h"

#include "import/age.h"
#include "import/history_table.h"
#include "import/row_pauses.h"
#include "platform/text_encoding.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

constexpr int kDaysKept = 45;

constexpr std::int16_t kEmptiedPauseMs = 100;

DateTime Present(const ImportContext& context) {
  return ReportDay(context.settings, context.clock);
}

}  // namespace

void FillFreeTable(ImportContext& context, const Rotation& rotation) {
  HistoryTable history(context, std::string(rotation.controlTable));
  Recordset& control = history.rows;
  while (!control.Eof() &&
         !IsOlderThan(control.Field(rotation.dateField), kDaysKept, Present(context))) {
    control.MoveNext();
  }
  if (control.Eof()) return;
  const std::string table = control.Field("HistTable").AsText();
  ClearTable_(context, table);
  rotation.CopyDay(context, table);
  WriteGroup writes(context, history.connection);
  writes.Begin();
  control.SetField(rotation.dateField, Value::Date(HistoryDay(Present(context))));
  control.Update();
  writes.Commit();
}

void ClearTable_(ImportContext& context, const std::string& table) {
  ErrorExit(context.diagnostics, "modImport", NameWithTable(context, "ClearTable_", table), [&] {
    HistoryTable history(context, table);
    WriteGroup writes(context, history.connection);
    while (!history.rows.Eof()) {
      writes.Begin();
      const int deleted = history.rows.DeleteRows(RowPauses::kRows);
      writes.Commit();
      if (deleted == RowPauses::kRows) context.loop.DelayMs(RowPauses::kPauseMs);
    }
    context.loop.DelayMs(kEmptiedPauseMs);
  });
}

std::string NameWithTable(const ImportContext& context, std::string_view procedure,
                          const std::string& table) {
  return std::string(procedure) + PageText(table, context.settings.CharSet);
}

}  // namespace quillon
