// Field values: their text form and their conversions.
#include <fmt/format.h>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "platform/text_encoding.h"

namespace quillon {
namespace {

constexpr std::string_view kMidnight = " 00:00:00";

// "2024-05-01 00:00:00" shows as the day alone.
std::string DateDisplay(DateTime moment) {
  std::string text = DateTimeText(moment);
  if (text.ends_with(kMidnight)) text.resize(text.size() - kMidnight.size());
  return text;
}

// A field may hold megabytes; its failure is one line.
std::string Shortened(const std::string& text) {
  constexpr std::size_t kShown = 100;  // characters
  const std::string start = FirstCharacters(text, kShown, "UTF-8");
  return start == text ? text : start + "...";
}

}  // namespace

Value Value::Integer(std::int64_t number) {
  Value value;
  value.type_ = Type::kInteger;
  value.integer_ = number;
  return value;
}

Value Value::Real(double number) {
  Value value;
  value.type_ = Type::kReal;
  value.real_ = number;
  return value;
}

Value Value::Single(float number) {
  Value value;
  value.type_ = Type::kSingle;
  value.real_ = static_cast<double>(number);
  return value;
}

Value Value::Text(std::string text) {
  Value value;
  value.type_ = Type::kText;
  value.text_ = std::move(text);
  return value;
}

Value Value::Date(DateTime moment) {
  Value value;
  value.type_ = Type::kDate;
  value.integer_ = moment.time_since_epoch().count();
  return value;
}

Value Value::Boolean(bool truth) {
  Value value;
  value.type_ = Type::kBoolean;
  value.integer_ = truth ? 1 : 0;
  return value;
}

std::string Value::AsText() const {
  switch (type_) {
    case Type::kInteger:
      return std::to_string(integer_);
    case Type::kReal:
      return NumberText(real_);
    case Type::kSingle:
      return SingleText(static_cast<float>(real_));
    case Type::kText:
      return text_;
    case Type::kDate:
      return DateDisplay(AsDate());
    case Type::kBoolean:
      return integer_ != 0 ? "True" : "False";
    case Type::kNull:
      break;
  }
  FailConversion("a text");
}

double Value::AsNumber() const {
  switch (type_) {
    case Type::kInteger:
      return static_cast<double>(integer_);
    case Type::kReal:
    case Type::kSingle:
      return real_;
    case Type::kBoolean:
      return integer_ != 0 ? -1 : 0;  // True counts as -1 in arithmetic
    case Type::kText:
      if (const auto number = ParseNumber(text_)) return *number;
      break;
    case Type::kDate:
    case Type::kNull:
      break;
  }
  FailConversion("a number");
}

template <typename Number>
Number Value::Converted(Number (*convert)(double)) const {
  try {
    return convert(AsNumber());
  } catch (const OverflowFailure& failure) {
    throw OverflowFailure(fmt::format("field {}: {}", Name(), failure.what()));
  }
}

std::int32_t Value::AsLong() const {
  return Converted(NumberToLong);
}

std::int16_t Value::AsInteger16() const {
  return Converted(NumberToInteger16);
}

float Value::AsSingle() const {
  return Converted(NumberToSingle);
}

DateTime Value::AsDate() const {
  if (type_ == Type::kDate) return DateTime(DateTime::duration(integer_));
  if (type_ == Type::kText) {
    if (const auto moment = ParseDateTime(text_)) return *moment;
  }
  FailConversion("a date");
}

bool Value::AsBoolean() const {
  if (type_ == Type::kText && (text_ == "True" || text_ == "False")) return text_ == "True";
  if (type_ == Type::kDate || type_ == Type::kNull) FailConversion("a truth value");
  return AsNumber() != 0;
}

bool Value::IsOfDay(DateTime day) const {
  return type_ == Type::kDate && DaysBetween(AsDate(), day) == 0;
}

std::string_view Value::Name() const {
  return name_ ? std::string_view(*name_) : std::string_view();
}

void Value::FailConversion(std::string_view wanted) const {
  const std::string held = IsNull() ? "null" : "\"" + Shortened(AsText()) + "\"";
  throw FieldFailure(fmt::format("field {} holds {} and not {}", Name(), held, wanted));
}

}  // namespace quillon
