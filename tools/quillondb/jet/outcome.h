// The last lines of an import.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "quillondb/jet/losses.h"

namespace quillon {

struct JetOutcome {
  std::int64_t rows = 0;
  bool dryRun = false;
};

// What came over, and a line for each thing that did not.
void TellOutcome(JetOutcome outcome, const JetLosses& losses, std::ostream& out);

}  // namespace quillon
