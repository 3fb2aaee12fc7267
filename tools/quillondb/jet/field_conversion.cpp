// One converter for each declared type.
#include "quillondb/jet/field_conversion.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/date_time.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "platform/text_encoding.h"

namespace quillon {
namespace {

// The years that fit the four digits of a stored date, from the first that such files know.
constexpr double kFirstDay = -657434;   // 0100-01-01
constexpr double kEndOfDays = 2958466;  // 10000-01-01

constexpr double kSecondsOfDay = 86400;

constexpr std::string_view kTextType = "TEXT";

// A date that was never set, as a new installation has it.
constexpr const char* kNoDate = "2000-01-01 00:00:00";

constexpr std::size_t kShownOfText = 40;  // characters of a value in a message

template <typename Kind>
const Kind* As(const JetValue& value) {
  return std::get_if<Kind>(&value);
}

[[noreturn]] void FailConversion(const std::string& held, const char* wanted) {
  const std::string start = FirstCharacters(held, kShownOfText, "UTF-8");
  throw ConversionFailure("\"" + start + (start == held ? "" : "...") + "\" is no " + wanted);
}

// The time of the day is the fraction without its sign: -1.25 is six o'clock of the day before the
// first one.
DateTime MomentOf(JetDate date) {
  if (!(date.days >= kFirstDay && date.days < kEndOfDays)) {
    throw OverflowFailure("the date lies outside the years 100 to 9999");
  }
  const double day = std::trunc(date.days);
  const double seconds = std::round(std::abs(date.days - day) * kSecondsOfDay);
  return ZeroDate() + std::chrono::days(static_cast<int>(day)) +
         std::chrono::seconds(static_cast<int>(seconds));
}

// The number of the fewest digits that is that single: 0.1 is meant, and not 0.100000001490116.
// Seven digits are too few for some of them.
double ShortestOf(float single) {
  std::array<char, 64> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), single).ptr;
  double number = 0;
  std::from_chars(digits.data(), end, number);
  return number;
}

double NumberOf(const JetValue& value) {
  if (const auto* whole = As<std::int64_t>(value)) return static_cast<double>(*whole);
  if (const auto* real = As<double>(value)) return *real;
  if (const auto* single = As<float>(value)) return ShortestOf(*single);
  if (const auto* truth = As<bool>(value)) return *truth ? -1 : 0;  // as in its arithmetic
  if (const auto* text = As<std::string>(value)) {
    if (const auto number = ParseNumber(*text)) return *number;
    FailConversion(*text, "number");
  }
  throw ConversionFailure("a date is no number");
}

double FiniteNumberOf(const JetValue& value) {
  const double number = NumberOf(value);
  if (!std::isfinite(number)) throw OverflowFailure("the number is not finite");
  return number;
}

StoredField DateField(const JetValue& value) {
  if (const auto* date = As<JetDate>(value)) return DateTimeText(MomentOf(*date));
  const auto* text = As<std::string>(value);
  if (text == nullptr) throw ConversionFailure("a number is no date");
  const auto moment = ParseDateTime(*text);
  if (!moment) FailConversion(*text, "date");
  return DateTimeText(*moment);
}

StoredField BooleanField(const JetValue& value) {
  return std::int64_t{NumberOf(value) != 0};
}

StoredField IntegerField(const JetValue& value) {
  return std::int64_t{NumberToLong(FiniteNumberOf(value))};
}

StoredField SingleField(const JetValue& value) {
  return static_cast<double>(NumberToSingle(FiniteNumberOf(value)));
}

StoredField NumericField(const JetValue& value) {
  return FiniteNumberOf(value);
}

StoredField TextField(const JetValue& value) {
  if (const auto* text = As<std::string>(value)) return *text;
  if (const auto* truth = As<bool>(value)) return std::string(*truth ? "True" : "False");
  if (const auto* date = As<JetDate>(value)) return DateTimeText(MomentOf(*date));
  if (const auto* single = As<float>(value)) return SingleText(*single);
  return NumberText(FiniteNumberOf(value));
}

struct Converter {
  std::string_view declaredType;
  StoredField (*convert)(const JetValue& value);
  const char* emptyText;  // where what is empty is a text; null where it is 0
};

constexpr std::array<Converter, 6> kConverters = {{
    {"DATE", DateField, kNoDate},
    {"BOOLEAN", BooleanField, nullptr},
    {"INTEGER", IntegerField, nullptr},
    {"SINGLE", SingleField, nullptr},
    {"NUMERIC", NumericField, nullptr},
    {kTextType, TextField, ""},
}};

const Converter& ConverterOf(std::string_view declaredType) {
  for (const Converter& converter : kConverters) {
    if (converter.declaredType == declaredType) return converter;
  }
  throw DatabaseFailure("no old field becomes a column of the type " + std::string(declaredType));
}

}  // namespace

StoredField ConvertField(const JetValue& value, std::string_view declaredType) {
  if (As<JetNull>(value) != nullptr) {
    return declaredType == kTextType ? StoredField(std::string()) : StoredField();
  }
  if (As<JetOpaque>(value) != nullptr) {
    throw ConversionFailure("bytes or pictures are nothing that the column can hold");
  }
  return ConverterOf(declaredType).convert(value);
}

StoredField EmptyField(std::string_view declaredType) {
  const char* text = ConverterOf(declaredType).emptyText;
  return text == nullptr ? StoredField(std::int64_t{0}) : StoredField(std::string(text));
}

void BindField(SqliteStatement& statement, int position, const StoredField& field) {
  if (const auto* whole = std::get_if<std::int64_t>(&field)) {
    statement.Bind(position, *whole);
  } else if (const auto* real = std::get_if<double>(&field)) {
    statement.Bind(position, *real);
  } else if (const auto* text = std::get_if<std::string>(&field)) {
    statement.Bind(position, std::string_view(*text));
  } else {
    statement.BindNull(position);
  }
}

}  // namespace quillon
