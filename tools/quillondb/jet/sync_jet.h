// The nightly hand-over from a management product that still writes Jet files.
#pragma once

#include <iosfwd>
#include <string>

#include "platform/date_time.h"
#include "quillondb/jet/jet_source.h"

namespace quillon {

struct JetSync {
  std::string directory;
  bool dryRun = false;
};

// Puts the statistics of the old file in the place of those that are there, and sets the marks of a
// finished report, by which the service imports the day. Failure, and nothing is written, where no
// row is of today: the mark would make an empty day of it. The service may run meanwhile.
void SyncJet(const JetSync& order, JetSource& reports, DateTime now, std::ostream& progress);

// The same with a file.
void SyncJetFile(const JetSync& order, const std::string& reports, DateTime now,
                 std::ostream& progress);

}  // namespace quillon
