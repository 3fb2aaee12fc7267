// Connections and recordsets on SQLite.
//
// A connection opens a read-only handle for its selects, guarded against whatever a
// search text may smuggle in, and a writing handle only when a table is opened for
// change. A table opened as a whole keeps the ids of its rows and reads each row again
// when the walk comes to it, so no read cursor stands open while rows are written.
#include "platform/database.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <chrono>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/database_dialect.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace quillon {
namespace {

constexpr int kBusyTimeoutMs = 5000;  // how long a lock of the management product is waited for
constexpr int kProgressSteps = 1000;  // virtual machine steps between two looks at the time
constexpr std::chrono::seconds kSelectLimit{2};

// A text in double quotes, as SQL wants a name that may hold anything.
std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char character : name) {
    quoted += character;
    if (character == '"') quoted += character;
  }
  return quoted + "\"";
}

std::string FileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

bool SameName(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         sqlite3_strnicmp(left.data(), right.data(), static_cast<int>(left.size())) == 0;
}

[[noreturn]] void FailDatabase(sqlite3* handle, const std::string& file) {
  throw DatabaseFailure(file + ": " + sqlite3_errmsg(handle));
}

// The type that a column's declaration gives its numbers and texts.
Value::Type DeclaredType(const char* declaration) {
  struct Row {
    std::string_view name;
    Value::Type type;
  };
  constexpr Row kTypes[] = {{"DATE", Value::Type::kDate},
                            {"BOOLEAN", Value::Type::kBoolean},
                            {"SINGLE", Value::Type::kSingle}};
  for (const Row& row : kTypes) {
    if (declaration != nullptr && SameName(declaration, row.name)) return row.type;
  }
  return Value::Type::kNull;  // the stored value tells
}

Value ReadText(sqlite3_stmt* statement, int column, Value::Type declared) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  std::string text(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
  if (declared != Value::Type::kDate) return Value::Text(std::move(text));
  const auto moment = ParseDateTime(text);
  return moment ? Value::Date(*moment) : Value::Text(std::move(text));
}

Value ReadColumn(sqlite3_stmt* statement, int column) {
  const Value::Type declared = DeclaredType(sqlite3_column_decltype(statement, column));
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
      const std::int64_t number = sqlite3_column_int64(statement, column);
      if (declared == Value::Type::kBoolean) return Value::Boolean(number != 0);
      if (declared == Value::Type::kSingle) return Value::Single(static_cast<float>(number));
      return Value::Integer(number);
    }
    case SQLITE_FLOAT: {
      const double number = sqlite3_column_double(statement, column);
      if (declared == Value::Type::kSingle) return Value::Single(static_cast<float>(number));
      return Value::Real(number);
    }
    case SQLITE_NULL:
      return {};
    default:
      return ReadText(statement, column, declared);
  }
}

void BindValue(sqlite3_stmt* statement, int position, const Value& value) {
  switch (value.type()) {
    case Value::Type::kNull:
      sqlite3_bind_null(statement, position);
      return;
    case Value::Type::kInteger:
      sqlite3_bind_int64(statement, position, static_cast<std::int64_t>(value.AsNumber()));
      return;
    case Value::Type::kBoolean:
      sqlite3_bind_int(statement, position, value.AsBoolean() ? 1 : 0);
      return;
    case Value::Type::kReal:
    case Value::Type::kSingle:
      sqlite3_bind_double(statement, position, value.AsNumber());
      return;
    case Value::Type::kDate:
    case Value::Type::kText:
      break;
  }
  const std::string text =
      value.type() == Value::Type::kDate ? DateTimeText(value.AsDate()) : value.AsText();
  sqlite3_bind_text(statement, position, text.data(), static_cast<int>(text.size()),
                    SQLITE_TRANSIENT);
}

// A statement that finalizes itself.
class Statement {
 public:
  // Prepares one statement. Text behind it is refused: nobody sends two.
  Statement(sqlite3* handle, const std::string& file, const std::string& sql)
      : handle_(handle), file_(file) {
    const char* tail = nullptr;
    const int length = static_cast<int>(sql.size());
    if (sqlite3_prepare_v2(handle, sql.data(), length, &statement_, &tail) != SQLITE_OK) {
      FailDatabase(handle, file);
    }
    const std::string_view rest(tail, static_cast<std::size_t>(sql.data() + sql.size() - tail));
    const bool more = rest.find_first_not_of(" \t\r\n;") != std::string_view::npos;
    if (statement_ != nullptr && !more) return;
    sqlite3_finalize(statement_);
    throw DatabaseFailure(file + ": not one statement");
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  Statement(Statement&&) = delete;
  Statement& operator=(Statement&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(file_, other.file_);
    std::swap(statement_, other.statement_);
    return *this;
  }

  // True when it stands on a row.
  bool Step() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    FailDatabase(handle_, file_);
  }
  void Run() {
    Step();
    sqlite3_reset(statement_);
  }
  sqlite3_stmt* get() const { return statement_; }

 private:
  sqlite3* handle_;
  std::string file_;
  sqlite3_stmt* statement_ = nullptr;
};

std::vector<std::string> ColumnNames(sqlite3_stmt* statement) {
  const int count = sqlite3_column_count(statement);
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(count));
  for (int column = 0; column < count; ++column) {
    names.emplace_back(sqlite3_column_name(statement, column));
  }
  return names;
}

std::optional<int> FindName(const std::vector<std::string>& names, std::string_view wanted) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (SameName(names[i], wanted)) return static_cast<int>(i);
  }
  return std::nullopt;
}

}  // namespace

// One open handle of a file.
class Connection::Handle {
 public:
  Handle(const std::string& path, int flags) : file_(FileName(path)) {
    const int result = sqlite3_open_v2(path.c_str(), &handle_, flags, nullptr);
    if (result != SQLITE_OK) {
      const std::string reason = sqlite3_errmsg(handle_);
      sqlite3_close(handle_);
      throw DatabaseFailure(file_ + ": " + reason);
    }
    sqlite3_busy_timeout(handle_, kBusyTimeoutMs);
    RegisterDialect(handle_);
    // Sorting stays in memory: no temporary file is written outside the installation.
    RunPragma("PRAGMA temp_store=MEMORY");
  }
  ~Handle() { sqlite3_close_v2(handle_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void RunPragma(const std::string& pragma) {
    try {
      Statement(handle_, file_, pragma).Run();
    } catch (const DatabaseFailure&) {
      sqlite3_close_v2(std::exchange(handle_, nullptr));
      throw;
    }
  }
  sqlite3* get() const { return handle_; }

 private:
  std::string file_;
  sqlite3* handle_ = nullptr;
};

// Where a recordset's rows come from.
class Recordset::Source {
 public:
  explicit Source(std::string file) : file_(std::move(file)) {}
  virtual ~Source() = default;

  virtual bool Eof() const = 0;
  virtual void MoveNext() = 0;
  virtual Value Field(std::string_view name) const = 0;
  virtual void SetField(std::string_view, const Value&) { RefuseChange(); }
  virtual void AddNew() { RefuseChange(); }
  virtual void Update() { RefuseChange(); }
  virtual void Delete() { RefuseChange(); }
  virtual std::int64_t RecordCount() const { return -1; }  // not known before the last row

 protected:
  [[noreturn]] void RefuseChange() const {
    throw DatabaseFailure(file_ + ": the recordset is read-only");
  }
  [[noreturn]] void FailNoRow() const { throw DatabaseFailure(file_ + ": no current row"); }
  [[noreturn]] void FailNoField(std::string_view name) const {
    throw DatabaseFailure(file_ + ": no such field: " + std::string(name));
  }
  const std::string& file() const { return file_; }

 private:
  std::string file_;
};

namespace {

// Stops the engine while it lives, once a select has worked for kSelectLimit.
class WorkLimit {
 public:
  using Clock = std::chrono::steady_clock;

  // `worked` is what the select took so far; the time of this object is added to it.
  WorkLimit(sqlite3* handle, Clock::duration& worked)
      : handle_(handle), worked_(worked), start_(Clock::now()) {
    sqlite3_progress_handler(handle, kProgressSteps, IsOver, this);
  }
  ~WorkLimit() {
    sqlite3_progress_handler(handle_, 0, nullptr, nullptr);
    worked_ += Clock::now() - start_;
  }
  WorkLimit(const WorkLimit&) = delete;
  WorkLimit& operator=(const WorkLimit&) = delete;

 private:
  static int IsOver(void* data) {
    const auto* limit = static_cast<WorkLimit*>(data);
    return limit->worked_ + (Clock::now() - limit->start_) > kSelectLimit ? 1 : 0;
  }

  sqlite3* handle_;
  Clock::duration& worked_;
  Clock::time_point start_;
};

// A select of all columns of one table in some order, taken apart.
struct SortedSelect {
  std::string table;
  std::string rest;  // the conditions and the order
};

// Takes "SELECT * FROM <table> ... ORDER BY ..." apart; nothing for any other select.
std::optional<SortedSelect> TakeApart(std::string_view select) {
  constexpr std::string_view kBeginning = "SELECT * FROM ";
  constexpr std::string_view kOrder = " ORDER BY ";
  if (!select.starts_with(kBeginning) || select.find(kOrder) == std::string_view::npos) return {};
  select.remove_prefix(kBeginning.size());
  const std::size_t nameEnd =
      select.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_");
  if (nameEnd == 0 || nameEnd == std::string_view::npos || select[nameEnd] != ' ') return {};
  return SortedSelect{std::string(select.substr(0, nameEnd)), std::string(select.substr(nameEnd))};
}

// The rows of a running select.
class SelectSource : public Recordset::Source {
 public:
  SelectSource(sqlite3* handle, const std::string& file, const std::string& select)
      : Source(file), handle_(handle), statement_(handle, file, select) {
    names_ = ColumnNames(statement_.get());
    if (const auto sorted = TakeApart(select)) SortIdsOnly(*sorted);
    Step();
  }

  bool Eof() const override { return !onRow_; }
  void MoveNext() override { Step(); }

  Value Field(std::string_view name) const override {
    if (!onRow_) FailNoRow();
    const std::optional<int> column = FindName(names_, name);
    if (!column) FailNoField(name);
    Value value = ReadColumn(statement_.get(), *column);
    value.SetName(names_[static_cast<std::size_t>(*column)]);
    return value;
  }

 private:
  // Only the time inside the engine counts against the limit, so a walk that pauses
  // between its rows is not cut off.
  void Step() {
    const WorkLimit limit(handle_, worked_);
    if (!ids_) {
      onRow_ = statement_.Step();
      return;
    }
    onRow_ = ids_->Step();
    if (!onRow_) return;
    sqlite3_reset(statement_.get());
    sqlite3_bind_int64(statement_.get(), 1, sqlite3_column_int64(ids_->get(), 0));
    statement_.Step();
  }

  // Lets the engine sort the ids of the rows and not their whole width, and reads each row
  // as the walk comes to it: of a long list only the first rows are wanted. The id as the
  // last key keeps equal keys in stored order. The select as it came has been accepted
  // before; where its text is none that can be sorted so, it runs as it is.
  void SortIdsOnly(const SortedSelect& sorted) {
    try {
      auto ids = std::make_unique<Statement>(
          handle_, file(), "SELECT rowid FROM " + sorted.table + sorted.rest + ", rowid");
      Statement row(handle_, file(), "SELECT * FROM " + sorted.table + " WHERE rowid = ?");
      statement_ = std::move(row);
      ids_ = std::move(ids);
    } catch (const DatabaseFailure&) {
      ids_.reset();
    }
  }

  sqlite3* handle_;
  Statement statement_;             // the select, or one row by its id
  std::unique_ptr<Statement> ids_;  // the sorted ids, where the select is taken apart
  std::vector<std::string> names_;
  bool onRow_ = false;
  WorkLimit::Clock::duration worked_{};
};

// A table opened as a whole: the ids of its rows at the time of opening, and a copy of the
// row that the walk stands on. No read stays open between two calls, so the walk may pause
// for as long as it likes while others write.
class TableSource : public Recordset::Source {
 public:
  TableSource(sqlite3* handle, const std::string& file, const std::string& table, LockType lock)
      : Source(file),
        handle_(handle),
        table_(Quoted(table)),
        lock_(lock),
        readRow_(handle, file, "SELECT * FROM " + table_ + " WHERE rowid = ?") {
    names_ = ColumnNames(readRow_.get());
    Statement ids(handle, file, "SELECT rowid FROM " + table_ + " ORDER BY rowid");
    while (ids.Step()) ids_.push_back(sqlite3_column_int64(ids.get(), 0));
    ReadFrom(0);
  }

  bool Eof() const override { return position_ >= ids_.size(); }
  void MoveNext() override { ReadFrom(position_ + 1); }
  std::int64_t RecordCount() const override { return static_cast<std::int64_t>(ids_.size()); }

  Value Field(std::string_view name) const override {
    if (!onRow_) FailNoRow();
    const std::optional<int> column = FindName(names_, name);
    if (!column) FailNoField(name);
    return row_[static_cast<std::size_t>(*column)];
  }

  void SetField(std::string_view name, const Value& value) override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    const std::optional<int> column = FindName(names_, name);
    if (!column) FailNoField(name);
    if (!adding_ && !onRow_) FailNoRow();
    changes_[*column] = value;
  }

  void AddNew() override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    changes_.clear();
    adding_ = true;
  }

  void Update() override {
    if (adding_) {
      Insert();
    } else if (!changes_.empty()) {
      Change();
    }
    changes_.clear();
    adding_ = false;
  }

  void Delete() override {
    if (lock_ == LockType::kReadOnly) RefuseChange();
    if (!onRow_) FailNoRow();
    onRow_ = false;
    Statement statement(handle_, file(), "DELETE FROM " + table_ + " WHERE rowid = ?");
    sqlite3_bind_int64(statement.get(), 1, ids_[position_]);
    statement.Run();
  }

 private:
  // Stands on the first row at `position` or behind it that is still there.
  void ReadFrom(std::size_t position) {
    onRow_ = false;
    for (position_ = position; position_ < ids_.size() && !onRow_; ++position_) {
      sqlite3_bind_int64(readRow_.get(), 1, ids_[position_]);
      onRow_ = readRow_.Step();
      if (onRow_) CopyRow();
      sqlite3_reset(readRow_.get());
    }
    if (onRow_) --position_;
  }

  void CopyRow() {
    row_.clear();
    for (std::size_t column = 0; column < names_.size(); ++column) {
      row_.push_back(ReadColumn(readRow_.get(), static_cast<int>(column)));
      row_.back().SetName(names_[column]);
    }
  }

  void Insert() {
    std::string columns;
    std::string places;
    for (const auto& [column, value] : changes_) {
      columns += (columns.empty() ? "" : ", ") + Quoted(names_[static_cast<std::size_t>(column)]);
      places += places.empty() ? "?" : ", ?";
    }
    const std::string row = changes_.empty() ? std::string(" DEFAULT VALUES")
                                             : fmt::format(" ({}) VALUES ({})", columns, places);
    Statement statement(handle_, file(), "INSERT INTO " + table_ + row);
    BindChanges(statement);
    statement.Run();
  }

  void Change() {
    std::string assignments;
    for (const auto& [column, value] : changes_) {
      assignments += (assignments.empty() ? "" : ", ") +
                     Quoted(names_[static_cast<std::size_t>(column)]) + " = ?";
    }
    Statement statement(handle_, file(),
                        "UPDATE " + table_ + " SET " + assignments + " WHERE rowid = ?");
    const int last = BindChanges(statement);
    sqlite3_bind_int64(statement.get(), last, ids_[position_]);
    statement.Run();
    ReadFrom(position_);
  }

  // Binds the changed values from place 1 on; the place behind them.
  int BindChanges(const Statement& statement) const {
    int place = 1;
    for (const auto& [column, value] : changes_) BindValue(statement.get(), place++, value);
    return place;
  }

  sqlite3* handle_;
  std::string table_;
  LockType lock_;
  Statement readRow_;
  std::vector<std::string> names_;
  std::vector<std::int64_t> ids_;
  std::vector<Value> row_;
  std::size_t position_ = 0;
  bool onRow_ = false;
  bool adding_ = false;
  std::map<int, Value> changes_;  // by column
};

// The path of "Provider=SQLite;Data Source=<path>[;...]".
std::string DataSource(const std::string& connectionString) {
  constexpr std::string_view kKey = "Data Source=";
  const std::size_t key = connectionString.find(kKey);
  if (key == std::string::npos) {
    throw DatabaseFailure("no data source in the connection string \"" + connectionString + "\"");
  }
  const std::size_t start = key + kKey.size();
  return connectionString.substr(start, connectionString.find(';', start) - start);
}

}  // namespace

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::Recordset(std::unique_ptr<Source> source) : source_(std::move(source)) {}

void Recordset::Open(const std::string& table, Connection& connection, CursorType, LockType lock) {
  sqlite3* handle = lock == LockType::kReadOnly ? connection.Reader() : connection.Writer();
  source_ = std::make_unique<TableSource>(handle, FileName(connection.path_), table, lock);
}

Recordset::Source& Recordset::Opened() const {
  if (!source_) throw DatabaseFailure("the recordset is closed");
  return *source_;
}

bool Recordset::Eof() const {
  return Opened().Eof();
}
void Recordset::MoveNext() {
  Opened().MoveNext();
}
Value Recordset::Field(std::string_view name) const {
  return Opened().Field(name);
}
void Recordset::SetField(std::string_view name, const Value& value) {
  Opened().SetField(name, value);
}
void Recordset::AddNew() {
  Opened().AddNew();
}
void Recordset::Update() {
  Opened().Update();
}
void Recordset::Delete() {
  Opened().Delete();
}
std::int64_t Recordset::RecordCount() const {
  return Opened().RecordCount();
}
void Recordset::Close() {
  source_.reset();
}

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::Open(const std::string& connectionString) {
  path_ = DataSource(connectionString);
  if (!FileExists(path_)) throw DatabaseFailure(FileName(path_) + ": the database file is missing");
  reader_ = std::make_unique<Handle>(path_, SQLITE_OPEN_READONLY);
  reader_->RunPragma("PRAGMA schema_version");  // reads the file: says here if it is no database
  GuardReader(reader_->get());
}

void Connection::Close() {
  reader_.reset();
  writer_.reset();
}

Recordset Connection::Execute(const std::string& select) {
  return Recordset(std::make_unique<SelectSource>(Reader(), FileName(path_), select));
}

sqlite3* Connection::Reader() {
  if (!reader_) throw DatabaseFailure("the connection is closed");
  return reader_->get();
}

sqlite3* Connection::Writer() {
  if (!reader_) throw DatabaseFailure("the connection is closed");
  if (!writer_) writer_ = std::make_unique<Handle>(path_, SQLITE_OPEN_READWRITE);
  return writer_->get();
}

}  // namespace quillon
