// The columns of a statement, and field values in and out of them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/sqlite_statement.h"

namespace quillon {

// Names and declarations, taken once: a walk over a large table asks for them with each field.
class SqliteColumns {
 public:
  explicit SqliteColumns(const SqliteStatement& statement);

  std::size_t size() const { return columns_.size(); }
  const std::string& Name(std::size_t column) const { return *columns_[column].name; }

  // Place of a name, without regard to case; the first one where columns share it.
  std::optional<std::size_t> Find(std::string_view name) const;

  // The value of the current row, under the column's name. Dates, booleans and singles are told by
  // the column's declaration, everything else by what is stored; a text that is no date stays a
  // text.
  Value Read(const SqliteStatement& statement, std::size_t column) const;

  // Binds a value for that column: a single is cut to 32 bits, and a text column gets a number
  // as its text.
  void Bind(SqliteStatement& statement, int position, std::size_t column, const Value& value) const;

 private:
  enum class Declared { kOther, kText, kDate, kBoolean, kSingle };
  struct Column {
    std::shared_ptr<const std::string> name;  // shared with the values that are read
    Declared declared;
  };

  static Declared DeclaredBy(std::string_view declaration);

  std::vector<Column> columns_;
  // A walk asks for the same fields in each row: the one that came behind the last one before is
  // looked at first. Of columns that share a name none but the first ever stands here.
  mutable std::vector<std::size_t> followers_;
  mutable std::size_t last_ = 0;
};

}  // namespace quillon
