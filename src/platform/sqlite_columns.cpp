// Values by declaration and storage.
#include "platform/sqlite_columns.h"

#include <algorithm>

namespace quillon {
namespace {

Value TextOrDate(std::string_view text, bool isDate) {
  if (isDate) {
    if (const auto moment = ParseDateTime(text)) return Value::Date(*moment);
  }
  return Value::Text(std::string(text));
}

}  // namespace

SqliteColumns::SqliteColumns(const SqliteStatement& statement) {
  int column = 0;
  for (std::string& name : statement.ColumnNames()) {
    columns_.push_back({std::make_shared<const std::string>(std::move(name)),
                        DeclaredBy(statement.DeclaredType(column++))});
  }
  followers_.resize(columns_.size());
}

SqliteColumns::Declared SqliteColumns::DeclaredBy(std::string_view declaration) {
  struct Declaration {
    std::string_view name;
    Declared declared;
  };
  constexpr Declaration kDeclarations[] = {{"TEXT", Declared::kText},
                                           {"DATE", Declared::kDate},
                                           {"BOOLEAN", Declared::kBoolean},
                                           {"SINGLE", Declared::kSingle}};
  for (const Declaration& known : kDeclarations) {
    if (SameName(declaration, known.name)) return known.declared;
  }
  return Declared::kOther;
}

std::optional<std::size_t> SqliteColumns::Find(std::string_view name) const {
  if (columns_.empty()) return std::nullopt;
  std::size_t& follower = followers_[last_];
  if (*columns_[follower].name != name) {
    const auto found = std::find_if(columns_.begin(), columns_.end(), [name](const Column& column) {
      return SameName(*column.name, name);
    });
    if (found == columns_.end()) return std::nullopt;
    follower = static_cast<std::size_t>(found - columns_.begin());
  }
  last_ = follower;
  return last_;
}

Value SqliteColumns::Read(const SqliteStatement& statement, std::size_t column) const {
  const auto& [name, declared] = columns_[column];
  const int place = static_cast<int>(column);
  const int stored = statement.StorageType(place);
  Value value;
  if (stored == SQLITE_TEXT || stored == SQLITE_BLOB) {
    value = TextOrDate(statement.TextView(place), declared == Declared::kDate);
  } else if (stored != SQLITE_NULL && declared == Declared::kSingle) {
    value = Value::Single(static_cast<float>(statement.Real(place)));
  } else if (stored == SQLITE_INTEGER) {
    const std::int64_t number = statement.Integer(place);
    value = declared == Declared::kBoolean ? Value::Boolean(number != 0) : Value::Integer(number);
  } else if (stored == SQLITE_FLOAT) {
    value = Value::Real(statement.Real(place));
  }
  value.SetName(name);
  return value;
}

void SqliteColumns::Bind(SqliteStatement& statement, int position, std::size_t column,
                         const Value& value) const {
  using Type = Value::Type;
  const Type type = value.type();
  const Declared declared = columns_[column].declared;
  if (type == Type::kNull) return statement.BindNull(position);
  if (type == Type::kDate) return statement.Bind(position, DateTimeText(value.AsDate()));
  if (type == Type::kText || declared == Declared::kText) {
    return statement.Bind(position, value.AsText());
  }
  if (type == Type::kBoolean) return statement.Bind(position, value.AsBoolean() ? 1 : 0);
  if (declared == Declared::kSingle) {
    return statement.Bind(position, static_cast<double>(static_cast<float>(value.AsNumber())));
  }
  if (type == Type::kInteger) return statement.Bind(position, value.integer());
  statement.Bind(position, value.AsNumber());
}

}  // namespace quillon
