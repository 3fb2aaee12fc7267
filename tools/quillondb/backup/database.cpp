// The engine's own backup, a step after the other.
#include "quillondb/backup/database.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "installation_owner.h"
#include "platform/failure.h"
#include "quillondb/check/database.h"
#include "quillondb/side_files.h"

namespace quillon {
namespace {

constexpr int kPagesAStep = 256;  // a megabyte
constexpr int kBusyTimeoutMs = 5000;

struct Closer {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Handle = std::unique_ptr<sqlite3, Closer>;

// The system's reason says more than the engine's, where there is one.
std::string ReasonOf(sqlite3* handle, int result) {
  const int reason = sqlite3_system_errno(handle);
  return reason != 0 ? std::strerror(reason) : sqlite3_errstr(result);
}

Handle Open(const std::string& path) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  Handle handle(opened);
  if (result != SQLITE_OK) {
    throw DatabaseFailure(path + " cannot be opened: " + ReasonOf(opened, result));
  }
  sqlite3_busy_timeout(handle.get(), kBusyTimeoutMs);
  return handle;
}

// From here on the handle sees the database as it is now. Without that, each foreign write between
// two steps would let the copy begin again.
void HoldMoment(sqlite3* source, const std::string& name) {
  const int result =
      sqlite3_exec(source, "BEGIN; SELECT COUNT(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) {
    throw DatabaseFailure(name + " cannot be copied: " + sqlite3_errmsg(source));
  }
}

int PercentDone(sqlite3_backup* backup) {
  const int pages = std::max(sqlite3_backup_pagecount(backup), 1);
  return static_cast<int>(100.0 * (pages - sqlite3_backup_remaining(backup)) / pages);
}

// The result of the last step, of whatever sort.
int RunSteps(sqlite3_backup* backup, const std::function<void(int percent)>& percent) {
  int result = SQLITE_OK;
  while (result == SQLITE_OK) {
    result = sqlite3_backup_step(backup, kPagesAStep);
    if (result == SQLITE_OK || result == SQLITE_DONE) percent(PercentDone(backup));
  }
  return result;
}

}  // namespace

// What the engine opens of the installation it opens for HoldMoment, or when the source is closed.
void CopyDatabase(const std::string& directory, const std::string& fileName, const std::string& to,
                  const std::function<void(int percent)>& percent) {
  const OwnerRights owner(directory);
  const std::string from = directory + "/" + fileName;
  RequireOrdinarySideFiles(from);
  const Handle source = Open(from);
  HoldMoment(source.get(), fileName);
  const CallersRights caller(owner);
  const Handle copy = Open(to);
  const std::unique_ptr<sqlite3_backup, int (*)(sqlite3_backup*)> backup(
      sqlite3_backup_init(copy.get(), "main", source.get(), "main"), sqlite3_backup_finish);
  const int result =
      backup ? RunSteps(backup.get(), percent) : sqlite3_extended_errcode(copy.get());
  if (result == SQLITE_DONE) return;
  throw DatabaseFailure(fileName + " cannot be copied to " + to + ": " + sqlite3_errstr(result));
}

void RequireWholeCopy(const std::string& path, const Database& database,
                      const std::string& remedy) {
  std::vector<std::string> findings;
  CheckShape(path, database, findings);
  if (findings.empty()) return;
  throw DatabaseFailure("the copy is not whole: " + findings.front() + "; " + remedy);
}

}  // namespace quillon
