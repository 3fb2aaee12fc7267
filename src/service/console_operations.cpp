// The buttons.
#include "service/console_operations.h"

#include <cstdint>

#include "import/period_text.h"
#include "platform/database.h"
#include "platform/number_text.h"
#include "render/stylesheet.h"
#include "service/report_day.h"

namespace quillon {
namespace {

// The hour of the clock at which reports end, where an operator stands in for the product.
constexpr std::int16_t kReportHour = 3;

// The one row of a settings table.
struct TableRow {
  TableRow(const Settings& settings, const char* table) {
    main.Open(settings.ConnMain);
    row.Open(table, main, CursorType::kStatic, LockType::kOptimistic);
  }

  Connection main;
  Recordset row;
};

void ReadWebServer(const Settings& settings, ConsoleForm& form) {
  const TableRow table(settings, "Settings_WebServer");
  form.txtIpAddr = table.row.Field("IpAddr").AsText();
  form.txtListeningPort = table.row.Field("TcpPort").AsText();
  form.chkEnabled = table.row.Field("Enabled").AsBoolean();
  form.txtStatus = table.row.Field("Status").AsText();
  form.cboCharSet = table.row.Field("CharSet").AsText();
}

void ReadGeneral(const Settings& settings, ConsoleForm& form) {
  const TableRow table(settings, "Settings_General");
  form.chkDebugMode = table.row.Field("DebugMode").AsBoolean();
  form.cboDatumFormat = table.row.Field("DatumFormat").AsText();
}

void SaveWebServer(const Settings& settings, const ConsoleForm& form) {
  TableRow table(settings, "Settings_WebServer");
  table.row.SetField("IpAddr", Value::Text(form.txtIpAddr));
  table.row.SetField("TcpPort", Value::Integer(TextToLong(form.txtListeningPort)));
  table.row.SetField("Enabled", Value::Boolean(form.chkEnabled));
  table.row.SetField("CharSet", Value::Text(form.cboCharSet));
  table.row.Update();
}

void SaveGeneral(const Settings& settings, const ConsoleForm& form) {
  TableRow table(settings, "Settings_General");
  table.row.SetField("DebugMode", Value::Boolean(form.chkDebugMode));
  table.row.SetField("DatumFormat", Value::Text(form.cboDatumFormat));
  table.row.Update();
}

}  // namespace

void cmdRead(const Settings& settings, ConsoleForm& form) {
  ReadWebServer(settings, form);
  ReadGeneral(settings, form);
}

void cmdSave(const Settings& settings, const ConsoleForm& form) {
  SaveWebServer(settings, form);
  SaveGeneral(settings, form);
}

void cmdApplyChanges(const Diagnostics& diagnostics, const ConsoleForm& form) {
  CreateCss(diagnostics, form.cboColorTheme);
}

std::string cmdImport(OperatorContext& context) {
  context.jobs.UpdateHistory_Db(kReportHour);
  const std::int64_t startTick = context.clock.TickMs();
  bool done = false;
  context.jobs.Import(done);
  return "ok " + std::to_string(context.clock.TickMs() - startTick);
}

void cmdAutoCreate(OperatorContext& context) {
  context.jobs.AutoCreate();
}

void cmdMailCreate(OperatorContext& context) {
  context.settings.DebugMode = true;  // a mail by hand always leaves its trace
  context.jobs.MailReports();
}

bool cmdSetRepDate(OperatorContext& context) {
  if (!context.period.ReportStart.empty() || !context.settings.RepDateOverride) return false;
  const DateTime day = ReportDay(context.settings, context.clock);
  const std::string& pattern = context.settings.DatumFormat;
  context.period.ReportStart = PeriodText(HistoryDay(day), pattern, kReportHour);
  context.period.ReportEnd = PeriodText(day, pattern, kReportHour);
  return true;
}

}  // namespace quillon
