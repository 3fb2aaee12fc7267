// What is wrong with the receivers of mails: what ends the run, and what brings no mail or no
// report although the row looks as if it did.
#pragma once

#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"

namespace quillon {

// Appends a line for each thing wrong with the rows of Settings_RepReceiver, whose columns have to
// be whole. `place` begins the lines.
void CheckReceivers(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings);

}  // namespace quillon
