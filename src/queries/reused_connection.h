// One connection for the many short selects of a report: opening a database of a hundred tables
// takes longer than reading a day out of it.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/database.h"

namespace quillon {

class ReusedConnection {
 public:
  explicit ReusedConnection(std::string connectionString)
      : connectionString_(std::move(connectionString)) {}

  // The connection that was kept, or a new one, opened. Whoever took it owns it: where he fails it
  // is closed with him, and the next one opens anew.
  std::unique_ptr<Connection> Take();
  // For the next one. No recordset of it is open.
  void Keep(std::unique_ptr<Connection> connection) { kept_ = std::move(connection); }

 private:
  std::string connectionString_;
  std::unique_ptr<Connection> kept_;
};

}  // namespace quillon
