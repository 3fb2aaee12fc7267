// Writing the marks.
#include "import/general_info.h"

#include "import/write_group.h"

namespace quillon {

void ChangeMarks(ImportContext& context, const std::function<void(Recordset& marks)>& change) {
  Connection history;
  history.Open(context.settings.ConnHistory);
  Recordset marks;
  marks.Open("General_Info", history, CursorType::kStatic, LockType::kOptimistic);
  WriteGroup writes(context, history);
  writes.Begin();
  change(marks);
  marks.Update();
  writes.Commit();
}

}  // namespace quillon
