// The database files behind two objects: a Connection that runs selects, and a
// Recordset that walks rows and, for a table opened as a whole, changes them.
// Knows no table of this service. The dialect of the selects is in database_dialect.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/date_time.h"

struct sqlite3;

namespace quillon {

// A field's value with the type of its column. Null, or a value that does not read as
// what is asked for, raises FieldFailure with the field's name in its text.
class Value {
 public:
  enum class Type { kNull, kInteger, kReal, kSingle, kText, kDate, kBoolean };

  Value() = default;
  static Value Integer(std::int64_t number);
  static Value Real(double number);
  static Value Single(float number);
  static Value Text(std::string text);
  static Value Date(DateTime moment);
  static Value Boolean(bool truth);

  Type type() const { return type_; }
  // What an integer holds, all 64 bits of it.
  std::int64_t integer() const { return integer_; }
  bool IsNull() const { return type_ == Type::kNull; }

  // The value as text: numbers in their shortest form, "True" and "False", a date as
  // "YYYY-MM-DD" with " HH:MM:SS" unless it is midnight.
  std::string AsText() const;
  // A whole number of 32 bits, ties to even; OverflowFailure beyond.
  std::int32_t AsLong() const;
  // The same of 16 bits.
  std::int16_t AsInteger16() const;
  // A 32-bit float; OverflowFailure beyond its range.
  float AsSingle() const;
  double AsNumber() const;
  DateTime AsDate() const;
  bool AsBoolean() const;

  // True for a date of that calendar day; a null and a text that is no date are of none.
  bool IsOfDay(DateTime day) const;

  // For failure texts: the field that the value was read from. Shared, since a walk over a large
  // table makes many values of few fields.
  void SetName(std::shared_ptr<const std::string> name) { name_ = std::move(name); }

 private:
  std::string_view Name() const;
  [[noreturn]] void FailConversion(std::string_view wanted) const;
  template <typename Number>
  Number Converted(Number (*convert)(double)) const;

  Type type_ = Type::kNull;
  std::int64_t integer_ = 0;  // integers, booleans, and dates as milliseconds of DateTime
  double real_ = 0;           // reals and singles
  std::string text_;          // texts
  std::shared_ptr<const std::string> name_;
};

class Connection;

// How a table is opened: cursor and lock as the procedures name them.
enum class CursorType { kStatic = 3 };
enum class LockType { kReadOnly = 1, kOptimistic = 3 };

// How long a select may work inside the engine before it is stopped: until all such selects of its
// connection have worked for 2 s; for 2 s of its own, where a job runs many on one connection; or
// as long as it takes for one that holds no text of a request and walks a table of any size.
enum class SelectTime { kLimited, kOfItsOwn, kUnlimited };

class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;

  // Opens a whole table, in its stored order, on a connection that outlives this object.
  // The rows are those of this moment: one that is added later does not appear. One that
  // another program deletes meanwhile is passed over where the table was opened for changes; a
  // walk that only reads is one read of the file, whose log cannot be folded in while it lasts.
  void Open(const std::string& table, Connection& connection, CursorType cursor, LockType lock);

  bool Eof() const;
  void MoveNext();

  // A field of the current row by name, without regard to case. DatabaseFailure for a
  // name that is not there and for a walk that has ended.
  Value Field(std::string_view name) const;

  // Changes of the current row, or of the one that AddNew began, stored by Update.
  void SetField(std::string_view name, Value value);
  void AddNew();
  void Update();
  // Deletes the current row; MoveNext goes on behind it.
  void Delete();
  // Deletes the current row and those behind it, `count` in all or as many as there are, in one
  // stroke, and stands behind them. Returns how many it went past.
  int DeleteRows(int count);

  // Number of rows of a table opened as a whole.
  std::int64_t RecordCount() const;

  // Puts the rows of a table that was opened read-only in another order, "<column>",
  // "<column> ASC" or "<column> DESC", and goes to the first one. Equal keys keep stored order,
  // nulls count as the smallest. DatabaseFailure for any other text.
  void Sort(const std::string& order);

  void Close();

  class Source;  // where the rows come from; see recordset_source.h

 private:
  friend class Connection;
  explicit Recordset(std::unique_ptr<Source> source);
  Source& Opened() const;

  std::unique_ptr<Source> source_;
};

class Connection {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Opens the file of a connection string "Provider=SQLite;Data Source=<path>", with
  // ";Persist Security Info=..." behind it or without.
  // DatabaseFailure where the file is missing or no database. Never creates a file.
  void Open(const std::string& connectionString);
  void Close();

  // Runs one select, forward-only and read-only. The text may come from anybody: a
  // second statement, a write, another file, a pragma, a select that works for more than its
  // time and one that wants too much memory are refused with a DatabaseFailure, and nothing is
  // changed.
  Recordset Execute(const std::string& select, SelectTime time = SelectTime::kLimited);

  // Lets the rows that recordsets of this connection store from here on go into the file
  // together: row by row each of them is a commit, which costs many times the row. False, at
  // once, where another program is writing. Until CommitWrites nobody else can write to the file.
  bool BeginWrites();
  // Nothing where no writes have begun, or the engine gave them up in a failure of its own.
  void CommitWrites();

 private:
  friend class Recordset;
  class Handle;

  sqlite3* Reader();
  sqlite3* Writer();

  std::string path_;
  // The writer goes last: as the last one out it brings what was written into the file
  // itself, which a read-only handle cannot do.
  std::unique_ptr<Handle> writer_;
  std::unique_ptr<Handle> reader_;
};

}  // namespace quillon
