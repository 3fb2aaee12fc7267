// Writing the marks.
#include "import/general_info.h"

#include "import/history_table.h"
#include "import/write_group.h"

namespace quillon {

void ChangeMarks(ImportContext& context, const std::function<void(Recordset& marks)>& change) {
  HistoryTable marks(context, "General_Info");
  WriteGroup writes(context, marks.connection);
  writes.Begin();
  change(marks.rows);
  marks.rows.Update();
  writes.Commit();
}

}  // namespace quillon
