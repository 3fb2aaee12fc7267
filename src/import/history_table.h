// A table of History.mdb.
#pragma once

#include <string>

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

// Opened as a whole for change, on a connection of its own. A DatabaseFailure where file or table
// are missing.
struct HistoryTable {
  HistoryTable(const ImportContext& context, const std::string& table) {
    connection.Open(context.settings.ConnHistory);
    rows.Open(table, connection, CursorType::kStatic, LockType::kOptimistic);
  }

  Connection connection;
  Recordset rows;
};

}  // namespace quillon
