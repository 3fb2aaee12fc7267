// The tables of Reports.mdb as CSV brings them: their columns, what each of them takes, and what an
// empty field becomes there. How a field is read is told in values.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/date_time.h"

namespace quillon {

// What stands in a field of a table; the first one is null.
using FieldValue = std::variant<std::monostate, std::int64_t, double, std::string_view, DateTime>;

struct NumberRange {
  double least = 0;
  double most = 0;
};

struct InputColumn {
  enum class Kind { kText, kDate, kTruth, kWhole, kNumber, kMacAddress };

  std::string name;
  Kind kind = Kind::kText;
  NumberRange range;                  // of a number
  std::optional<FieldValue> ifEmpty;  // what an empty field becomes; nothing where it is wrong
};

struct InputTable {
  std::string name;
  std::vector<InputColumn> columns;
};

std::vector<std::string> InputTableNames();

// The table of that name, without regard to case. DatabaseFailure where there is none.
InputTable FindInputTable(std::string_view name);

// "1 row of MAC", "20 rows of VLAN", with the table's own name.
std::string RowsText(std::int64_t count, std::string_view table);

}  // namespace quillon
