// Old installations that a test makes up: tables in memory in the place of Jet files.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "import/schema/databases.h"
#include "import/schema/shapes.h"
#include "platform/date_time.h"
#include "quillondb/jet/jet_source.h"

namespace quillon {

// The days since 1899-12-30 of "YYYY-MM-DD HH:MM:SS", from that day on.
inline JetDate JetDateOf(const std::string& text) {
  using FractionalDays = std::chrono::duration<double, std::chrono::days::period>;
  return {FractionalDays(ParseDateTime(text).value() - ZeroDate()).count()};
}

// Fields of a row by their columns; the others are of the type's nothing.
using JetFields = std::map<std::string, JetValue>;

class MadeUpSource : public JetSource {
 public:
  std::string Name() const override { return "old.mdb"; }

  std::vector<JetTable> Tables() override {
    std::vector<JetTable> tables;
    for (const MadeUpTable& table : tables_) {
      tables.push_back(table.shape);
      tables.back().rows = static_cast<std::int64_t>(table.rows.size());
    }
    return tables;
  }

  void ReadRows(const JetTable& wanted, const JetRowHandler& handler) override {
    if (wanted.name == failing_) throw std::runtime_error("cannot be read to its end");
    for (const JetRow& row : Find(wanted.name).rows) handler(row);
  }

  void AddTable(const std::string& name, const std::vector<ColumnShape>& columns) {
    MadeUpTable table{{name, {}, 0}, columns, {}};
    for (const ColumnShape& column : columns) table.shape.columns.push_back(column.name);
    tables_.push_back(std::move(table));
  }

  void AddRow(const std::string& name, const JetFields& fields) {
    MadeUpTable& table = Find(name);
    JetRow row;
    for (const ColumnShape& column : table.columns) {
      const auto field = fields.find(column.name);
      row.push_back(field == fields.end() ? Nothing(column.declaredType) : field->second);
    }
    table.rows.push_back(std::move(row));
  }

  void RemoveTable(const std::string& name) {
    std::erase_if(tables_, [&](const MadeUpTable& table) { return table.shape.name == name; });
  }

  void RenameTable(const std::string& from, const std::string& to) { Find(from).shape.name = to; }

  void RenameColumn(const std::string& table, const std::string& from, const std::string& to) {
    std::ranges::replace(Find(table).shape.columns, from, to);
  }

  void RemoveColumn(const std::string& name, const std::string& column) {
    MadeUpTable& table = Find(name);
    const auto found = std::ranges::find(table.shape.columns, column);
    const auto place = found - table.shape.columns.begin();
    table.shape.columns.erase(found);
    table.columns.erase(table.columns.begin() + place);
    for (JetRow& row : table.rows) row.erase(row.begin() + place);
  }

  // Reading the rows of that table fails from now on.
  void Damage(const std::string& name) { failing_ = name; }

 private:
  struct MadeUpTable {
    JetTable shape;
    std::vector<ColumnShape> columns;
    std::vector<JetRow> rows;
  };

  static JetValue Nothing(const std::string& declaredType) {
    if (declaredType == "TEXT") return std::string();
    if (declaredType == "BOOLEAN") return false;
    if (declaredType == "DATE") return JetDateOf("2024-05-01 03:00:00");
    return std::int64_t{0};
  }

  MadeUpTable& Find(const std::string& name) {
    for (MadeUpTable& table : tables_) {
      if (table.shape.name == name) return table;
    }
    throw std::logic_error("no made-up table " + name);
  }

  std::vector<MadeUpTable> tables_;
  std::string failing_;
};

// A source with the tables of that database, none of which has a row. Day tables are added with
// AddOldDay.
inline MadeUpSource EmptyOld(std::string_view fileName) {
  MadeUpSource source;
  for (const TableShape& table : ExpectedTables(fileName)) {
    source.AddTable(table.name, table.columns);
  }
  return source;
}

// A day table of an old history, empty, with its control row.
inline void AddOldDay(MadeUpSource& source, const DayTableKind& kind, const std::string& table,
                      const std::string& moment) {
  const std::string control(kind.controlTable);
  source.AddTable(table, ExpectedDayColumns(control));
  source.AddRow(control, {{std::string(kind.dateColumn), JetDateOf(moment)}, {"HistTable", table}});
}

}  // namespace quillon
