// A connection that goes from hand to hand.
#include "queries/reused_connection.h"

namespace quillon {

std::unique_ptr<Connection> ReusedConnection::Take() {
  if (kept_) return std::move(kept_);
  auto opened = std::make_unique<Connection>();
  opened->Open(connectionString_);
  return opened;
}

}  // namespace quillon
