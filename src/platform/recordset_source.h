// Where a recordset's rows come from: the part of the database layer behind Recordset. A
// running select, a table opened to be changed and one opened to be read are the three kinds.
#pragma once

#include <string>

#include "platform/database.h"
#include "platform/failure.h"

namespace quillon {

class Recordset::Source {
 public:
  explicit Source(std::string file) : file_(std::move(file)) {}
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  virtual bool Eof() const = 0;
  virtual void MoveNext() = 0;
  virtual Value Field(std::string_view name) const = 0;
  virtual void SetField(std::string_view, Value&&) { RefuseChange(); }
  virtual void AddNew() { RefuseChange(); }
  virtual void Update() { RefuseChange(); }
  virtual void Delete() { RefuseChange(); }
  virtual int DeleteRows(int) { RefuseChange(); }
  virtual std::int64_t RecordCount() const { return -1; }  // not known before the last row
  virtual void Sort(const std::string&) {
    throw DatabaseFailure(file_ + ": the recordset keeps its order");
  }

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
  std::string file_;  // the database's name, as failures tell it
};

}  // namespace quillon
