// The library that reads Jet files. It can crash and hang on a damaged one, so these run in a
// reading process alone.
#pragma once

#include <string>
#include <string_view>

#include "quillondb/jet/reading_process.h"

namespace quillon {

// Sends a table message for each table that is not the engine's own. Failure where the file is
// encrypted or has no catalog.
void SendJetTables(const std::string& path, const SendBytes& send);

// Sends a row message for each row of the table. Failure where they are not as many as the table
// itself counts: the library passes what it cannot read without a word.
void SendJetRows(const std::string& path, const std::string& table, const SendBytes& send);

// True of the library's words on a map of pages that names too many, as large files of good health
// have it: it goes on looking, and the count of the rows tells whether it found all.
bool IsHarmlessComplaint(std::string_view line);

}  // namespace quillon
