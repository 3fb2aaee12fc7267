// The other program's connection, past the layers under test.
#include "support/other_writer.h"

#include <sqlite3.h>

#include <stdexcept>
#include <utility>

namespace quillon {

OtherWriter::OtherWriter(Handle handle) : handle_(std::move(handle)) {}

OtherWriter::OtherWriter(const std::string& path) : OtherWriter(Idle(path)) {
  if (!Begin()) throw std::runtime_error("cannot write " + path);
}

OtherWriter OtherWriter::Idle(const std::string& path) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  Handle handle(opened, sqlite3_close);
  if (result != SQLITE_OK) throw std::runtime_error("cannot open " + path);
  return OtherWriter(std::move(handle));
}

bool OtherWriter::IsAlone(const std::string& path) {
  return Idle(path).Run("PRAGMA journal_mode = DELETE");
}

bool OtherWriter::Begin() {
  return Run("BEGIN IMMEDIATE");
}

void OtherWriter::End() {
  if (isWriting()) Run("ROLLBACK");
}

bool OtherWriter::isWriting() const {
  return sqlite3_get_autocommit(handle_.get()) == 0;
}

bool OtherWriter::Run(const std::string& statement) {
  return sqlite3_exec(handle_.get(), statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace quillon
