// Connections and recordsets on SQLite.
//
// A connection opens a read-only handle for its selects, guarded against whatever a
// search text may smuggle in, and a writing handle only when a table is opened for
// change. Where a recordset's rows come from stands in select_source, table_source and
// table_view.
#include "platform/database.h"

#include <optional>
#include <utility>

#include "platform/database_dialect.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "platform/select_limits.h"
#include "platform/select_source.h"
#include "platform/sqlite_statement.h"
#include "platform/table_source.h"
#include "platform/table_view.h"

namespace quillon {
namespace {

constexpr int kBusyTimeoutMs = 5000;  // how long a lock of the management product is waited for
constexpr int kHeapLimit = 32 * 1024 * 1024;  // bytes that the engine may use, all handles together

std::string FileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// The path of "Provider=SQLite;Data Source=<path>[;Persist Security Info=...]".
std::string DataSource(const std::string& connectionString) {
  constexpr std::string_view kKey = "Data Source=";
  constexpr std::string_view kNextKey = ";Persist Security Info=";
  const std::size_t key = connectionString.find(kKey);
  if (key == std::string::npos) {
    throw DatabaseFailure("no data source in the connection string \"" + connectionString + "\"");
  }
  const std::size_t start = key + kKey.size();
  const std::size_t end = connectionString.rfind(kNextKey);  // a path may hold a semicolon
  return connectionString.substr(start, end == std::string::npos ? end : end - start);
}

}  // namespace

// One open handle of a file.
class Connection::Handle {
 public:
  Handle(const std::string& path, int flags) : file_(FileName(path)) {
    // One thread uses the handle: locks inside the engine would be for nothing.
    const int result =
        sqlite3_open_v2(path.c_str(), &handle_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
      const std::string reason = sqlite3_errmsg(handle_);
      sqlite3_close(handle_);
      throw DatabaseFailure(file_ + ": " + reason);
    }
    sqlite3_busy_timeout(handle_, kBusyTimeoutMs);
    limits_.emplace(handle_);
    RegisterDialect(handle_, *limits_);
    // Sorting stays in memory: no temporary file is written outside the installation. How much
    // memory, for all handles together, is bounded, so that no search can take the server's.
    RunPragma("PRAGMA temp_store=MEMORY");
    RunPragma("PRAGMA hard_heap_limit=" + std::to_string(kHeapLimit));
  }
  ~Handle() { sqlite3_close_v2(handle_); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void RunPragma(const std::string& pragma) {
    try {
      SqliteStatement::PrepareOnly(handle_, file_, pragma).Run();
    } catch (const DatabaseFailure&) {
      sqlite3_close_v2(std::exchange(handle_, nullptr));
      throw;
    }
  }
  sqlite3* get() const { return handle_; }
  SelectLimits& limits() { return *limits_; }

 private:
  std::string file_;
  sqlite3* handle_ = nullptr;
  std::optional<SelectLimits> limits_;
};

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::Recordset(std::unique_ptr<Source> source) : source_(std::move(source)) {}

void Recordset::Open(const std::string& table, Connection& connection, CursorType, LockType lock) {
  const std::string file = FileName(connection.path_);
  source_ = lock == LockType::kReadOnly ? MakeTableView(connection.Reader(), file, table)
                                        : MakeTableSource(connection.Writer(), file, table);
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
void Recordset::SetField(std::string_view name, Value value) {
  Opened().SetField(name, std::move(value));
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
int Recordset::DeleteRows(int count) {
  return Opened().DeleteRows(count);
}
std::int64_t Recordset::RecordCount() const {
  return Opened().RecordCount();
}
void Recordset::Sort(const std::string& order) {
  Opened().Sort(order);
}
void Recordset::Close() {
  source_.reset();
}

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::Open(const std::string& connectionString) {
  path_ = DataSource(connectionString);
  if (!FileExists(path_)) throw DatabaseFailure(FileName(path_) + ": the database file is missing");
  auto reader = std::make_unique<Handle>(path_, SQLITE_OPEN_READONLY);
  reader->RunPragma("PRAGMA schema_version");  // reads the file: says here if it is no database
  GuardReader(reader->get());
  reader_ = std::move(reader);
}

void Connection::Close() {
  reader_.reset();
  writer_.reset();
}

Recordset Connection::Execute(const std::string& select, SelectTime time) {
  sqlite3* reader = Reader();
  SelectLimits* limits = time == SelectTime::kUnlimited ? nullptr : &reader_->limits();
  if (time == SelectTime::kOfItsOwn) limits->Restart();
  return Recordset(MakeSelectSource(reader, FileName(path_), select, limits));
}

bool Connection::BeginWrites() {
  sqlite3* writer = Writer();
  sqlite3_busy_timeout(writer, 0);
  const int result = sqlite3_exec(writer, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  sqlite3_busy_timeout(writer, kBusyTimeoutMs);
  if (result == SQLITE_BUSY) return false;
  if (result != SQLITE_OK) throw DatabaseFailure(FileName(path_) + ": " + sqlite3_errmsg(writer));
  return true;
}

void Connection::CommitWrites() {
  if (!writer_ || sqlite3_get_autocommit(writer_->get()) != 0) return;
  SqliteStatement::PrepareOnly(writer_->get(), FileName(path_), "COMMIT").Run();
}

sqlite3* Connection::Reader() {
  if (!reader_) throw DatabaseFailure("the connection is closed");
  return reader_->get();
}

sqlite3* Connection::Writer() {
  if (!reader_) throw DatabaseFailure("the connection is closed");
  if (!writer_) {
    auto writer = std::make_unique<Handle>(path_, SQLITE_OPEN_READWRITE);
    // Commits reach the disk in their order, but not each at once: a power cut may take the last
    // seconds of a job, and leaves a state that was there before.
    writer->RunPragma("PRAGMA synchronous=NORMAL");
    writer_ = std::move(writer);
  }
  return writer_->get();
}

}  // namespace quillon
