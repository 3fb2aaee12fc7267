// A temporary table, and one statement that moves it.
#include "quillondb/csv/staged_rows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "platform/failure.h"

namespace quillon {
namespace {

// The cache is the engine's memory for the pages of a transaction: with its usual 2 MiB the indexes
// of a large table would go to the disk and come back again and again.
constexpr const char* kSetUp =
    "PRAGMA cache_size = -65536;"  // KiB, where below 0
    "PRAGMA temp_store = FILE;"
    "PRAGMA temp_store_directory = {};"
    "CREATE TEMP TABLE StagedRows AS SELECT {} FROM {} WHERE FALSE;"
    "BEGIN";  // of the temporary table alone

std::string NamesOf(const InputTable& table) {
  std::vector<std::string_view> names;
  for (const InputColumn& column : table.columns) names.push_back(column.name);
  return fmt::format("{}", fmt::join(names, ", "));
}

SqliteStatement PreparedInsert(const SqliteFile& file, const InputTable& table,
                               const std::string& directory) {
  file.RunScript(fmt::format(kSetUp, QuotedName(directory), NamesOf(table), table.name));
  const std::vector<std::string_view> places(table.columns.size(), "?");
  return file.Prepare(fmt::format("INSERT INTO StagedRows VALUES ({})", fmt::join(places, ", ")));
}

// Whoever waits in vain learns for what.
SqliteTransaction BeginToWrite(const SqliteFile& file) {
  try {
    return SqliteTransaction(file);
  } catch (const DatabaseFailure& failure) {
    const std::string_view text = failure.what();
    if (!text.ends_with(sqlite3_errstr(SQLITE_BUSY))) throw;
    throw DatabaseFailure(
        "Reports.mdb: another program has kept the database locked for 5 s; nothing was written, "
        "try"
        " again");
  }
}

}  // namespace

StagedRows::StagedRows(const SqliteFile& file, const InputTable& table,
                       const std::string& directory)
    : file_(file), table_(table), insert_(PreparedInsert(file, table, directory)) {}

void StagedRows::Bind(std::size_t column, const FieldValue& value) {
  struct Binder {
    SqliteStatement& insert;
    int position;
    void operator()(std::monostate) const { insert.BindNull(position); }
    void operator()(std::int64_t number) const { insert.Bind(position, number); }
    void operator()(double number) const { insert.Bind(position, number); }
    void operator()(std::string_view text) const { insert.Bind(position, text); }
    void operator()(DateTime moment) const { insert.Bind(position, DateTimeText(moment)); }
  };
  std::visit(Binder{insert_, static_cast<int>(column) + 1}, value);
}

void StagedRows::ReplaceTable() {
  file_.RunScript("COMMIT");
  SqliteTransaction transaction = BeginToWrite(file_);
  file_.RunScript("DELETE FROM " + table_.name);
  file_.RunScript(fmt::format("INSERT INTO {0} ({1}) SELECT {1} FROM StagedRows ORDER BY rowid",
                              table_.name, NamesOf(table_)));
  transaction.Commit();
}

}  // namespace quillon
