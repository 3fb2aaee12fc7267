// Header, records, and then the table.
#include "quillondb/load_table.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "installation_owner.h"
#include "platform/failure.h"
#include "quillondb/csv/columns.h"
#include "quillondb/csv/findings.h"
#include "quillondb/csv/input.h"
#include "quillondb/csv/reader.h"
#include "quillondb/csv/staged_rows.h"
#include "quillondb/csv/standard_stream.h"
#include "quillondb/csv/values.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

// Which column of the table each field of a record is for, as the first line tells it.
using FieldOrder = std::vector<std::size_t>;

// The way of a file's records to the rows of its table. What is wrong is collected, and then no
// more rows are.
class TableLoad {
 public:
  TableLoad(const InputTable& table, CsvReader& reader, Findings& findings)
      : table_(table), reader_(reader), findings_(findings) {}

  // The first line: each column once, in any order. An input without a line lacks all of them.
  void ReadHeader() {
    CsvFields names;
    if (!Next(names) && !findings_.empty()) return;
    for (const std::string_view name : names) AddColumn(name);
    TellMissing();
  }

  std::int64_t ReadRecords(StagedRows& rows) {
    std::int64_t count = 0;
    CsvFields fields;
    for (; !findings_.isFull() && Next(fields); ++count) AddRecord(fields, rows);
    return count;
  }

 private:
  // False behind the last record, and behind one at which the reading ended.
  bool Next(CsvFields& fields) {
    try {
      return reader_.Next(fields);
    } catch (const Failure& failure) {
      findings_.Add(BrokenPlace(), failure.what());
      return false;
    }
  }

  // With the column, where the record is not the one that names them.
  std::string BrokenPlace() const {
    const auto field = reader_.brokenField();
    if (!field) return Place();
    const std::string name = *field < order_.size() ? table_.columns[order_[*field]].name
                                                    : "field " + std::to_string(*field + 1);
    return Place() + ", " + name;
  }

  std::string Place() const { return fmt::format("line {}", reader_.line()); }

  void AddColumn(std::string_view name) {
    const auto column = std::ranges::find_if(table_.columns, [&](const InputColumn& candidate) {
      return SameName(candidate.name, name);
    });
    const auto index = static_cast<std::size_t>(column - table_.columns.begin());
    if (column == table_.columns.end()) {
      findings_.Add(Place(), ShownValue(name) + " is no column of " + table_.name);
    } else if (std::ranges::find(order_, index) != order_.end()) {
      findings_.Add(Place(), column->name + " is named twice");
    } else {
      order_.push_back(index);
    }
  }

  void TellMissing() {
    std::vector<std::string_view> missing;
    for (std::size_t index = 0; index < table_.columns.size(); ++index) {
      const bool isNamed = std::ranges::find(order_, index) != order_.end();
      if (!isNamed) missing.push_back(table_.columns[index].name);
    }
    if (missing.empty()) return;
    findings_.Add(Place(), fmt::format("{} missing: {}; the names stand with commas between them",
                                       missing.size() == 1 ? "a column is" : "columns are",
                                       fmt::join(missing, ", ")));
  }

  void AddRecord(const CsvFields& fields, StagedRows& rows) {
    if (fields.size() != order_.size()) {
      findings_.Add(Place(), fmt::format("the number of fields is {}, and that of columns {}",
                                         fields.size(), order_.size()));
      return;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) BindField(order_[i], fields[i], rows);
    if (findings_.empty()) rows.Add();
  }

  void BindField(std::size_t index, std::string_view field, StagedRows& rows) {
    const InputColumn& column = table_.columns[index];
    try {
      rows.Bind(index, ReadField(column, field));
    } catch (const ConversionFailure& failure) {
      findings_.Add(Place() + ", " + column.name, failure.what());
    }
  }

  const InputTable& table_;
  CsvReader& reader_;
  Findings& findings_;
  FieldOrder order_;
};

// Inside of the installation its owner says what has the name: a link would lead him no further
// than he gets himself, and at a pipe nobody waits.
CsvInput OpenInput(const std::string& path, const std::string& directory) {
  const bool isInside = path != kStandardStream && LeadsInside(path, directory);
  if (isInside) BecomeOwner(directory);
  return CsvInput(path, isInside ? CsvSource::kFile : CsvSource::kAnything);
}

}  // namespace

std::int64_t LoadTable(const std::string& directory, const std::string& table,
                       const std::string& csvPath) {
  RequireDatabases(directory);
  const InputTable target = FindInputTable(table);
  CsvInput input = OpenInput(csvPath, directory);
  const OwnerRights rights(directory);
  CsvReader reader(input.stream());
  const std::string refusal = input.name() + " is not loaded, and nothing was written:";
  Findings findings(input.name());
  TableLoad load(target, reader, findings);
  load.ReadHeader();
  findings.Refuse(refusal);

  const SqliteFile reports = SqliteFile::Open(directory + "/Reports.mdb");
  StagedRows rows(reports, target, directory);
  const std::int64_t count = load.ReadRecords(rows);
  findings.Refuse(refusal);
  rows.ReplaceTable();
  return count;
}

}  // namespace quillon
