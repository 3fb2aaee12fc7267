// One reader for each kind of column.
#include "quillondb/csv/values.h"

#include <fmt/format.h>
#include <glib.h>

#include <charconv>
#include <cmath>

#include "platform/failure.h"
#include "platform/sqlite_statement.h"
#include "platform/terminal_text.h"
#include "platform/text_encoding.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

using Kind = InputColumn::Kind;

struct TruthWord {
  std::string_view word;
  std::int64_t value;
};

constexpr TruthWord kTruthWords[] = {{"1", 1},  {"0", 0},   {"true", 1}, {"false", 0},
                                     {"-1", 1}, {"yes", 1}, {"no", 0}};

// The form in which the database holds hardware addresses.
constexpr std::string_view kMacExample = "02 1B 2C 3D 4E 5F";

// Reads the whole text; an error for any other text than a number, and for one out of range.
template <typename Number>
std::errc Parse(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return stop == end ? error : std::errc::invalid_argument;
}

bool IsWithin(double number, const NumberRange& range) {
  return number >= range.least && number <= range.most;
}

FieldValue ReadText(std::string_view field) {
  if (field.size() > kLongestText) {
    throw ConversionFailure(
        fmt::format("a text of {} bytes; at most {} are read", field.size(), kLongestText));
  }
  if (field.find('\0') != std::string_view::npos) {
    throw ConversionFailure(ShownValue(field) + " holds a NUL; take it out");
  }
  if (g_utf8_validate_len(field.data(), field.size(), nullptr) == FALSE) {
    throw ConversionFailure(ShownValue(field) + " is no UTF-8; write it in that charset");
  }
  return field;
}

FieldValue ReadDate(std::string_view field) {
  if (const auto moment = ParseDateTime(field)) return *moment;
  throw ConversionFailure(ShownValue(field) + " is no date; write YYYY-MM-DD HH:MM:SS");
}

FieldValue ReadTruth(std::string_view field) {
  for (const auto& [word, value] : kTruthWords) {
    if (SameName(field, word)) return value;
  }
  throw ConversionFailure(ShownValue(field) + " is no truth value; write 1 or 0");
}

FieldValue ReadWhole(std::string_view field, const NumberRange& range) {
  std::int64_t number = 0;
  const bool isWhole = Parse(field, number) == std::errc();
  if (isWhole && IsWithin(static_cast<double>(number), range)) return number;
  throw ConversionFailure(fmt::format("{} is no whole number from {:.0f} to {:.0f}",
                                      ShownValue(field), range.least, range.most));
}

// What has no fraction is kept in all its digits, as the engine does.
FieldValue ReadNumber(std::string_view field, const NumberRange& range) {
  double number = 0;
  const std::errc error = Parse(field, number);
  if (error == std::errc::result_out_of_range) {
    throw ConversionFailure(ShownValue(field) + " is out of range: too large, or too near to 0");
  }
  if (error != std::errc() || !std::isfinite(number)) {
    throw ConversionFailure(ShownValue(field) + " is no number; write one with a point, as 12.5");
  }
  if (!IsWithin(number, range)) {
    throw ConversionFailure(fmt::format("{} is no number from {:.10g} to {:.10g}",
                                        ShownValue(field), range.least, range.most));
  }
  std::int64_t whole = 0;
  if (Parse(field, whole) == std::errc()) return whole;
  return number;
}

bool IsMacAddress(std::string_view field) {
  if (field.size() != kMacExample.size()) return false;
  for (std::size_t i = 0; i < field.size(); ++i) {
    const bool isBlank = kMacExample[i] == ' ';
    if (isBlank ? field[i] != ' ' : g_ascii_isxdigit(field[i]) == FALSE) return false;
  }
  return true;
}

FieldValue ReadMacAddress(std::string_view field) {
  if (IsMacAddress(field)) return field;
  throw ConversionFailure(fmt::format(
      "{} is no hardware address; write six pairs of hexadecimal digits with a blank between them,"
      " as {}",
      ShownValue(field), kMacExample));
}

FieldValue ReadEmpty(const InputColumn& column) {
  if (column.ifEmpty) return *column.ifEmpty;
  throw ConversionFailure("the field is empty; it has to hold a value");
}

}  // namespace

FieldValue ReadField(const InputColumn& column, std::string_view field) {
  if (column.kind != Kind::kText) field = TrimmedView(field);
  if (field.empty()) return ReadEmpty(column);
  switch (column.kind) {
    case Kind::kDate:
      return ReadDate(field);
    case Kind::kTruth:
      return ReadTruth(field);
    case Kind::kWhole:
      return ReadWhole(field, column.range);
    case Kind::kNumber:
      return ReadNumber(field, column.range);
    case Kind::kMacAddress:
      return ReadMacAddress(field);
    case Kind::kText:
      break;
  }
  return ReadText(field);
}

std::string FieldText(const FieldValue& value) {
  struct Writer {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const { return fmt::format("{}", number); }
    std::string operator()(std::string_view text) const { return std::string(text); }
    std::string operator()(DateTime moment) const { return DateTimeText(moment); }
  };
  return std::visit(Writer(), value);
}

std::string ShownValue(const FieldValue& value) {
  constexpr std::size_t kShown = 40;  // characters of a text
  if (std::holds_alternative<std::monostate>(value)) return "null";
  std::string text = FieldText(value);
  if (!std::holds_alternative<std::string_view>(value)) return text;
  const std::string start = FirstCharacters(text, kShown, "UTF-8");
  return fmt::format("'{}{}'", TerminalText(start), start == text ? "" : "...");
}

}  // namespace quillon
