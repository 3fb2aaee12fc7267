// One select, whose rows are read back in thought before they are written.
#include "quillondb/export_table.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "csv_record.h"
#include "import/schema/sqlite_file.h"
#include "installation_owner.h"
#include "platform/failure.h"
#include "quillondb/csv/columns.h"
#include "quillondb/csv/findings.h"
#include "quillondb/csv/output.h"
#include "quillondb/csv/standard_stream.h"
#include "quillondb/csv/values.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

constexpr int kRowId = 0;  // as a column of the select; those of the table follow

std::vector<std::string> ColumnNames(const InputTable& table) {
  std::vector<std::string> names;
  for (const InputColumn& column : table.columns) names.push_back(column.name);
  return names;
}

std::string SelectText(const InputTable& table) {
  return fmt::format("SELECT rowid, {} FROM {} ORDER BY rowid", fmt::join(ColumnNames(table), ", "),
                     table.name);
}

FieldValue StoredText(const InputColumn& column, std::string_view text) {
  if (column.kind == InputColumn::Kind::kDate) {
    if (const auto moment = ParseDateTime(text)) return *moment;
  }
  return text;
}

FieldValue StoredValue(const InputColumn& column, const SqliteStatement& row, int place) {
  switch (row.StorageType(place)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return row.Integer(place);
    case SQLITE_FLOAT:
      return row.Real(place);
    case SQLITE_TEXT:
      return StoredText(column, row.TextView(place));
    default:
      throw ConversionFailure("bytes that are no text; write a text");
  }
}

// The field of the value, if a load makes the same of it.
std::string FieldOf(const InputColumn& column, const FieldValue& stored) {
  std::string text = FieldText(stored);
  const FieldValue loaded = ReadField(column, text);
  if (loaded == stored) return text;
  throw ConversionFailure(fmt::format("{} would come back as {}; write the one that is meant",
                                      ShownValue(stored), ShownValue(loaded)));
}

class TableExport {
 public:
  TableExport(const InputTable& table, CsvOutput& output, Findings& findings)
      : table_(table), output_(output), findings_(findings) {}

  void WriteHeader() { Write(ColumnNames(table_)); }

  // Goes on behind a row that cannot be written, to tell of the others.
  std::int64_t WriteRows(SqliteStatement& rows) {
    std::int64_t count = 0;
    std::vector<std::string> fields(table_.columns.size());
    for (; !findings_.isFull() && rows.Step(); ++count) {
      for (std::size_t i = 0; i < fields.size(); ++i) ReadStored(rows, i, fields[i]);
      if (findings_.empty()) Write(fields);
    }
    return count;
  }

 private:
  void ReadStored(const SqliteStatement& row, std::size_t index, std::string& field) {
    const InputColumn& column = table_.columns[index];
    try {
      field = FieldOf(column, StoredValue(column, row, static_cast<int>(index) + 1));
    } catch (const ConversionFailure& failure) {
      findings_.Add(fmt::format("{}, rowid {}, {}", table_.name, row.Integer(kRowId), column.name),
                    failure.what());
    }
  }

  void Write(const std::vector<std::string>& fields) {
    record_.clear();
    AppendCsvRecord(record_, fields);
    output_.WriteRecord(record_);
  }

  const InputTable& table_;
  CsvOutput& output_;
  Findings& findings_;
  std::string record_;
};

// With the rights of the owner, which end with this.
std::int64_t WriteTable(const std::string& directory, const InputTable& source, CsvOutput& output) {
  const OwnerRights rights(directory);
  const SqliteFile reports = SqliteFile::Open(directory + "/Reports.mdb");
  SqliteStatement rows = reports.Prepare(SelectText(source));
  Findings findings("Reports.mdb");
  TableExport walk(source, output, findings);
  walk.WriteHeader();
  const std::int64_t count = walk.WriteRows(rows);
  findings.Refuse(source.name + " is not exported; these fields have to be put right before:");
  return count;
}

}  // namespace

std::int64_t ExportTable(const std::string& directory, const std::string& table,
                         const std::string& csvPath) {
  RequireDatabases(directory);
  const InputTable source = FindInputTable(table);
  if (csvPath != kStandardStream && LeadsInside(csvPath, directory)) BecomeOwner(directory);
  CsvOutput output(csvPath);
  const std::int64_t count = WriteTable(directory, source, output);
  output.Commit();
  return count;
}

}  // namespace quillon
