// A job that the service carries out for the form.
#pragma once

#include <string>

#include "quillonctl/form/watches.h"
#include "quillonctl/job_answer.h"
#include "quillonctl/service_link.h"

namespace quillon {

class RunningJob {
 public:
  // Asks the service; fails where it does not run. `watches` tell when more of its answer is there.
  RunningJob(const Watches& watches, const std::string& directory, std::string caption,
             const std::string& request);
  ~RunningJob();
  RunningJob(const RunningJob&) = delete;
  RunningJob& operator=(const RunningJob&) = delete;

  // Takes what has come of the answer. Fails where the service ended before it.
  void Take();

  const std::string& caption() const { return caption_; }
  bool ended() const { return link_.ended(); }
  const CommandOutcome& outcome() const { return outcome_; }

  // How far it is or how it ended, and below it what failed last. (The event file has it all.)
  std::string Message() const;

 private:
  const Watches& watches_;
  std::string caption_;  // of its button
  ServiceLink link_;
  std::string progress_ = "begins";
  CommandOutcome outcome_;
};

}  // namespace quillon
