// The move of an older installation, whose databases are Jet files, into a new one.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "quillondb/jet/jet_source.h"

namespace quillon {

struct JetOrder {
  std::string directory;
  bool replace = false;  // rows that are there may go
  bool dryRun = false;   // everything but the last step, which keeps what was written
};

// An old file and the database that it becomes: "Reports.mdb".
struct JetInput {
  std::string_view database;
  JetSource& source;
};

struct JetFileNames {
  std::string reports;
  std::string history;
  std::string settings;
};

// Takes everything over. Tells the progress, and at the end what was lost. Nothing is written where
// a failure is thrown: none of the databases keeps anything before all of them hold everything.
// Refused while the service runs.
void ImportJet(const JetOrder& order, const std::vector<JetInput>& inputs, std::ostream& progress);

// The same with files; all three are looked at before anything else.
void ImportJetFiles(const JetOrder& order, const JetFileNames& files, std::ostream& progress);

}  // namespace quillon
