// Waiting for the file, and the end of a group.
#include "import/write_group.h"

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr int kPatienceMs = 5000;  // for another program that writes
constexpr std::int16_t kRetryMs = 10;

}  // namespace

// A group that is open here was left by a failure, and the rows before that stay. Where they cannot
// be committed, the failure that is on its way says why.
WriteGroup::~WriteGroup() {
  try {
    Commit();
  } catch (const DatabaseFailure&) {
    isOpen_ = false;
  }
}

void WriteGroup::Begin() {
  if (isOpen_) return;
  // What is counted is the waiting itself: the events inside may take as long as they like.
  for (int waitedMs = 0; !connection_.BeginWrites(); waitedMs += kRetryMs) {
    if (waitedMs >= kPatienceMs) {
      throw DatabaseFailure("History.mdb: another program has kept the database locked for 5 s");
    }
    context_.loop.DelayMs(kRetryMs);
  }
  isOpen_ = true;
}

void WriteGroup::Commit() {
  if (!isOpen_) return;
  isOpen_ = false;
  connection_.CommitWrites();
}

}  // namespace quillon
