// Charsets, and the receivers.
#include "quillondb/check/settings.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/text_encoding.h"
#include "quillondb/check/receivers.h"

namespace quillon {
namespace {

void CheckCharset(const SqliteFile& file, const std::string& place, const std::string& table,
                  std::vector<std::string>& findings) {
  SqliteStatement rows =
      file.Prepare("SELECT CharSet FROM " + table + " WHERE CharSet IS NOT NULL");
  while (rows.Step()) {
    const std::string name = rows.Text(0);
    if (IsKnownCharset(name)) continue;
    findings.push_back(fmt::format(
        "{}CharSet in {} is {}, which this machine does not know; write a name out of 'iconv -l'",
        place, table, name.empty() ? "empty" : "'" + name + "'"));
  }
}

}  // namespace

void CheckSettings(const SqliteFile& file, const std::string& place, const TableShape& table,
                   std::vector<std::string>& findings) {
  if (table.name == "Settings_RepReceiver") CheckReceivers(file, place, findings);
  if (std::ranges::find(table.columns, "CharSet", &ColumnShape::name) != table.columns.end()) {
    CheckCharset(file, place, table.name, findings);
  }
}

}  // namespace quillon
