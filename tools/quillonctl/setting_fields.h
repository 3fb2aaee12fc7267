// The fields of a settings table, as options and as rows of the output: one list for each table
// says everything that the commands on it need to know.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "quillonctl/output.h"

namespace quillon {

struct SettingField {
  enum class Kind { kText, kNumber, kTruth, kSecret };

  const char* option;  // without its dashes: "mail-server"
  const char* column;  // of the table
  Kind kind;
  const char* help;  // a line of --help
  // What is wrong with a text as it was typed; empty where nothing is. Null: nothing can be, beyond
  // what every text of the kind is judged by.
  std::string (*complaint)(const std::string& text);
  // The typed text as it is stored, where the two differ: "weekly" as "2". Null: as it is.
  std::string (*stored)(const std::string& text) = nullptr;
  // The stored text as it is shown. Null: as it is. (A secret is only told to be there.)
  std::string (*shown)(const std::string& text) = nullptr;
};
using SettingFieldList = std::vector<SettingField>;

// Texts as they were typed, by option. Those of truths are "yes" or "no".
using SettingChange = std::map<std::string, std::string>;

// The database of the settings.
SqliteFile OpenSettings(const std::string& directory);

// The complaints about a change, each with its option in front.
std::vector<std::string> Complaints(const SettingFieldList& fields, const SettingChange& change);

// Tells the operator each complaint, and returns whether there was none.
bool IsAccepted(const std::vector<std::string>& complaints);

// The id of the first row; a DatabaseFailure where the table has none.
std::int64_t FirstRow(const SqliteFile& file, const char* table);

// As what the values of the field are put out.
OutputField::Kind OutputKind(const SettingField& field);

// The columns of the fields in their order, for a select.
std::string ColumnList(const SettingFieldList& fields);

// The row of such a select as it is shown, where the first field stands in that column. A null is
// empty, and a number or truth that is none is a text.
OutputFields ShownFields(const SettingFieldList& fields, const SqliteStatement& row,
                         int firstColumn);

// The same of the row of that id; nothing where there is none.
OutputFields ShownRow(const SqliteFile& file, const char* table, const SettingFieldList& fields,
                      std::int64_t rowId);

// Writes the change, which nobody has complained about, into the row of that id.
void StoreChange(const SqliteFile& file, const char* table, const SettingFieldList& fields,
                 const SettingChange& change, std::int64_t rowId);

// Adds a row, of which the change has every field.
void StoreRow(const SqliteFile& file, const char* table, const SettingFieldList& fields,
              const SettingChange& row);

}  // namespace quillon
