// The pass and its order.
#include "service/hourly_pass.h"

#include "platform/free_memory.h"
#include "platform/scoped_flag.h"
#include "service/debug_folder.h"
#include "service/stored_settings.h"

namespace quillon {
namespace {

void RunDailyJobs(const DailyJobs& jobs) {
  bool done = false;
  jobs.Import(done);
  if (!done) return;
  jobs.AutoCreate();
  jobs.MailReports();
}

}  // namespace

std::int16_t HourNow(const ServiceContext& context) {
  return static_cast<std::int16_t>(PartsOf(context.clock.Now()).hour);
}

void HourlyPass(ServiceContext& context) {
  if (context.jobRunning || HourNow(context) == context.LastHour) return;
  const ScopedFlag running(context.jobRunning, true);
  RefreshSettings(context);
  RunDailyJobs(context.jobs);
  // The work may have taken hours, so the hour is asked for again.
  if (HourNow(context) < context.LastHour) {
    ClearDebugDir_AEW(context.diagnostics);
    ClearDebugDir(context.diagnostics);
  }
  context.LastHour = HourNow(context);
  ReturnFreeMemory();
}

}  // namespace quillon
