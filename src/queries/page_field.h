// Where the text of a database field becomes text of a page.
#pragma once

#include <string>
#include <string_view>

#include "platform/database.h"
#include "platform/text_encoding.h"
#include "queries/query_context.h"

namespace quillon {

// The field of the current row as bytes of the pages' charset; a null raises FieldFailure.
inline std::string PageField(const QueryContext& context, const Recordset& rows,
                             std::string_view name) {
  return PageText(rows.Field(name).AsText(), context.settings.CharSet);
}

}  // namespace quillon
