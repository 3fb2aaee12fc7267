// What the service answers to a job, for whoever shows it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "quillonctl/command_outcome.h"

namespace quillon {

// "page 12 of about 190", "receiver 1 of 3", "step 2 of 8"; nothing for another line.
std::optional<std::string> ProgressText(const std::vector<std::string>& words);

// The text of an event that is no notice; nothing for another line.
std::optional<std::string> FailureOfJob(const std::vector<std::string>& words);

// Takes the last line of the answer in; leaves the outcome as it is at others.
void TakeEnd(const std::vector<std::string>& words, CommandOutcome& outcome);

}  // namespace quillon
