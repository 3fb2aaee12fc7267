// The rows of the settings tables.
#include "service/stored_settings.h"

#include "platform/database.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

void OpenTable(Recordset& row, Connection& main, const char* table) {
  row.Open(table, main, CursorType::kStatic, LockType::kOptimistic);
}

void ReadSendAppEvents(Connection& main, Settings& settings) {
  Recordset row;
  OpenTable(row, main, "Settings_SnmpAgent");
  settings.SendAppEvents = row.Field("SendAppEvents").AsBoolean();
}

void ReadDisplaySettings(const Recordset& row, Settings& settings) {
  settings.DebugMode = row.Field("DebugMode").AsBoolean();
  settings.DatumFormat = row.Field("DatumFormat").AsText();
}

}  // namespace

std::string ReadGeneralSettings(Settings& settings) {
  Connection main;
  main.Open(settings.ConnMain);
  Recordset row;
  OpenTable(row, main, "Settings_General");
  ReadDisplaySettings(row, settings);
  return row.Field("SnmpcDir").AsText();
}

void RefreshSettings(ServiceContext& context) {
  ErrorExit(context.diagnostics, "modQuillonWeb", "RefreshSettings", [&] {
    Connection main;
    main.Open(context.settings.ConnMain);
    ReadSendAppEvents(main, context.settings);
    Recordset row;
    OpenTable(row, main, "Settings_General");
    ReadDisplaySettings(row, context.settings);
  });
}

}  // namespace quillon
