// The link to the service and what has come over it.
#include "quillonctl/form/running_job.h"

#include <utility>
#include <vector>

namespace quillon {

RunningJob::RunningJob(const Watches& watches, const std::string& directory, std::string caption,
                       const std::string& request)
    : watches_(watches), caption_(std::move(caption)), link_(directory, request) {
  watches_.Follow(link_.descriptor());
}

RunningJob::~RunningJob() {
  watches_.Forget(link_.descriptor());
}

void RunningJob::Take() {
  while (const auto words = link_.NextAtOnce()) {
    if (const auto progress = ProgressText(*words)) progress_ = *progress;
    if (const auto failure = FailureOfJob(*words)) outcome_.failures.push_back(*failure);
    TakeEnd(*words, outcome_);
  }
}

std::string RunningJob::Message() const {
  const std::vector<std::string>& failures = outcome_.failures;
  std::string message = caption_ + ": " + (ended() ? outcome_.message : progress_);
  if (!failures.empty()) message += "\n";
  if (failures.size() > 1) message += std::to_string(failures.size()) + " failures, at last ";
  if (!failures.empty()) message += failures.back();
  return message;
}

}  // namespace quillon
