// The sums of a day, which switches and disks have alike: adding up, and the tables that get a row
// or two a day.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

// A sum with its next figure added, rounded to a 32-bit integer, ties to even, or to a 32-bit
// float; a 16-bit count with one more. An OverflowFailure tells the name of the sum.
std::int32_t PlusLong(std::int32_t sum, double figure, std::string_view name);
float PlusSingle(float sum, float figure, std::string_view name);
std::int16_t PlusOne(std::int16_t count, std::string_view name);

// Deletes the rows whose day is more than 1200 days before the real day. Raises what its caller
// reports.
void TrimSums(ImportContext& context, const std::string& table, std::string_view dateField);

// Appends a row with these fields behind the date field, which gets the present moment less 24
// hours. Raises what its caller reports.
using SumFields = std::vector<std::pair<std::string_view, Value>>;
void AppendSums(ImportContext& context, const std::string& table, std::string_view dateField,
                const SumFields& fields);

}  // namespace quillon
