// Columns by their declared types, and those that take more or less than their type.
#include "quillondb/csv/columns.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <limits>

#include "import/schema/shapes.h"
#include "platform/failure.h"
#include "platform/sqlite_statement.h"

namespace quillon {
namespace {

using Kind = InputColumn::Kind;

constexpr std::string_view kReportsFile = "Reports.mdb";

constexpr std::nullopt_t kWrong = std::nullopt;  // as an empty field
constexpr FieldValue kNull;
constexpr FieldValue kUnknown = std::int64_t{-1};
constexpr FieldValue kNoTrend = std::int64_t{0};
constexpr FieldValue kNoText = std::string_view();

template <typename Number>
constexpr NumberRange RangeOf() {
  return {static_cast<double>(std::numeric_limits<Number>::lowest()),
          static_cast<double>(std::numeric_limits<Number>::max())};
}

constexpr NumberRange kLong = RangeOf<std::int32_t>();
constexpr NumberRange kDevice = {1, kLong.most};
constexpr NumberRange kAnyNumber = RangeOf<double>();
constexpr NumberRange kHalfSingle = {RangeOf<float>().least / 2, RangeOf<float>().most / 2};

struct TypeRule {
  std::string_view declaredType;
  Kind kind;
  NumberRange range;
  std::optional<FieldValue> ifEmpty;
};

constexpr TypeRule kTypeRules[] = {
    {"TEXT", Kind::kText, {}, kNoText},
    {"DATE", Kind::kDate, {}, kWrong},
    {"BOOLEAN", Kind::kTruth, {}, kWrong},
    {"INTEGER", Kind::kWhole, kLong, kWrong},
    {"NUMERIC", Kind::kNumber, kAnyNumber, kWrong},
};

// What the readers of a column make of it. A null date is of no day, so its row is not taken for
// one of today; any other null would be a failure of whatever reads it. The import adds the figures
// of the ports up in whole numbers of 32 bits, and the two sizes of a storage in 32-bit floats: one
// figure beyond them would take the sums, or the storages, of a whole day away. The share of a
// storage is read as a number of 16 bits. A search looks for an address in its one form alone.
struct ColumnRule {
  std::string_view column;
  NumberRange range;
  std::optional<FieldValue> ifEmpty;
  std::optional<Kind> kind = std::nullopt;  // where its type does not tell it
};

constexpr ColumnRule kColumnRules[] = {
    {"RecNo", kDevice, kWrong},
    {"VlanID", kLong, kUnknown},
    {"InOctetsDate", {}, kNull},
    {"LastUpdate", {}, kNull},
    {"InHCOctetsMb24H", kLong, kUnknown},
    {"OutHCOctetsMb24H", kLong, kUnknown},
    {"InBroadCastPpm24H", kLong, kWrong},
    {"InMultiCastPpm24H", kLong, kUnknown},
    {"InErrorsTot24H", kLong, kWrong},
    {"OutErrorsTot24H", kLong, kWrong},
    {"MacAddr", {}, kNoText, Kind::kMacAddress},
    {"FreeRawM", kHalfSingle, kWrong},
    {"UsedRawM", kHalfSingle, kWrong},
    {"UsedProc", RangeOf<std::int16_t>(), kWrong},
    {"UsedProc14Trend", kAnyNumber, kNoTrend},
    {"UsedProc30Trend", kAnyNumber, kNoTrend},
};

InputColumn ColumnByType(const ColumnShape& shape) {
  for (const TypeRule& rule : kTypeRules) {
    if (!SameName(rule.declaredType, shape.declaredType)) continue;
    return {shape.name, rule.kind, rule.range, rule.ifEmpty};
  }
  throw DatabaseFailure(
      fmt::format("{}: {} has a type without a form in CSV", kReportsFile, shape.name));
}

InputColumn ColumnOf(const ColumnShape& shape) {
  InputColumn column = ColumnByType(shape);
  for (const ColumnRule& rule : kColumnRules) {
    if (rule.column != shape.name) continue;
    column.range = rule.range;
    column.ifEmpty = rule.ifEmpty;
    column.kind = rule.kind.value_or(column.kind);
  }
  return column;
}

}  // namespace

std::vector<std::string> InputTableNames() {
  std::vector<std::string> names;
  for (const TableShape& shape : ExpectedTables(kReportsFile)) names.push_back(shape.name);
  return names;
}

InputTable FindInputTable(std::string_view name) {
  for (const TableShape& shape : ExpectedTables(kReportsFile)) {
    if (!SameName(shape.name, name)) continue;
    InputTable table{shape.name, {}};
    for (const ColumnShape& column : shape.columns) table.columns.push_back(ColumnOf(column));
    return table;
  }
  throw DatabaseFailure(fmt::format("{}: no table of statistics is called {}; there are {}",
                                    kReportsFile, name, fmt::join(InputTableNames(), ", ")));
}

std::string RowsText(std::int64_t count, std::string_view table) {
  return fmt::format("{} {} of {}", count, count == 1 ? "row" : "rows", FindInputTable(table).name);
}

}  // namespace quillon
