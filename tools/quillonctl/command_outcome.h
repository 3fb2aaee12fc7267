// What came of a command that does something, and how it is told.
#pragma once

#include <string>
#include <vector>

#include "quillonctl/output.h"

namespace quillon {

struct CommandOutcome {
  // Open until it is known, and for ever where an answer does not come to its end.
  enum class Result { kOpen, kDone, kRefused };

  Result result = Result::kOpen;
  std::string message;                // what is to be shown, or why it was not done
  std::vector<std::string> failures;  // each thing that is wrong, or that failed
};

// Adds a failure. People are told at once, programs at the end.
void TellFailure(const std::string& text, OutputForm form, CommandOutcome& outcome);

// Prints the end, in JSON with the failures, and returns the exit status: what was not done, or not
// without a failure, has failed. `command` is its word on the command line.
int PrintOutcome(const std::string& command, const CommandOutcome& outcome, OutputForm form);

}  // namespace quillon
