// Field values: their text form and their conversions.
#include <fmt/format.h>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/number_text.h"

namespace quillon {
namespace {

constexpr std::string_view kMidnight = " 00:00:00";

// "2024-05-01 00:00:00" shows as the day alone.
std::string DateDisplay(const std::string& stored) {
  return stored.ends_with(kMidnight) ? stored.substr(0, stored.size() - kMidnight.size()) : stored;
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
  value.text_ = DateTimeText(moment);
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
      return DateDisplay(text_);
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

std::int32_t Value::AsLong() const {
  try {
    return NumberToLong(AsNumber());
  } catch (const OverflowFailure& failure) {
    throw OverflowFailure(fmt::format("field {}: {}", name_, failure.what()));
  }
}

DateTime Value::AsDate() const {
  if (type_ == Type::kDate || type_ == Type::kText) {
    if (const auto moment = ParseDateTime(text_)) return *moment;
  }
  FailConversion("a date");
}

bool Value::AsBoolean() const {
  if (type_ == Type::kText && (text_ == "True" || text_ == "False")) return text_ == "True";
  if (type_ == Type::kDate || type_ == Type::kNull) FailConversion("a truth value");
  return AsNumber() != 0;
}

void Value::FailConversion(std::string_view wanted) const {
  const std::string held = IsNull() ? "null" : "\"" + AsText() + "\"";
  throw FieldFailure(fmt::format("field {} holds {} and not {}", name_, held, wanted));
}

}  // namespace quillon
