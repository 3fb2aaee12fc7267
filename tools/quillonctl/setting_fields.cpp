// Judging, storing and showing by the list of the fields. The SQL holds names out of the lists
// alone; every value is bound.
#include "quillonctl/setting_fields.h"

#include <fmt/format.h>

#include "platform/failure.h"
#include "platform/number_text.h"
#include "quillonctl/settings_rules.h"

namespace quillon {
namespace {

using Kind = SettingField::Kind;

std::string ComplaintAbout(const SettingField& field, const std::string& typed) {
  if (std::string complaint = rules::PlainText(typed); !complaint.empty()) return complaint;
  return field.complaint == nullptr ? std::string() : field.complaint(typed);
}

void BindTyped(const SettingField& field, const std::string& typed, int position,
               SqliteStatement& statement) {
  const std::string stored = field.stored == nullptr ? typed : field.stored(typed);
  switch (field.kind) {
    case Kind::kNumber:
      return statement.Bind(position, std::int64_t{TextToLong(stored)});
    case Kind::kTruth:
      return statement.Bind(position, stored == "yes" ? 1 : 0);
    case Kind::kText:
    case Kind::kSecret:
      return statement.Bind(position, std::string_view(stored));
  }
}

// A piece of SQL for each field that the change has, with commas between them.
template <typename Piece>
std::string Listed(const SettingFieldList& fields, const SettingChange& change,
                   const Piece& piece) {
  std::string list;
  for (const SettingField& field : fields) {
    if (!change.contains(field.option)) continue;
    list.append(list.empty() ? "" : ", ").append(piece(field));
  }
  return list;
}

// Binds the values of the change, in the order in which Listed names them, and returns their
// number.
int BindChange(const SettingFieldList& fields, const SettingChange& change,
               SqliteStatement& statement) {
  int position = 0;
  for (const SettingField& field : fields) {
    const auto typed = change.find(field.option);
    if (typed != change.end()) BindTyped(field, typed->second, ++position, statement);
  }
  return position;
}

OutputField ShownField(const SettingField& field, const SqliteStatement& row, int column) {
  // Asked for first: the engine tells the type no more once a value was read as another one.
  const bool isInteger = row.StorageType(column) == SQLITE_INTEGER;
  const std::string text = row.Text(column);
  if (field.kind == Kind::kSecret) return {field.option, text.empty() ? "not set" : "set"};
  if (field.shown != nullptr) return {field.option, field.shown(text)};
  if (!isInteger) return {field.option, text};
  if (field.kind != Kind::kTruth) return {field.option, text, OutputKind(field)};
  return {field.option, row.Integer(column) != 0 ? "yes" : "no", OutputKind(field)};
}

}  // namespace

SqliteFile OpenSettings(const std::string& directory) {
  return SqliteFile::Open(directory + "/Quillon.mdb");
}

std::vector<std::string> Complaints(const SettingFieldList& fields, const SettingChange& change) {
  std::vector<std::string> complaints;
  for (const SettingField& field : fields) {
    const auto typed = change.find(field.option);
    if (typed == change.end()) continue;
    const std::string complaint = ComplaintAbout(field, typed->second);
    if (!complaint.empty()) complaints.push_back(fmt::format("--{}: {}", field.option, complaint));
  }
  return complaints;
}

bool IsAccepted(const std::vector<std::string>& complaints) {
  for (const std::string& complaint : complaints) Complain(complaint);
  return complaints.empty();
}

std::int64_t FirstRow(const SqliteFile& file, const char* table) {
  SqliteStatement first = file.Prepare(fmt::format("SELECT MIN(rowid) FROM {}", table));
  if (!first.Step() || first.IsNull(0)) {
    throw DatabaseFailure(fmt::format("Quillon.mdb: {} has no row", table));
  }
  return first.Integer(0);
}

OutputField::Kind OutputKind(const SettingField& field) {
  if (field.shown != nullptr) return OutputField::Kind::kText;
  switch (field.kind) {
    case Kind::kNumber:
      return OutputField::Kind::kNumber;
    case Kind::kTruth:
      return OutputField::Kind::kTruth;
    case Kind::kText:
    case Kind::kSecret:
      return OutputField::Kind::kText;
  }
  return OutputField::Kind::kText;
}

std::string ColumnList(const SettingFieldList& fields) {
  std::string list;
  for (const SettingField& field : fields) {
    list.append(list.empty() ? "" : ", ").append(field.column);
  }
  return list;
}

OutputFields ShownFields(const SettingFieldList& fields, const SqliteStatement& row,
                         int firstColumn) {
  OutputFields shown;
  for (const SettingField& field : fields) shown.push_back(ShownField(field, row, firstColumn++));
  return shown;
}

OutputFields ShownRow(const SqliteFile& file, const char* table, const SettingFieldList& fields,
                      std::int64_t rowId) {
  SqliteStatement row =
      file.Prepare(fmt::format("SELECT {} FROM {} WHERE rowid = ?", ColumnList(fields), table));
  row.Bind(1, rowId);
  return row.Step() ? ShownFields(fields, row, 0) : OutputFields();
}

void StoreChange(const SqliteFile& file, const char* table, const SettingFieldList& fields,
                 const SettingChange& change, std::int64_t rowId) {
  const std::string assignments = Listed(
      fields, change, [](const SettingField& field) { return std::string(field.column) + " = ?"; });
  SqliteStatement update =
      file.Prepare(fmt::format("UPDATE {} SET {} WHERE rowid = ?", table, assignments));
  update.Bind(BindChange(fields, change, update) + 1, rowId);
  update.Finish();
}

void StoreRow(const SqliteFile& file, const char* table, const SettingFieldList& fields,
              const SettingChange& row) {
  const std::string columns =
      Listed(fields, row, [](const SettingField& field) { return field.column; });
  const std::string values = Listed(fields, row, [](const SettingField&) { return "?"; });
  SqliteStatement insert =
      file.Prepare(fmt::format("INSERT INTO {} ({}) VALUES ({})", table, columns, values));
  BindChange(fields, row, insert);
  insert.Finish();
}

}  // namespace quillon
