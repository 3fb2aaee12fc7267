// Opening the row.
#include "service/settings_row.h"

namespace quillon {

SettingsRow::SettingsRow(const Settings& settings, const char* table) {
  main_.Open(settings.ConnMain);
  row_.Open(table, main_, CursorType::kStatic, LockType::kOptimistic);
  row_.Field("Status");  // fails here where the table has no row
}

}  // namespace quillon
