// Rows of History.mdb that are written together.
#pragma once

#include "import/import_context.h"
#include "platform/database.h"

namespace quillon {

// Groups the rows that a loop writes between two pauses, since a commit costs more than a row. A
// group is in the file before any event runs, and what was written before a failure stays; only
// where the file itself fails, by a full disk say, the rows of the group go with it.
class WriteGroup {
 public:
  // The connection outlives the group.
  WriteGroup(const ImportContext& context, Connection& connection)
      : context_(context), connection_(connection) {}
  ~WriteGroup();
  WriteGroup(const WriteGroup&) = delete;
  WriteGroup& operator=(const WriteGroup&) = delete;

  // Called before each row; opens a group where none is open. Another program that is writing is
  // waited for, up to 5 s, while events run; DatabaseFailure beyond.
  void Begin();

  // Ends the group, so that others can read its rows and write their own.
  void Commit();

 private:
  const ImportContext& context_;
  Connection& connection_;
  bool isOpen_ = false;
};

}  // namespace quillon
