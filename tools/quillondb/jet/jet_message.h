// Tables and rows as bytes, for their way from the process that reads a file to the one that wants
// them. The bytes may come from a process gone astray, so reading them trusts nothing.
#pragma once

#include <string>
#include <string_view>

#include "quillondb/jet/jet_source.h"

namespace quillon {

std::string TableMessage(const JetTable& table);
std::string RowMessage(const JetRow& row);

// ReadingFailure where the bytes are no such message.
JetTable TableOfMessage(std::string_view bytes);
JetRow RowOfMessage(std::string_view bytes);

}  // namespace quillon
