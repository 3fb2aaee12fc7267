// Lines for the operator, the losses last, where they are still to be seen.
#include "quillondb/jet/outcome.h"

#include <ostream>

namespace quillon {

void TellOutcome(JetOutcome outcome, const JetLosses& losses, std::ostream& out) {
  out << outcome.rows
      << (outcome.dryRun ? " rows would be taken over; nothing was written\n"
                         : " rows were taken over\n");
  if (losses.empty()) return;
  out << "What did not come over as it was:\n";
  for (const std::string& line : losses.Lines()) out << "  " << line << "\n";
}

}  // namespace quillon
