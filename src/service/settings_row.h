// The single row of a settings table.
#pragma once

#include <string>
#include <string_view>

#include "platform/database.h"
#include "service/settings.h"

namespace quillon {

// Holds the row on a connection of its own. DatabaseFailure where the table or its row is
// missing.
class SettingsRow {
 public:
  SettingsRow(const Settings& settings, const char* table);

  Value Field(std::string_view name) const { return row_.Field(name); }
  // What is stored is written by Update.
  void Store(std::string_view name, const std::string& text) {
    row_.SetField(name, Value::Text(text));
  }
  void Update() { row_.Update(); }

 private:
  Connection main_;
  Recordset row_;
};

}  // namespace quillon
