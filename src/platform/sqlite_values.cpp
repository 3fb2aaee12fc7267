// Values by declaration and storage.
#include "platform/sqlite_values.h"

namespace quillon {
namespace {

// The types that a declaration gives; any other leaves it to the stored value.
struct DeclaredRow {
  std::string_view name;
  Value::Type type;
};

constexpr DeclaredRow kDeclaredTypes[] = {{"DATE", Value::Type::kDate},
                                          {"BOOLEAN", Value::Type::kBoolean},
                                          {"SINGLE", Value::Type::kSingle}};

Value::Type DeclaredType(std::string_view declaration) {
  for (const DeclaredRow& row : kDeclaredTypes) {
    if (SameName(declaration, row.name)) return row.type;
  }
  return Value::Type::kNull;
}

Value ReadInteger(const SqliteStatement& statement, int column, Value::Type declared) {
  const std::int64_t number = statement.Integer(column);
  if (declared == Value::Type::kBoolean) return Value::Boolean(number != 0);
  if (declared == Value::Type::kSingle) return Value::Single(static_cast<float>(number));
  return Value::Integer(number);
}

Value ReadReal(const SqliteStatement& statement, int column, Value::Type declared) {
  const double number = statement.Real(column);
  if (declared == Value::Type::kSingle) return Value::Single(static_cast<float>(number));
  return Value::Real(number);
}

Value ReadText(const SqliteStatement& statement, int column, Value::Type declared) {
  std::string text = statement.Text(column);
  if (declared == Value::Type::kDate) {
    if (const auto moment = ParseDateTime(text)) return Value::Date(*moment);
  }
  return Value::Text(std::move(text));
}

Value ReadStored(const SqliteStatement& statement, int column) {
  const Value::Type declared = DeclaredType(statement.DeclaredType(column));
  switch (statement.StorageType(column)) {
    case SQLITE_INTEGER:
      return ReadInteger(statement, column, declared);
    case SQLITE_FLOAT:
      return ReadReal(statement, column, declared);
    case SQLITE_NULL:
      return {};
    default:
      return ReadText(statement, column, declared);
  }
}

}  // namespace

Value ReadColumn(const SqliteStatement& statement, std::size_t column, const std::string& name) {
  Value value = ReadStored(statement, static_cast<int>(column));
  value.SetName(name);
  return value;
}

void BindValue(SqliteStatement& statement, int position, const Value& value,
               std::string_view declaration) {
  using Type = Value::Type;
  const Type type = value.type();
  if (type == Type::kNull) return statement.BindNull(position);
  if (type == Type::kDate) return statement.Bind(position, DateTimeText(value.AsDate()));
  if (type == Type::kText || SameName(declaration, "TEXT")) {
    return statement.Bind(position, value.AsText());
  }
  if (type == Type::kBoolean) return statement.Bind(position, value.AsBoolean() ? 1 : 0);
  if (SameName(declaration, "SINGLE")) {
    return statement.Bind(position, static_cast<double>(static_cast<float>(value.AsNumber())));
  }
  if (type == Type::kInteger) return statement.Bind(position, value.integer());
  statement.Bind(position, value.AsNumber());
}

}  // namespace quillon
