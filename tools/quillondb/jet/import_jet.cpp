// Plans first, then rows, then all commits.
#include "quillondb/jet/import_jet.h"

#include <list>
#include <ostream>

#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "platform/terminal_text.h"
#include "quillondb/installation.h"
#include "quillondb/jet/database_move.h"
#include "quillondb/jet/jet_file.h"
#include "quillondb/jet/jet_target.h"
#include "quillondb/jet/outcome.h"

namespace quillon {
namespace {

// One old file on its way into its database.
struct Passage {
  Passage(const JetOrder& order, const JetInput& input, JetLosses& losses)
      : source(input.source),
        target(order.directory, input.database),
        move(PlanDatabase(source, input.database, target.file, losses)) {}

  JetSource& source;
  OpenTarget target;
  DatabaseMove move;
};

void RefuseRunningService(const InstanceLock& lock) {
  if (lock.held()) return;
  throw Failure("the service is running in this directory; stop it for the time of the import");
}

}  // namespace

void ImportJet(const JetOrder& order, const std::vector<JetInput>& inputs, std::ostream& progress) {
  RequireDatabases(order.directory);
  const InstanceLock lock(order.directory);
  RefuseRunningService(lock);
  JetLosses losses;
  std::list<Passage> passages;
  for (const JetInput& input : inputs) passages.emplace_back(order, input, losses);
  for (const Passage& passage : passages) {
    if (!order.replace) RefuseRows(passage.move, passage.target.file, passage.target.reference);
  }
  std::int64_t rows = 0;
  for (const Passage& passage : passages) {
    const JetTarget target{passage.target.file, passage.target.reference, losses, progress};
    rows += MoveDatabase(passage.source, passage.move, target);
  }
  if (!order.dryRun) {
    for (Passage& passage : passages) passage.target.transaction.Commit();
  }
  TellOutcome({rows, order.dryRun}, losses, progress);
}

void ImportJetFiles(const JetOrder& order, const JetFileNames& files, std::ostream& progress) {
  JetFile reports(files.reports);
  JetFile history(files.history);
  JetFile settings(files.settings);
  ImportJet(order, {{"Reports.mdb", reports}, {"History.mdb", history}, {"Quillon.mdb", settings}},
            progress);
}

}  // namespace quillon
